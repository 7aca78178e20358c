#include "apps/viewer/main_window.h"

#include <array>
#include <memory>

#include <QAccessible>
#include <QApplication>
#include <QFileDialog>
#include <QIcon>
#include <QKeyEvent>
#include <QPrintDialog>
#include <QPrinter>
#include <QScreen>
#include <QShortcut>
#include <QStyle>

#include "apps/card/card_files.h"
#include "apps/viewer/card_sheet.h"

namespace viewer
{

namespace
{

// Of the window's width: the history shows name, number and time without scrolling.
constexpr int PANE_SHARE = 640;
constexpr int HISTORY_SHARE = 420;

// By the kind of the message.
constexpr std::array<QStyle::StandardPixmap, 3> ICONS = {
    QStyle::SP_MessageBoxInformation, QStyle::SP_MessageBoxWarning, QStyle::SP_MessageBoxCritical};

app::CardSheet sheetOf(const app::Card &card)
{
    return {card.picture(app::CardSide::FRONT), card.picture(app::CardSide::BACK),
            app::kindForPeople(card)};
}

} // namespace

MainWindow::MainWindow(const ViewerOptions &options)
{
    m_ui.setupUi(this);
    setWindowIcon(QIcon::fromTheme(QStringLiteral("idcard-viewer")));
    connectControls();
    connectTables();
    connectDesk();
    showCard(nullptr);
    showMessage({tr("Lay a card on the reader and press Read.")});
    m_ui.read->setFocus();
    apply(options);
    resize(size().boundedTo(QApplication::primaryScreen()->availableSize()));
    m_ui.splitter->setSizes({PANE_SHARE, HISTORY_SHARE});
}

void MainWindow::connectControls()
{
    connect(m_ui.read, &QPushButton::clicked, &m_desk, &app::CardDesk::read);
    connect(m_ui.automatic, &QCheckBox::toggled, &m_desk, &app::CardDesk::setAutomatic);
    connect(m_ui.cover, &QCheckBox::toggled, this, &MainWindow::cover);
    connect(m_ui.clearHistory, &QPushButton::clicked, this, &MainWindow::clearHistory);
    connect(m_ui.actionRead, &QAction::triggered, &m_desk, &app::CardDesk::read);
    connect(m_ui.actionSave, &QAction::triggered, this, &MainWindow::askWhereToSave);
    connect(m_ui.actionExport, &QAction::triggered, this, &MainWindow::askForPdf);
    connect(m_ui.actionPrint, &QAction::triggered, this, &MainWindow::askForPrinter);
    connect(m_ui.actionCopy, &QAction::triggered, m_ui.pane, &CardPane::copySelected);
    connect(m_ui.actionCopyAll, &QAction::triggered, m_ui.pane, &CardPane::copyAll);
}

void MainWindow::connectTables()
{
    m_ui.pane->addTableActions({m_ui.actionCopy, m_ui.actionCopyAll});
    m_ui.history->setModel(&m_history);
    m_ui.history->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_ui.history->horizontalHeader()->setSectionResizeMode(app::CardHistory::KIND,
                                                           QHeaderView::Stretch);
    connect(m_ui.history->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) {
                if (current.isValid())
                    showCard(m_history.card(current.row()));
            });
    for (QTableView *const table : findChildren<QTableView *>()) {
        // A table would take the key for itself, though nothing in it can be pressed.
        auto *const space = new QShortcut(Qt::Key_Space, table);
        space->setContext(Qt::WidgetShortcut);
        connect(space, &QShortcut::activated, &m_desk, &app::CardDesk::read);
    }
}

void MainWindow::connectDesk()
{
    connect(&m_desk, &app::CardDesk::readingStarted, this, [this] {
        dismissCard();
        showMessage({tr("Reading…")});
        m_ui.banner->repaint(); // the reading may hold up this thread
        m_ui.pane->repaint();
    });
    connect(&m_desk, &app::CardDesk::cardAwaited, this, [this] {
        dismissCard();
        showMessage({tr("Lay a card on the reader; it is read automatically.")});
    });
    connect(&m_desk, &app::CardDesk::failed, this, [this](const app::Message &message) {
        dismissCard();
        showMessage(message);
    });
    connect(&m_desk, &app::CardDesk::cardRead, this, &MainWindow::addCard);
    m_ui.roadPanel->setDesk(&m_desk);
    connect(m_ui.roadPanel, &RoadPanel::messageChanged, this, &MainWindow::showMessage);
}

