// What is held, where the window system tells too little of it.
#pragma once

#include <optional>
#include <QAbstractNativeEventFilter>
#include <QObject>

#include "nk/desktop/nk_pressed_input.h"
#include "ui/CarriedInput.h"
#include "ui/PressedInputWatch.h"

class KivoraWidget;

namespace Kivora {

/// Keeps what is held in one window of the program out of the others; under X it also asks the server what is down
/// while anything is, and ends what is held on the panel by keys and buttons that are up. [gui]
class HeldInput : public QObject, public QAbstractNativeEventFilter {
    Q_OBJECT

public:
    /// After the application object. The panel outlives it.
    explicit HeldInput(KivoraWidget& panel);

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    CarriedInput carried_;
    std::optional<NK::CPressedInputQuery> query_;  ///< these two under X only
    std::optional<PressedInputWatch> watch_;
};

}  // namespace Kivora
