#pragma once

// Where the user chooses by which road cards are read, and lays cards on the simulator.

#include "apps/viewer/card_desk.h"
#include "ui_road_panel.h"

namespace viewer
{

class RoadPanel : public QGroupBox
{
    Q_OBJECT

public:
    explicit RoadPanel(QWidget *parent = nullptr);

    /** Before anything is chosen; `desk` then follows what the user does here. */
    void setDesk(app::CardDesk *desk) { m_desk = desk; }

    /** As if the user had chosen it. */
    void chooseUsb(UsbIds device, bool simulatorPhotos);
    void putCard(const QString &card, const QString &faults);

signals:
    void messageChanged(const app::Message &message);

private:
    void chooseRoad();
    void listDevices();
    void selectDevice(const QString &ids);
    void selectCard(const QString &card);
    void putSelectedCard();
    void takeCard();
    void askForCardFile();

    Ui::RoadPanel m_ui;
    app::CardDesk *m_desk = nullptr;
};

} // namespace viewer
