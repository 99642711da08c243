// What assistive programs are told of changes of state.
#pragma once

#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>
#include <QAccessible>
#include <QObject>

#include <string>
#include <utility>
#include <vector>

namespace KivoraTest {

/// While it lives, assistive programs count as running, and each change of the states "checked", "pressed" and
/// "disabled" is noted as "name state" with "+" or "-" for what the state is now; what alerts, by its name. One at a
/// time. [gui]
class AccessibleChanges {
public:
    AccessibleChanges() {
        current_ = this;
        SetActive(true);
        former_ = QAccessible::installUpdateHandler([](QAccessibleEvent* event) { current_->Note(*event); });
    }
    ~AccessibleChanges() {
        QAccessible::installUpdateHandler(former_);
        SetActive(false);
        current_ = nullptr;
    }
    AccessibleChanges(const AccessibleChanges&) = delete;
    AccessibleChanges& operator=(const AccessibleChanges&) = delete;

    std::vector<std::string> Take() { return std::exchange(changes_, {}); }
    std::vector<std::string> TakeAlerts() { return std::exchange(alerts_, {}); }

private:
    /// Qt has no public way to claim that an assistive program runs.
    static void SetActive(bool active) {
        QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(active);
    }
    void Note(QAccessibleEvent& event) {
        if (event.type() == QAccessible::Alert && event.accessibleInterface() != nullptr) {
            alerts_.push_back(event.accessibleInterface()->text(QAccessible::Name).toStdString());
        }
        QAccessibleInterface* const changed =
            event.type() == QAccessible::StateChanged ? event.accessibleInterface() : nullptr;
        if (changed == nullptr) {
            return;
        }
        const std::string name = changed->text(QAccessible::Name).toStdString();
        const QAccessible::State which = static_cast<QAccessibleStateChangeEvent&>(event).changedStates();
        const QAccessible::State now = changed->state();
        const auto note = [&](bool isChanged, const char* state, bool isOn) {
            if (isChanged) {
                changes_.push_back(name + " " + state + (isOn ? "+" : "-"));
            }
        };
        note(which.checked, "checked", now.checked);
        note(which.pressed, "pressed", now.pressed);
        note(which.disabled, "disabled", now.disabled);
    }

    inline static AccessibleChanges* current_ = nullptr;
    QAccessible::UpdateHandler former_ = nullptr;
    std::vector<std::string> changes_;
    std::vector<std::string> alerts_;
};

}  // namespace KivoraTest
