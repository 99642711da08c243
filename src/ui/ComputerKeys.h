// The keys of the computer's keyboard by the layout that is active.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <QKeyEvent>
#include <QMap>
#include <QObject>
#include <QString>
#include <QTimer>

#include "nk/desktop/nk_keyboard_layout.h"
#include "piano/CPCKeyPlayer.h"
#include "piano/PCKeyPlaces.h"
#include "QtWidgets/piano/ReleasedKeys.h"

/// Tells of each key where the user's way and the layout of that moment find its note, and what stands on the keys.
/// [gui]
class ComputerKeys : public QObject {
    Q_OBJECT

public:
    static constexpr int kPeriodMs = 250;  ///< of looking whether the layout is another one, where nobody tells

    using Layout = std::shared_ptr<const NK::TKeyboardLayout>;
    /// The active layout, null while it is not known; another object when it is another one. Waits for nothing.
    using Source = std::function<Layout()>;

    explicit ComputerKeys(Source source, QObject* parent = nullptr);

    void setSource(Source source);
    /// Looks whether the layout is another one, as is done each kPeriodMs.
    void look();
    /// From now on whoever knows of a change calls look().
    void stopLooking() { timer_.stop(); }
    void setWay(NK::Piano::EPCKeyWay way) { way_ = way; }

    Layout layout() const { return source_(); }
    NK::Piano::TPCKey keyOf(const QKeyEvent& event) const;
    /// To be told of each press and release of a key as it comes.
    void follow(const QKeyEvent& event) { released_.follow(event); }
    /// Whether the key of a release, which was followed, is known to be up: then the system does not repeat it.
    bool isUp(const QKeyEvent& release) { return released_.isUp(release.nativeScanCode()); }
    /// Whether the key of a press that looks like a repeat's is known to be down.
    bool isDown(const QKeyEvent& press) { return released_.isDown(press.nativeScanCode()); }
    /// By the characters of a US keyboard at their places, in upper case: what stands on the keys that play, where they
    /// are found by their places; a US keyboard's characters while the layout is not known. Nothing as typed. As of
    /// the last look, so that nobody is asked for it.
    std::optional<QMap<char, QString>> keyTops() const;

signals:
    /// Other letters may stand on the keys, or the keys are found another way.
    void layoutChanged();

private:
    bool isByPlace(const Layout& layout) const;

    Source source_;
    NK::Piano::EPCKeyWay way_ = NK::Piano::EPCKeyWay::kAutomatic;
    Layout seen_;  ///< when it was looked last
    QTimer timer_;
    ReleasedKeys released_;
};
