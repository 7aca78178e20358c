#include "viewer/main_window.h"

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenuBar>
#include <QPrintDialog>
#include <QPrinter>
#include <QScreen>
#include <QSplitter>

#include "apps/card_files.h"

namespace viewer
{

namespace
{

/** Both sides of a card and all its fields are seen without scrolling; pixels. */
constexpr QSize COMFORTABLE_SIZE(1080, 720);

} // namespace

MainWindow::MainWindow(const ViewerOptions &options)
{
    setWindowTitle(tr("Card viewer"));
    auto *const splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(&m_pane);
    splitter->addWidget(makeHistory());
    splitter->setStretchFactor(0, 1);
    splitter->setChildrenCollapsible(false);

    auto *const center = new QWidget;
    auto *const layout = new QVBoxLayout(center);
    layout->addWidget(&m_road);
    layout->addWidget(makeCommands());
    layout->addWidget(&m_banner);
    layout->addWidget(splitter, 1);
    setCentralWidget(center);

    makeActions();
    connectDesk();
    showCard(nullptr);
    tell(tr("Lay a card on the reader and press Read."));
    m_read.setFocus();
    resize(sizeHint().expandedTo(COMFORTABLE_SIZE));
    apply(options);
    constexpr QSize COMFORTABLE(1100, 680);
    resize(COMFORTABLE.boundedTo(QApplication::primaryScreen()->availableSize()));
}

QWidget *MainWindow::makeCommands()
{
    m_read.setText(tr("&Read"));
    m_read.setObjectName(QStringLiteral("read"));
    m_read.setAccessibleName(tr("Read the card on the reader"));
    m_read.setToolTip(tr("Space or F5"));
    m_read.setDefault(true);
    connect(&m_read, &QPushButton::clicked, &m_desk, &CardDesk::read);
    m_automatic.setText(tr("Read each &new card"));
    m_automatic.setObjectName(QStringLiteral("automatic"));
    m_automatic.setAccessibleName(tr("Read each new card by itself"));
    connect(&m_automatic, &QCheckBox::toggled, &m_desk, &CardDesk::setAutomatic);
    m_cover.setText(tr("Co&ver name, number and photo"));
    m_cover.setObjectName(QStringLiteral("cover"));
    m_cover.setAccessibleName(tr("Cover name, number and photo while others look on"));
    m_cover.setToolTip(tr("What is copied is covered, too. What is saved, printed or exported is "
                          "the whole card."));
    connect(&m_cover, &QCheckBox::toggled, this, &MainWindow::cover);

    auto *const commands = new QWidget;
    auto *const layout = new QHBoxLayout(commands);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(&m_read);
    layout->addWidget(&m_automatic);
    layout->addStretch();
    layout->addWidget(&m_cover);
    return commands;
}

QWidget *MainWindow::makeHistory()
{
    m_historyTable.setModel(&m_history);
    m_historyTable.setObjectName(QStringLiteral("history"));
    m_historyTable.setAccessibleName(tr("Cards of this run"));
    m_historyTable.setSelectionBehavior(QAbstractItemView::SelectRows);
    m_historyTable.setSelectionMode(QAbstractItemView::SingleSelection);
    m_historyTable.setTabKeyNavigation(false);
    m_historyTable.setWordWrap(false);
    m_historyTable.verticalHeader()->hide();
    m_historyTable.horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_historyTable.horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    m_historyTable.horizontalHeader()->setHighlightSections(false);
    connect(m_historyTable.selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) {
                if (current.isValid())
                    showCard(m_history.card(current.row()));
            });

    auto *const label = new QLabel(tr("H&istory"));
    label->setBuddy(&m_historyTable);
    auto *const clear = new QPushButton(tr("C&lear"));
    clear->setObjectName(QStringLiteral("clearHistory"));
    clear->setAccessibleName(tr("Forget all cards of this run"));
    connect(clear, &QPushButton::clicked, this, &MainWindow::clearHistory);
    auto *const side = new QWidget;
    auto *const layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label);
    layout->addWidget(&m_historyTable, 1);
    layout->addWidget(clear);
    return side;
}

