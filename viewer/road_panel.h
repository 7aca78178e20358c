#pragma once

// Where the user chooses by which road cards are read, and lays cards on the simulator.

#include <memory>

#include <QGroupBox>

#include "viewer/card_desk.h"

namespace viewer
{

namespace Ui
{
class RoadPanel;
}

class RoadPanel : public QGroupBox
{
    Q_OBJECT

public:
    explicit RoadPanel(QWidget *parent = nullptr);
    ~RoadPanel() override;

    /** As if the user had chosen it. */
    void chooseUsb(app::UsbIds device, bool simulatorPhotos);
    void putCard(const QString &card, const QString &faults);

signals:
    void roadChosen(const viewer::RoadChoice &choice);
    void cardPut(const QString &card, const QString &faults);
    void cardTaken();
    /** The devices could not be listed. */
    void failed(const viewer::Message &message);

private:
    void listDevices();
    void tellChoice();
    void selectDevice(app::UsbIds device);
    void selectCard(const QString &card);
    void askForCardFile();

    const std::unique_ptr<Ui::RoadPanel> m_ui;
};

} // namespace viewer
