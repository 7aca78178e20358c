#include "apps/viewer/simulator_panel.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "simulator/card/card_library.h"
#include "simulator/card/faults.h"

namespace viewer
{

namespace
{

// A card or a fault with many words need not widen the window.
constexpr int SHORT_TEXT = 16;

QPushButton *button(const char *name, const QString &text)
{
    auto *const made = new QPushButton(text);
    made->setObjectName(QLatin1String(name));
    return made;
}

QLabel *labelOf(QComboBox *box, const QString &text)
{
    auto *const label = new QLabel(text);
    label->setBuddy(box);
    return label;
}

} // namespace

SimulatorPanel::SimulatorPanel(QWidget *parent)
    : QGroupBox(tr("Simulator"), parent), m_card(new QComboBox), m_faults(new QComboBox)
{
    setObjectName(QStringLiteral("simulator"));
    m_card->setObjectName(QStringLiteral("card"));
    m_card->setAccessibleName(tr("Card for the simulator"));
    for (const QString &name : simulator::builtInCardNames())
        m_card->addItem(name, name);
    selectCard(QStringLiteral("resident"));

    m_faults->setObjectName(QStringLiteral("faults"));
    m_faults->setAccessibleName(tr("Faults of the simulator"));
    m_faults->setEditable(true);
    m_faults->addItem(QString());
    for (const simulator::FaultRule &rule : simulator::faultRules(simulator::Road::MAKERS_LIBRARY))
        m_faults->addItem(simulator::faultExample(rule));
    m_faults->lineEdit()->setAccessibleName(m_faults->accessibleName());
    m_faults->lineEdit()->setPlaceholderText(tr("none"));
    for (QComboBox *const box : {m_card, m_faults}) {
        box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box->setMinimumContentsLength(SHORT_TEXT);
    }

    auto *const file = button("cardFile", tr("From f&ile…"));
    auto *const put = button("putCard", tr("P&ut card on"));
    auto *const take = button("takeCard", tr("Take it &off"));
    auto *const layout = new QHBoxLayout(this);
    layout->addWidget(labelOf(m_card, tr("C&ard")));
    layout->addWidget(m_card, 1);
    layout->addWidget(file);
    layout->addWidget(labelOf(m_faults, tr("&Fault")));
    layout->addWidget(m_faults, 1);
    layout->addWidget(put);
    layout->addWidget(take);
    connect(file, &QPushButton::clicked, this, &SimulatorPanel::askForCardFile);
    connect(put, &QPushButton::clicked, this, &SimulatorPanel::put);
    connect(take, &QPushButton::clicked, this, &SimulatorPanel::cardTaken);
}

void SimulatorPanel::putCard(const QString &card, const QString &faults)
{
    selectCard(card);
    m_faults->setCurrentText(faults);
    put();
}

void SimulatorPanel::selectCard(const QString &card)
{
    if (m_card->findData(card) < 0)
        m_card->addItem(QFileInfo(card).fileName(), card);
    m_card->setCurrentIndex(m_card->findData(card));
}

void SimulatorPanel::put()
{
    emit cardPut(m_card->currentData().toString(), m_faults->currentText());
}

void SimulatorPanel::askForCardFile()
{
    auto *const dialog = new QFileDialog(this, tr("Card description"), QString(),
                                         tr("Card descriptions (*.json);;All files (*)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, &SimulatorPanel::selectCard);
    dialog->open();
}

} // namespace viewer
