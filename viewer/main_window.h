#pragma once

#include <QMainWindow>

namespace viewer
{

class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow();
};

} // namespace viewer
