#pragma once

// Where the user chooses by which road cards are read, and lays cards on the simulator.

#include <QComboBox>
#include <QGroupBox>
#include <QPushButton>
#include <QStackedWidget>

#include "viewer/card_desk.h"

class QCheckBox;

namespace viewer
{

class RoadPanel : public QGroupBox
{
    Q_OBJECT

public:
    RoadPanel();

    /** As if the user had chosen it. */
    void chooseMakersLibrary();
    void chooseUsb(app::UsbIds device, bool simulatorPhotos);
    void chooseSimulator();
    void putCard(const QString &card, const QString &faults);

signals:
    void roadChosen(const viewer::RoadChoice &choice);
    void cardPut(const QString &card, const QString &faults);
    void cardTaken();
    /** The devices could not be listed. */
    void failed(const viewer::Message &message);

private:
    QWidget *makeUsbPage();
    QWidget *makeSimulatorPage();
    void listDevices();
    void tellChoice();
    void selectDevice(app::UsbIds device);
    void askForCardFile();
    int cardItem(const QString &card);

    QComboBox m_road;
    QStackedWidget m_pages;
    QComboBox m_device;
    QCheckBox *m_simulatorPhotos;
    QComboBox m_card;
    QComboBox m_faults;
};

} // namespace viewer
