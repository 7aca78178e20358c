// idcard-viewer, the window program.

#include <QApplication>

#include "viewer/main_window.h"

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    const QApplication application(argc, argv);
    viewer::MainWindow window;
    window.show();
    return QApplication::exec();
}
