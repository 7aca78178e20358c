#include "apps/viewer/road_panel.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QSignalBlocker>

#include "apps/card/usb_catalogue.h"
#include "apps/card/usb_list.h"
#include "simulator/card/card_library.h"
#include "simulator/card/faults.h"

namespace viewer
{

namespace
{

QString nameOf(const app::UsbDevice &device)
{
    const QString name = toText(device.ids) + QLatin1Char(' ') + app::designation(device);
    return device.mayOpen ? name : RoadPanel::tr("%1 - not open to you").arg(name);
}

/** Selects the entry of these data, which is added by that name if there is none. */
void select(QComboBox *box, const QString &data, const QString &name)
{
    if (box->findData(data) < 0)
        box->addItem(name, data);
    box->setCurrentIndex(box->findData(data));
}

} // namespace

RoadPanel::RoadPanel(QWidget *parent) : QGroupBox(parent)
{
    m_ui.setupUi(this);
    for (const QString &name : simulator::builtInCardNames())
        m_ui.card->addItem(name, name);
    selectCard(QStringLiteral("resident"));
    m_ui.faults->addItem(QString());
    for (const simulator::FaultRule &rule : simulator::faultRules(simulator::Road::MAKERS_LIBRARY))
        m_ui.faults->addItem(simulator::faultExample(rule));
    m_ui.faults->lineEdit()->setAccessibleName(m_ui.faults->accessibleName());
    m_ui.faults->lineEdit()->setPlaceholderText(tr("none"));

    const auto changed = QOverload<int>::of(&QComboBox::currentIndexChanged);
    connect(m_ui.road, changed, this, [this](int road) {
        if (static_cast<app::ReaderRoad>(road) == app::ReaderRoad::USB)
            listDevices();
        else
            chooseRoad();
    });
    connect(m_ui.refresh, &QPushButton::clicked, this, &RoadPanel::listDevices);
    connect(m_ui.device, changed, this, &RoadPanel::chooseRoad);
    connect(m_ui.simulatorPhotos, &QCheckBox::toggled, this, &RoadPanel::chooseRoad);
    connect(m_ui.cardFile, &QPushButton::clicked, this, &RoadPanel::askForCardFile);
    connect(m_ui.putCard, &QPushButton::clicked, this, &RoadPanel::putSelectedCard);
    connect(m_ui.takeCard, &QPushButton::clicked, this, &RoadPanel::takeCard);
}

void RoadPanel::chooseRoad()
{
    emit messageChanged({tr("Lay a card on the reader and press Read.")});
    const auto device = parseUsbIds(m_ui.device->currentData().toString());
    m_desk->setRoad({static_cast<app::ReaderRoad>(m_ui.road->currentIndex()),
                     device.value_or(UsbIds()), m_ui.simulatorPhotos->isChecked()});
}

void RoadPanel::listDevices()
{
    const QString before = m_ui.device->currentData().toString();
    const app::UsbDevices list = app::listUsbDevices();
    {
        const QSignalBlocker quiet(m_ui.device);
        m_ui.device->clear();
        for (const app::UsbDevice &device : list.devices)
            m_ui.device->addItem(nameOf(device), toText(device.ids));
        if (!before.isEmpty())
            selectDevice(before);
        else if (list.devices.isEmpty())
            m_ui.device->addItem(tr("no USB device"));
        else
            m_ui.device->setCurrentIndex(app::likelyReader(list.devices));
    }
    chooseRoad();
    if (list.code != 0)
        emit messageChanged(app::messageOf(*app::findUsbResult(list.code)));
}

void RoadPanel::selectDevice(const QString &ids)
{
    select(m_ui.device, ids, tr("%1 - not plugged in").arg(ids));
}

void RoadPanel::selectCard(const QString &card)
{
    select(m_ui.card, card, QFileInfo(card).fileName());
}

void RoadPanel::chooseUsb(UsbIds device, bool simulatorPhotos)
{
    m_ui.simulatorPhotos->setChecked(simulatorPhotos);
    m_ui.road->setCurrentIndex(static_cast<int>(app::ReaderRoad::USB));
    selectDevice(toText(device));
}

void RoadPanel::putCard(const QString &card, const QString &faults)
{
    m_ui.road->setCurrentIndex(static_cast<int>(app::ReaderRoad::SIMULATOR));
    selectCard(card);
    m_ui.faults->setCurrentText(faults);
    putSelectedCard();
}

void RoadPanel::putSelectedCard()
{
    if (m_desk->putCard(m_ui.card->currentData().toString(), m_ui.faults->currentText()))
        emit messageChanged({tr("A card lies on the simulator.")});
}

void RoadPanel::takeCard()
{
    m_desk->takeCard();
    emit messageChanged({tr("No card lies on the simulator.")});
}

void RoadPanel::askForCardFile()
{
    auto *const dialog = new QFileDialog(this, tr("Card description"), QString(),
                                         tr("Card descriptions (*.json);;All files (*)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, &RoadPanel::selectCard);
    dialog->open();
}

} // namespace viewer
