#include "viewer/road_panel.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>

#include "apps/usb_catalogue.h"
#include "apps/usb_list.h"
#include "simulator/card_library.h"
#include "simulator/faults.h"

namespace viewer
{

namespace
{

QLabel *labelFor(QWidget *buddy, const QString &text)
{
    auto *const label = new QLabel(text);
    label->setBuddy(buddy);
    return label;
}

/** Gives up its width before the window has to grow. */
void letShrink(QComboBox *box, int characters)
{
    box->setMinimumContentsLength(characters);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

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

RoadPanel::RoadPanel() : m_simulatorPhotos(new QCheckBox(tr("Photos of a &simulated reader")))
{
    setTitle(tr("Reader"));
    m_road.addItems({tr("The maker's library"), tr("USB"), tr("Simulator")});
    m_road.setObjectName(QStringLiteral("road"));
    m_road.setAccessibleName(tr("Road to the reader"));
    m_pages.addWidget(new QWidget);
    m_pages.addWidget(makeUsbPage());
    m_pages.addWidget(makeSimulatorPage());
    m_pages.setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);

    auto *const layout = new QHBoxLayout(this);
    layout->addWidget(labelFor(&m_road, tr("Read throu&gh")));
    layout->addWidget(&m_road);
    layout->addWidget(&m_pages, 1);

    connect(&m_road, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this](int road) {
        m_pages.setCurrentIndex(road);
        if (static_cast<Road>(road) == Road::Usb)
            listDevices();
        tellChoice();
    });
    const auto changed = QOverload<int>::of(&QComboBox::currentIndexChanged);
    connect(&m_device, changed, this, &RoadPanel::tellChoice);
    connect(m_simulatorPhotos, &QCheckBox::toggled, this, &RoadPanel::tellChoice);
}

QWidget *RoadPanel::makeUsbPage()
{
    m_device.setObjectName(QStringLiteral("device"));
    m_device.setAccessibleName(tr("USB device"));
    letShrink(&m_device, 16);
    auto *const refresh = new QPushButton(tr("Refres&h"));
    refresh->setObjectName(QStringLiteral("refresh"));
    refresh->setAccessibleName(tr("List the USB devices anew"));
    connect(refresh, &QPushButton::clicked, this, [this] {
        listDevices();
        tellChoice();
    });
    m_simulatorPhotos->setObjectName(QStringLiteral("simulatorPhotos"));
    m_simulatorPhotos->setAccessibleName(tr("Decode the photos of a simulated reader"));
    m_simulatorPhotos->setToolTip(
        tr("Only the simulator can decode the photos of simulated cards."));

    auto *const page = new QWidget;
    auto *const layout = new QHBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(labelFor(&m_device, tr("&Device")));
    layout->addWidget(&m_device, 1);
    layout->addWidget(refresh);
    layout->addWidget(m_simulatorPhotos);
    return page;
}

QWidget *RoadPanel::makeSimulatorPage()
{
    m_card.addItems(simulator::builtInCardNames());
    m_card.setCurrentText(QStringLiteral("resident"));
    m_card.setObjectName(QStringLiteral("card"));
    m_card.setAccessibleName(tr("Card for the simulator"));
    letShrink(&m_card, 12);
    auto *const file = new QPushButton(tr("Fro&m file…"));
    file->setObjectName(QStringLiteral("cardFile"));
    file->setAccessibleName(tr("Choose the file of a card description"));
    connect(file, &QPushButton::clicked, this, &RoadPanel::askForCardFile);

    m_faults.setEditable(true);
    m_faults.addItem(QString());
    for (const simulator::FaultRule &rule : simulator::makersFaultRules())
        m_faults.addItem(exampleOf(rule));
    m_faults.setObjectName(QStringLiteral("faults"));
    m_faults.setAccessibleName(tr("Faults of the simulator, separated by commas"));
    m_faults.lineEdit()->setAccessibleName(m_faults.accessibleName());
    m_faults.lineEdit()->setPlaceholderText(tr("none"));
    letShrink(&m_faults, 10);

    auto *const put = new QPushButton(tr("&Put card on"));
    put->setObjectName(QStringLiteral("putCard"));
    put->setAccessibleName(tr("Put the card on the simulator"));
    connect(put, &QPushButton::clicked, this, [this] {
        const QVariant path = m_card.currentData();
        emit cardPut(path.isValid() ? path.toString() : m_card.currentText(),
                     m_faults.currentText());
    });
    auto *const take = new QPushButton(tr("&Take it off"));
    take->setObjectName(QStringLiteral("takeCard"));
    take->setAccessibleName(tr("Take the card off the simulator"));
    connect(take, &QPushButton::clicked, this, &RoadPanel::cardTaken);

    auto *const page = new QWidget;
    auto *const layout = new QHBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(labelFor(&m_card, tr("&Card")));
    layout->addWidget(&m_card, 1);
    layout->addWidget(file);
    layout->addWidget(labelFor(&m_faults, tr("Fa&ult")));
    layout->addWidget(&m_faults, 1);
    layout->addWidget(put);
    layout->addWidget(take);
    return page;
}

void RoadPanel::tellChoice()
{
    RoadChoice choice;
    choice.road = static_cast<Road>(m_road.currentIndex());
    choice.device = app::parseUsbIds(m_device.currentData().toString()).value_or(app::UsbIds());
    choice.simulatorPhotos = m_simulatorPhotos->isChecked();
    emit roadChosen(choice);
}

void RoadPanel::listDevices()
{
    const QSignalBlocker quiet(&m_device);
    const QString before = m_device.currentData().toString();
    const app::UsbDevices list = app::listUsbDevices();
    m_device.clear();
    int likely = -1;
    for (const app::UsbDevice &device : list.devices) {
        if (likely < 0 && device.hasReaderPipes)
            likely = m_device.count();
        m_device.addItem(nameOf(device), app::toText(device.ids));
    }
    m_device.setCurrentIndex(std::max(likely, 0));
    if (const auto ids = app::parseUsbIds(before))
        selectDevice(*ids);
    else if (m_device.count() == 0)
        m_device.addItem(tr("no USB device"));
    if (list.code != 0)
        emit failed(messageOf(*app::findUsbResult(list.code)));
}

void RoadPanel::selectDevice(app::UsbIds device)
{
    const QString ids = app::toText(device);
    if (m_device.findData(ids) < 0)
        m_device.addItem(tr("%1 - not plugged in").arg(ids), ids);
    m_device.setCurrentIndex(m_device.findData(ids));
}

void RoadPanel::chooseMakersLibrary()
{
    m_road.setCurrentIndex(static_cast<int>(Road::MakersLibrary));
    tellChoice();
}

void RoadPanel::chooseUsb(app::UsbIds device, bool simulatorPhotos)
{
    m_simulatorPhotos->setChecked(simulatorPhotos);
    m_road.setCurrentIndex(static_cast<int>(Road::Usb));
    selectDevice(device);
}

void RoadPanel::chooseSimulator()
{
    m_road.setCurrentIndex(static_cast<int>(Road::Simulator));
}

int RoadPanel::cardItem(const QString &card)
{
    if (m_card.findText(card) < 0 && m_card.findData(card) < 0)
        m_card.addItem(QFileInfo(card).fileName(), card);
    return std::max(m_card.findText(card), m_card.findData(card));
}

void RoadPanel::putCard(const QString &card, const QString &faults)
{
    chooseSimulator();
    m_card.setCurrentIndex(cardItem(card));
    m_faults.setCurrentText(faults);
    emit cardPut(card, faults);
}

void RoadPanel::askForCardFile()
{
    auto *const dialog = new QFileDialog(this, tr("Card description"), QString(),
                                         tr("Card descriptions (*.json);;All files (*)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this](const QString &path) { m_card.setCurrentIndex(cardItem(path)); });
    dialog->open();
}

} // namespace viewer
