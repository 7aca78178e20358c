#include "viewer/main_window.h"

#include <QApplication>
#include <QFileDialog>
#include <QKeyEvent>
#include <QPrintDialog>
#include <QPrinter>
#include <QScreen>

#include "apps/card_files.h"
#include "ui_main_window.h"

namespace viewer
{

namespace
{

app::CardSheet sheetOf(const app::Card &card)
{
    return {card.picture(app::CardSide::Front), card.picture(app::CardSide::Back),
            translated("Card", card.kindLabel())};
}

} // namespace

MainWindow::MainWindow(const ViewerOptions &options) : m_ui(std::make_unique<Ui::MainWindow>())
{
    m_ui->setupUi(this);
    m_ui->pane->addTableActions({m_ui->actionCopy, m_ui->actionCopyAll});
    prepareHistory();
    connectControls();
    connectDesk();
    showCard(nullptr);
    tell(tr("Lay a card on the reader and press Read."));
    m_ui->read->setFocus();
    apply(options);
    resize(size().boundedTo(QApplication::primaryScreen()->availableSize()));
}

MainWindow::~MainWindow() = default;

void MainWindow::prepareHistory()
{
    m_ui->history->setModel(&m_history);
    m_ui->history->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_ui->history->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    connect(m_ui->history->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) {
                if (current.isValid())
                    showCard(m_history.card(current.row()));
            });
}

void MainWindow::connectControls()
{
    connect(m_ui->read, &QPushButton::clicked, &m_desk, &CardDesk::read);
    connect(m_ui->automatic, &QCheckBox::toggled, &m_desk, &CardDesk::setAutomatic);
    connect(m_ui->cover, &QCheckBox::toggled, this, &MainWindow::cover);
    connect(m_ui->clearHistory, &QPushButton::clicked, this, &MainWindow::clearHistory);
    connect(m_ui->actionRead, &QAction::triggered, &m_desk, &CardDesk::read);
    connect(m_ui->actionSave, &QAction::triggered, this, &MainWindow::askWhereToSave);
    connect(m_ui->actionExport, &QAction::triggered, this, &MainWindow::askForPdf);
    connect(m_ui->actionPrint, &QAction::triggered, this, &MainWindow::askForPrinter);
    connect(m_ui->actionCopy, &QAction::triggered, m_ui->pane, &CardPane::copySelected);
    connect(m_ui->actionCopyAll, &QAction::triggered, m_ui->pane, &CardPane::copyAll);
    for (QTableView *const table : findChildren<QTableView *>())
        table->installEventFilter(this);
}

void MainWindow::connectDesk()
{
    connect(&m_desk, &CardDesk::readingStarted, this, [this] {
        tell(tr("Reading…"));
        m_ui->banner->repaint(); // the reading may hold up this thread
    });
    connect(&m_desk, &CardDesk::cardAwaited, this,
            [this] { tell(tr("Lay a card on the reader; it is read by itself.")); });
    connect(&m_desk, &CardDesk::failed, m_ui->banner, &Banner::tell);
    connect(&m_desk, &CardDesk::cardRead, this, &MainWindow::addCard);
    connect(m_ui->roadPanel, &RoadPanel::roadChosen, this, [this](const RoadChoice &choice) {
        tell(tr("Lay a card on the reader and press Read."));
        m_desk.setRoad(choice);
    });
    connect(m_ui->roadPanel, &RoadPanel::cardPut, this,
            [this](const QString &card, const QString &faults) {
                if (m_desk.putCard(card, faults))
                    tell(tr("A card lies on the simulator."));
            });
    connect(m_ui->roadPanel, &RoadPanel::cardTaken, this, [this] {
        m_desk.takeCard();
        tell(tr("No card lies on the simulator."));
    });
    connect(m_ui->roadPanel, &RoadPanel::failed, m_ui->banner, &Banner::tell);
}

void MainWindow::apply(const ViewerOptions &options)
{
    if (options.device)
        m_ui->roadPanel->chooseUsb(*options.device, options.simulatorPhotos);
    else if (!options.card.isEmpty())
        m_ui->roadPanel->putCard(options.card, options.faults);
    m_ui->cover->setChecked(options.isCovered);
    m_ui->automatic->setChecked(options.isAutomatic);
}

void MainWindow::addCard(const CardPointer &card, const Message &message)
{
    m_history.add(card, QDateTime::currentDateTime());
    m_ui->history->resizeColumnsToContents();
    m_ui->history->setCurrentIndex(m_history.index(0, 0));
    showCard(card);
    if (message.headline.isEmpty())
        tell(tr("The card was read."));
    else
        m_ui->banner->tell(message);
}

void MainWindow::showCard(const CardPointer &card)
{
    m_card = card;
    m_ui->pane->setCard(card);
    m_ui->cardActions->setEnabled(card != nullptr);
}

void MainWindow::cover(bool covered)
{
    m_ui->pane->setCovered(covered);
    m_history.setCovered(covered);
}

void MainWindow::clearHistory()
{
    m_history.forgetAll();
    showCard(nullptr);
    tell(tr("The cards of this run are forgotten."));
}

void MainWindow::tell(const QString &headline, const QStringList &lines, Message::Kind kind)
{
    m_ui->banner->tell({kind, headline, lines});
}

void MainWindow::askWhereToSave()
{
    auto *const dialog = new QFileDialog(this, tr("Save in a new folder of"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this, card = m_card](const QString &folder) { saveIn(folder, card); });
    dialog->open();
}

void MainWindow::saveIn(const QString &parent, const CardPointer &card)
{
    QString folder;
    const QString problem = app::saveInNextFolder(*card, parent, &folder);
    if (!problem.isEmpty())
        tell(tr("The card could not be saved."), {problem}, Message::Kind::Failure);
    else
        tell(tr("The card was saved in %1.").arg(folder), wholeCardNote());
}

void MainWindow::askForPdf()
{
    auto *const dialog =
        new QFileDialog(this, tr("Export as PDF"), QString(), tr("PDF files (*.pdf)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("pdf"));
    connect(dialog, &QFileDialog::fileSelected, this,
            [this, card = m_card](const QString &path) { exportPdf(path, card); });
    dialog->open();
}

void MainWindow::exportPdf(const QString &path, const CardPointer &card)
{
    QString problem;
    if (app::writeSheetPdf(sheetOf(*card), path, &problem))
        tell(tr("The card was exported to %1.").arg(path), wholeCardNote());
    else
        tell(tr("The PDF file could not be written."), {problem}, Message::Kind::Failure);
}

void MainWindow::askForPrinter()
{
    const auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    auto *const dialog = new QPrintDialog(printer.get(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, printer, card = m_card] {
        if (app::paintSheet(sheetOf(*card), printer.get()))
            tell(tr("The card was sent to the printer."), wholeCardNote());
        else
            tell(tr("The card could not be printed."),
                 {tr("See that the printer is ready and that the card has pictures, and print once "
                     "more.")},
                 Message::Kind::Failure);
    });
    dialog->open();
}

QStringList MainWindow::wholeCardNote() const
{
    return m_ui->cover->isChecked()
               ? QStringList(tr("It is the whole card: nothing is covered there."))
               : QStringList();
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    // A table would take the key for itself, though nothing in it can be pressed.
    if (event->type() == QEvent::KeyPress &&
        static_cast<const QKeyEvent *>(event)->key() == Qt::Key_Space) {
        m_desk.read();
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Space)
        m_desk.read();
    else
        QMainWindow::keyPressEvent(event);
}

} // namespace viewer
