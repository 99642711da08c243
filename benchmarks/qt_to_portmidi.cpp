// The shortest way from a key to PortMidi through the toolkit: an empty window, and a write for each key event that it
// is told of. What lies between this and the shortest way of all is the toolkit's. Usage: qt_to_portmidi <part of the
// output's name>
#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include "BareOutput.h"

namespace {

class Window : public QWidget {
public:
    explicit Window(PortMidiStream* output) : output_(output) {}

protected:
    void keyPressEvent(QKeyEvent* event) override { KivoraBench::WriteKey(output_, true, event->nativeScanCode()); }
    void keyReleaseEvent(QKeyEvent* event) override { KivoraBench::WriteKey(output_, false, event->nativeScanCode()); }

private:
    PortMidiStream* output_;
};

}  // namespace

int main(int argc, char** argv) {
    PortMidiStream* output = argc > 1 ? KivoraBench::OpenBareOutput(argv[1]) : nullptr;
    if (output == nullptr) {
        return 1;
    }
    QApplication application(argc, argv);
    Window window(output);
    window.setWindowTitle("Bare Qt");
    window.resize(300, 100);
    window.show();
    return QApplication::exec();
}