void MainWindow::apply(const ViewerOptions &options)
{
    if (options.device)
        m_ui.roadPanel->chooseUsb(*options.device, options.simulatorPhotos);
    else if (!options.card.isEmpty())
        m_ui.roadPanel->putCard(options.card, options.faults);
    m_ui.cover->setChecked(options.isCovered);
    m_ui.automatic->setChecked(options.isAutomatic);
}

void MainWindow::addCard(const app::CardPointer &card, const app::Message &message)
{
    m_history.add(card, QDateTime::currentDateTime());
    m_ui.history->resizeColumnsToContents();
    m_ui.history->setCurrentIndex(m_history.index(0, 0));
    showCard(card);
    showMessage(message);
}

void MainWindow::showCard(const app::CardPointer &card)
{
    m_card = card;
    m_ui.pane->setCard(card);
    m_ui.cardActions->setEnabled(card != nullptr);
}

void MainWindow::dismissCard()
{
    m_ui.history->setCurrentIndex({});
    showCard(nullptr);
}

void MainWindow::cover(bool covered)
{
    m_ui.pane->setCovered(covered);
    m_history.setCovered(covered);
}

void MainWindow::clearHistory()
{
    m_history.setRowCount(0);
    showCard(nullptr);
    showMessage({tr("The cards of this run are forgotten.")});
}

void MainWindow::askWhereToSave()
{
    auto *const dialog = new QFileDialog(this, tr("Save in a new folder of"));
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    ask(dialog, &MainWindow::saveIn);
}

void MainWindow::saveIn(const QString &parent, const app::Card &card)
{
    QString folder;
    const QString problem = app::saveInNextFolder(card, parent, &folder);
    tellOfCopy(tr("The card was saved in %1.").arg(folder), tr("The card could not be saved."),
               problem);
}

void MainWindow::askForPdf()
{
    auto *const dialog =
        new QFileDialog(this, tr("Export as PDF"), QString(), tr("PDF files (*.pdf)"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("pdf"));
    ask(dialog, &MainWindow::exportPdf);
}

void MainWindow::exportPdf(const QString &path, const app::Card &card)
{
    QString problem;
    app::writeSheetPdf(sheetOf(card), path, &problem);
    tellOfCopy(tr("The card was exported to %1.").arg(path),
               tr("The PDF file could not be written."), problem);
}

void MainWindow::ask(QFileDialog *dialog, CardUse use)
{
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this, use, card = m_card](const QString &path) { (this->*use)(path, *card); });
    dialog->open();
}

void MainWindow::askForPrinter()
{
    const auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    auto *const dialog = new QPrintDialog(printer.get(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, printer, card = m_card] {
        const bool isPrinted = app::paintSheet(sheetOf(*card), printer.get());
        const QString remedy = tr("See that the printer is ready and that the card has pictures, "
                                  "and print once more.");
        tellOfCopy(tr("The card was sent to the printer."), tr("The card could not be printed."),
                   isPrinted ? QString() : remedy);
    });
    dialog->open();
}

void MainWindow::showMessage(const app::Message &message)
{
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    const QStyle::StandardPixmap icon = ICONS.at(static_cast<std::size_t>(message.kind));
    m_ui.icon->setPixmap(style()->standardIcon(icon, nullptr, this).pixmap(size));
    m_ui.headline->setText(message.headline);
    m_ui.details->setText(message.lines.join(QLatin1Char('\n')));
    m_ui.details->setVisible(!message.lines.isEmpty());
    m_ui.banner->setAccessibleName(message.headline);
    QAccessibleEvent event(m_ui.banner, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void MainWindow::tellOfCopy(const QString &done, const QString &failed, const QString &problem)
{
    if (!problem.isEmpty())
        showMessage({failed, {problem}, app::Message::Kind::FAILURE});
    else if (m_ui.cover->isChecked())
        showMessage({done, {tr("It is the whole card: nothing is covered there.")}});
    else
        showMessage({done});
}

void MainWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Space)
        m_desk.read();
    else
        QMainWindow::keyPressEvent(event);
}

} // namespace viewer
