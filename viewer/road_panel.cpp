#include "viewer/road_panel.h"

#include <algorithm>

#include <QFileDialog>
#include <QLineEdit>
#include <QSignalBlocker>

#include "apps/usb_catalogue.h"
#include "apps/usb_list.h"
#include "simulator/card_library.h"
#include "simulator/faults.h"
#include "ui_road_panel.h"

namespace viewer
{

namespace
{

QString nameOf(const app::UsbDevice &device)
{
    QString name = app::toText(device.ids) + QLatin1Char(' ') + app::designation(device);
    return device.mayOpen ? name : RoadPanel::tr("%1 - not open to you").arg(name);
}

/** What can be chosen and then be changed: with a number where there must be one. */
QString exampleOf(const simulator::FaultRule &rule)
{
    QString name = QLatin1String(rule.name);
    if (rule.argument != simulator::FaultArgument::Number)
        return name;
    const int number = std::max(rule.minimum, 1);
    return QStringLiteral("%1=%2").arg(name).arg(number);
}

} // namespace

RoadPanel::RoadPanel(QWidget *parent) : QGroupBox(parent), m_ui(std::make_unique<Ui::RoadPanel>())
{
    m_ui->setupUi(this);
    for (const QString &name : simulator::builtInCardNames())
        m_ui->card->addItem(name, name);
    m_ui->card->setCurrentText(QStringLiteral("resident"));
    m_ui->faults->addItem(QString());
    for (const simulator::FaultRule &rule : simulator::makersFaultRules())
        m_ui->faults->addItem(exampleOf(rule));
    m_ui->faults->lineEdit()->setAccessibleName(m_ui->faults->accessibleName());
    m_ui->faults->lineEdit()->setPlaceholderText(tr("none"));

    const auto changed = QOverload<int>::of(&QComboBox::currentIndexChanged);
    connect(m_ui->road, changed, this, [this](int road) {
        if (static_cast<Road>(road) == Road::Usb)
            listDevices();
        tellChoice();
    });
    connect(m_ui->device, changed, this, &RoadPanel::tellChoice);
    connect(m_ui->simulatorPhotos, &QCheckBox::toggled, this, &RoadPanel::tellChoice);
    connect(m_ui->refresh, &QPushButton::clicked, this, [this] {
        listDevices();
        tellChoice();
    });
    connect(m_ui->cardFile, &QPushButton::clicked, this, &RoadPanel::askForCardFile);
    connect(m_ui->putCard, &QPushButton::clicked, this, [this] {
        emit cardPut(m_ui->card->currentData().toString(), m_ui->faults->currentText());
    });
    connect(m_ui->takeCard, &QPushButton::clicked, this, &RoadPanel::cardTaken);
}

RoadPanel::~RoadPanel() = default;

void RoadPanel::tellChoice()
{
    RoadChoice choice;
    choice.road = static_cast<Road>(m_ui->road->currentIndex());
    choice.device =
        app::parseUsbIds(m_ui->device->currentData().toString()).value_or(app::UsbIds());
    choice.simulatorPhotos = m_ui->simulatorPhotos->isChecked();
    emit roadChosen(choice);
}

void RoadPanel::listDevices()
{
    const QSignalBlocker quiet(m_ui->device);
    const QString before = m_ui->device->currentData().toString();
    const app::UsbDevices list = app::listUsbDevices();
    m_ui->device->clear();
    int likely = -1;
    for (const app::UsbDevice &device : list.devices) {
        if (likely < 0 && device.hasReaderPipes)
            likely = m_ui->device->count();
        m_ui->device->addItem(nameOf(device), app::toText(device.ids));
    }
    m_ui->device->setCurrentIndex(std::max(likely, 0));
    if (const auto ids = app::parseUsbIds(before))
        selectDevice(*ids);
    else if (m_ui->device->count() == 0)
        m_ui->device->addItem(tr("no USB device"));
    if (list.code != 0)
        emit failed(messageOf(*app::findUsbResult(list.code)));
}

void RoadPanel::selectDevice(app::UsbIds device)
{
    const QString ids = app::toText(device);
    if (m_ui->device->findData(ids) < 0)
        m_ui->device->addItem(tr("%1 - not plugged in").arg(ids), ids);
    m_ui->device->setCurrentIndex(m_ui->device->findData(ids));
}

void RoadPanel::selectCard(const QString &card)
{
    if (m_ui->card->findData(card) < 0)
        m_ui->card->addItem(QFileInfo(card).fileName(), card);
    m_ui->card->setCurrentIndex(m_ui->card->findData(card));
}

void RoadPanel::chooseUsb(app::UsbIds device, bool simulatorPhotos)
{
    m_ui->simulatorPhotos->setChecked(simulatorPhotos);
    m_ui->road->setCurrentIndex(static_cast<int>(Road::Usb));
    selectDevice(device);
}

void RoadPanel::putCard(const QString &card, const QString &faults)
{
    m_ui->road->setCurrentIndex(static_cast<int>(Road::Simulator));
    selectCard(card);
    m_ui->faults->setCurrentText(faults);
    emit cardPut(card, faults);
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
