#include "viewer/main_window.h"

namespace viewer
{

MainWindow::MainWindow()
{
    setWindowTitle(tr("Card viewer"));
}

} // namespace viewer
