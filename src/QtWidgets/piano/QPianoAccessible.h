// The piano as assistive technology sees it: a group with an object for each visible key.
#pragma once

#include <QAccessibleWidget>

#include <cstdint>
#include <map>

class QPiano;

/// Its children are the visible keys from the lowest to the highest. Made and owned by Qt's accessibility. [gui]
class QPianoAccessible : public QAccessibleWidget {
public:
    explicit QPianoAccessible(QPiano* piano);
    ~QPianoAccessible() override;

    /// Makes Qt use this class for every QPiano; repeated calls do nothing.
    static void installFactory();
    /// While it is quiet, keys that go down or up are not told to assistive technology, on any piano.
    static void setQuiet(bool quiet);
    /// Tell assistive technology that a key went down or up, and that the cursor has moved or come into sight.
    static void keyChanged(QPiano& piano, std::uint8_t note);
    static void focusMoved(QPiano& piano);
    /// Tells assistive technology that other keys are shown.
    static void rangeChanged(QPiano& piano);

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    QString text(QAccessible::Text kind) const override;

private:
    QPiano* piano() const;  ///< null once it is being destroyed
    QAccessibleInterface* keyOf(std::uint8_t note) const;

    mutable std::map<std::uint8_t, QAccessible::Id> keys_;  ///< the interfaces made so far, by note
};
