// An empty window of the panel's size: the least that a program with Qt's widgets takes to start.
#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle("Bare window");
    window.setFixedSize(1180, 520);
    window.show();
    return QApplication::exec();
}
