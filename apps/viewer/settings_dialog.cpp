#include "apps/viewer/settings_dialog.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "apps/reading/usb_list.h"

namespace viewer
{

namespace
{

template <typename Value>
void addChoice(QComboBox *box, const QString &text, Value value)
{
    box->addItem(text, static_cast<int>(value));
}

template <typename Value>
Value choiceIn(const QComboBox *box)
{
    return static_cast<Value>(box->currentData().toInt());
}

template <typename Value>
void choose(QComboBox *box, Value value)
{
    box->setCurrentIndex(box->findData(static_cast<int>(value)));
}

QComboBox *named(const char *name, QComboBox *box)
{
    box->setObjectName(QLatin1String(name));
    return box;
}

QString nameOf(const app::UsbDevice &device)
{
    const QString name = toText(device.ids) + QLatin1Char(' ') + app::designation(device);
    return device.mayOpen ? name : SettingsDialog::tr("%1 - not open to you").arg(name);
}

} // namespace

SettingsDialog::SettingsDialog(const ViewerSettings &settings, QWidget *parent)
    : QDialog(parent), m_settings(settings), m_road(named("road", new QComboBox)),
      m_device(named("device", new QComboBox)),
      m_simulatorPhotos(new QCheckBox(tr("It is a &simulated reader: decode its photos"))),
      m_sound(new QCheckBox(tr("&Beep when a card was read"))),
      m_previousCard(named("previousCard", new QComboBox)), m_forgetAfter(new QSpinBox),
      m_folder(new QLineEdit(settings.folder)), m_folderNames(named("folderNames", new QComboBox)),
      m_language(named("language", new QComboBox))
{
    setWindowTitle(tr("Settings"));
    setAttribute(Qt::WA_DeleteOnClose);
    addChoice(m_road, tr("As this machine is configured"), app::ReaderRoad::CONFIGURED);
    addChoice(m_road, tr("Through the reader maker's library"), app::ReaderRoad::LIBRARY);
    addChoice(m_road, tr("Over USB, without pictures of the sides"), app::ReaderRoad::USB);
    addChoice(m_road, tr("Through the service of this machine"), app::ReaderRoad::SERVICE);
    addChoice(m_road, tr("From the simulator, without a reader"), app::ReaderRoad::SIMULATOR);
    addChoice(m_previousCard, tr("Grey it"), PreviousCard::FADED);
    addChoice(m_previousCard, tr("Grey it, then clear it"), PreviousCard::FADED_A_WHILE);
    addChoice(m_previousCard, tr("Clear it at once"), PreviousCard::CLEARED);
    addChoice(m_folderNames, tr("By number: 0001, 0002, …"), FolderNames::NUMBERS);
    addChoice(m_folderNames, tr("By the holder's name and number"), FolderNames::HOLDERS);
    m_language->addItem(tr("That of the desktop"), QString());
    m_language->addItem(QStringLiteral("English"), QStringLiteral("en"));
    m_language->addItem(QStringLiteral("简体中文"), QStringLiteral("zh_CN"));
    m_forgetAfter->setRange(1, LONGEST_FORGETTING_S);
    m_forgetAfter->setSuffix(tr(" s"));
    build();

    choose(m_road, settings.reader.road);
    selectDevice(settings.reader.device);
    m_simulatorPhotos->setChecked(settings.reader.simulatorPhotos);
    m_sound->setChecked(settings.hasSound);
    choose(m_previousCard, settings.previousCard);
    m_forgetAfter->setValue(settings.forgetAfterSeconds);
    choose(m_folderNames, settings.folderNames);
    m_language->setCurrentIndex(std::max(0, m_language->findData(settings.language)));
    follow();
}

void SettingsDialog::build()
{
    m_simulatorPhotos->setObjectName(QStringLiteral("simulatorPhotos"));
    m_sound->setObjectName(QStringLiteral("sound"));
    m_forgetAfter->setObjectName(QStringLiteral("forgetAfter"));
    m_forgetAfter->setAccessibleName(tr("Seconds until it is cleared"));
    m_folder->setObjectName(QStringLiteral("folder"));
    m_folder->setPlaceholderText(tr("asked at the first Save"));
    auto *const refresh = new QPushButton(tr("Re&fresh"));
    refresh->setObjectName(QStringLiteral("refresh"));
    refresh->setToolTip(tr("List the USB devices again"));
    auto *const browse = new QPushButton(tr("Cho&ose…"));
    browse->setObjectName(QStringLiteral("chooseFolder"));
    const auto row = [](QWidget *first, QWidget *second) {
        auto *const layout = new QHBoxLayout;
        layout->addWidget(first, 1);
        layout->addWidget(second);
        return layout;
    };
    const auto labelled = [](QFormLayout *form, const QString &text, QWidget *buddy,
                             QLayout *layout) {
        auto *const label = new QLabel(text);
        label->setBuddy(buddy);
        form->addRow(label, layout);
    };
    auto *const form = new QFormLayout;
    form->addRow(tr("&Read"), m_road);
    labelled(form, tr("&USB reader"), m_device, row(m_device, refresh));
    form->addRow(QString(), m_simulatorPhotos);
    form->addRow(QString(), m_sound);
    labelled(form, tr("&Previous card"), m_previousCard, row(m_previousCard, m_forgetAfter));
    labelled(form, tr("Sa&ve in"), m_folder, row(m_folder, browse));
    form->addRow(tr("&Name folders"), m_folderNames);
    form->addRow(tr("&Language"), m_language);
    form->addRow(QString(), new QLabel(tr("Another language takes effect at the next start.")));

    auto *const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    auto *const layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
    const auto changed = QOverload<int>::of(&QComboBox::currentIndexChanged);
    connect(m_road, changed, this, &SettingsDialog::follow);
    connect(m_previousCard, changed, this, &SettingsDialog::follow);
    connect(refresh, &QPushButton::clicked, this, &SettingsDialog::listDevices);
    connect(browse, &QPushButton::clicked, this, &SettingsDialog::askForFolder);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    listDevices();
}

ViewerSettings SettingsDialog::settings() const
{
    ViewerSettings chosen = m_settings;
    chosen.reader.road = choiceIn<app::ReaderRoad>(m_road);
    chosen.reader.device = parseUsbIds(m_device->currentData().toString());
    chosen.reader.simulatorPhotos = m_simulatorPhotos->isChecked();
    chosen.hasSound = m_sound->isChecked();
    chosen.previousCard = choiceIn<PreviousCard>(m_previousCard);
    chosen.forgetAfterSeconds = m_forgetAfter->value();
    chosen.folder = m_folder->text().trimmed();
    chosen.folderNames = choiceIn<FolderNames>(m_folderNames);
    chosen.language = m_language->currentData().toString();
    return chosen;
}

void SettingsDialog::listDevices()
{
    const auto before = parseUsbIds(m_device->currentData().toString());
    m_device->clear();
    m_device->addItem(tr("The only one that is plugged in"), QString());
    for (const app::UsbDevice &device : app::listUsbDevices().devices)
        m_device->addItem(nameOf(device), toText(device.ids));
    selectDevice(before);
}

void SettingsDialog::selectDevice(const std::optional<UsbIds> &ids)
{
    const QString text = ids ? toText(*ids) : QString();
    if (m_device->findData(text) < 0)
        m_device->addItem(tr("%1 - not plugged in").arg(text), text);
    m_device->setCurrentIndex(m_device->findData(text));
}

/** What another choice gives no meaning to cannot be chosen. */
void SettingsDialog::follow()
{
    const bool isUsb = choiceIn<app::ReaderRoad>(m_road) == app::ReaderRoad::USB;
    m_device->setEnabled(isUsb);
    m_simulatorPhotos->setEnabled(isUsb);
    m_forgetAfter->setEnabled(choiceIn<PreviousCard>(m_previousCard) ==
                              PreviousCard::FADED_A_WHILE);
}

void SettingsDialog::askForFolder()
{
    auto *const dialog = new QFileDialog(this, tr("Save cards in"), m_folder->text());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, m_folder, &QLineEdit::setText);
    dialog->open();
}

} // namespace viewer