void MainWindow::makeActions()
{
    const auto add = [this](QMenu *menu, const QString &text, const QKeySequence &keys,
                            void (MainWindow::*slot)()) {
        QAction *const action = menu->addAction(text);
        action->setShortcut(keys);
        connect(action, &QAction::triggered, this, slot);
        return action;
    };
    QMenu *const file = menuBar()->addMenu(tr("&File"));
    QAction *const read = file->addAction(tr("&Read"));
    read->setShortcut(Qt::Key_F5);
    connect(read, &QAction::triggered, &m_desk, &CardDesk::read);
    file->addSeparator();
    m_cardActions << add(file, tr("&Save…"), QKeySequence::Save, &MainWindow::askWhereToSave)
                  << add(file, tr("Export as P&DF…"), Qt::CTRL + Qt::Key_E, &MainWindow::askForPdf)
                  << add(file, tr("&Print…"), QKeySequence::Print, &MainWindow::askForPrinter);
    file->addSeparator();
    connect(file->addAction(tr("&Quit")), &QAction::triggered, this, &QWidget::close);
    file->actions().last()->setShortcut(QKeySequence::Quit);

    QMenu *const edit = menuBar()->addMenu(tr("&Edit"));
    m_copyActions << edit->addAction(tr("&Copy the selected rows"))
                  << edit->addAction(tr("Copy &all rows"));
    m_copyActions[0]->setShortcut(QKeySequence::Copy);
    m_copyActions[1]->setShortcut(Qt::CTRL + Qt::SHIFT + Qt::Key_C);
    connect(m_copyActions[0], &QAction::triggered, &m_pane, &CardPane::copySelected);
    connect(m_copyActions[1], &QAction::triggered, &m_pane, &CardPane::copyAll);
    m_pane.addTableActions(m_copyActions);
    m_cardActions << m_copyActions;

    for (QTableView *const table : findChildren<QTableView *>())
        table->installEventFilter(this);
}

void MainWindow::connectDesk()
{
    connect(&m_desk, &CardDesk::readingStarted, this, [this] {
        tell(tr("Reading…"));
        m_banner.repaint(); // the reading may hold up this thread
    });
    connect(&m_desk, &CardDesk::cardAwaited, this,
            [this] { tell(tr("Lay a card on the reader; it is read by itself.")); });
    connect(&m_desk, &CardDesk::failed, &m_banner, &Banner::tell);
    connect(&m_desk, &CardDesk::cardRead, this,
            [this](const CardPointer &card, const Message &message) {
                m_history.add(card, QDateTime::currentDateTime());
                m_historyTable.resizeColumnsToContents();
                m_historyTable.setCurrentIndex(m_history.index(0, 0));
                showCard(card);
                if (message.headline.isEmpty())
                    tell(tr("The card was read."));
                else
                    m_banner.tell(message);
            });
    connect(&m_road, &RoadPanel::roadChosen, this, [this](const RoadChoice &choice) {
        tell(tr("Lay a card on the reader and press Read."));
        m_desk.setRoad(choice);
    });
    connect(&m_road, &RoadPanel::cardPut, this, [this](const QString &card, const QString &faults) {
        if (m_desk.putCard(card, faults))
            tell(tr("A card lies on the simulator."));
    });
    connect(&m_road, &RoadPanel::cardTaken, this, [this] {
        m_desk.takeCard();
        tell(tr("No card lies on the simulator."));
    });
    connect(&m_road, &RoadPanel::failed, &m_banner, &Banner::tell);
}

void MainWindow::apply(const ViewerOptions &options)
{
    if (options.device)
        m_road.chooseUsb(*options.device, options.simulatorPhotos);
    else if (!options.card.isEmpty())
        m_road.putCard(options.card, options.faults);
    m_cover.setChecked(options.isCovered);
    m_automatic.setChecked(options.isAutomatic);
}

void MainWindow::showCard(const CardPointer &card)
{
    m_card = card;
    m_pane.setCard(card);
    for (QAction *const action : m_cardActions)
        action->setEnabled(card != nullptr);
}

void MainWindow::cover(bool covered)
{
    m_pane.setCovered(covered);
    m_history.setCovered(covered);
}

void MainWindow::clearHistory()
{
    m_history.clear();
    showCard(nullptr);
    tell(tr("The cards of this run are forgotten."));
}

void MainWindow::tell(const QString &headline, const QStringList &lines, Message::Kind kind)
{
    m_banner.tell({kind, headline, lines});
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

app::CardSheet MainWindow::sheetOf(const app::Card &card)
{
    return {card.picture(app::CardSide::Front), card.picture(app::CardSide::Back),
            translated("Card", card.kindLabel())};
}

QStringList MainWindow::wholeCardNote() const
{
    return m_cover.isChecked() ? QStringList(tr("It is the whole card: nothing is covered there."))
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
