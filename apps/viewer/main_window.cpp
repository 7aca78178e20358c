#include "apps/viewer/main_window.h"

#include <algorithm>

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIcon>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>

#include "apps/card_view/attention.h"
#include "apps/reading/version_text.h"
#include "apps/viewer/diagnosis_dialog.h"
#include "apps/viewer/settings_dialog.h"

namespace viewer
{

namespace
{

constexpr QSize SIZE(1120, 720);
constexpr QSize FRAME(20, 40); ///< at most, with the desktop's title
// Of the window's width: the sides, and the column of the holder and the history.
constexpr int SIDES_SHARE = 480;
constexpr int HOLDER_SHARE = 560;
// Of that column's height.
constexpr int FIELDS_SHARE = 460;
constexpr int HISTORY_SHARE = 160;
constexpr double LARGE_TYPE = 1.3;
constexpr int LARGE_BUTTON = 40; ///< height, for fingers

QString clock(const QDateTime &time)
{
    return app::timeText(time, QStringLiteral("HH:mm"));
}

QString detailsOf(const app::Problem &problem)
{
    QStringList lines;
    if (!problem.cause.isEmpty())
        lines << MainWindow::tr("Cause: %1").arg(problem.cause);
    if (!problem.name.isEmpty())
        lines << MainWindow::tr("Code: %1").arg(problem.name);
    return lines.join(QLatin1Char('\n'));
}

QPushButton *largeButton(const char *name, const QString &text)
{
    auto *const button = new QPushButton(text);
    button->setObjectName(QLatin1String(name));
    button->setMinimumHeight(LARGE_BUTTON);
    return button;
}

} // namespace

MainWindow::MainWindow(const ViewerOptions &options)
    : m_settings(ViewerSettings::load()), m_export(new CardExport(&m_settings, this)),
      m_stateLine(new StateLine), m_simulator(new SimulatorPanel), m_pane(new CardPane),
      m_history(new HistoryPane), m_mainSplitter(new QSplitter(Qt::Horizontal)),
      m_sideSplitter(new QSplitter(Qt::Vertical)), m_readButton(largeButton("read", tr("&Read"))),
      m_automatic(new QCheckBox(tr("Read each &new card"))),
      m_coverBox(new QCheckBox(tr("Cover the hol&der's data"))),
      m_saveButton(largeButton("save", tr("&Save"))),
      m_printButton(largeButton("print", tr("&Print…"))), m_cardActions(new QActionGroup(this))
{
    setWindowTitle(tr("Card viewer"));
    setWindowIcon(QIcon::fromTheme(QStringLiteral("idcard-viewer"),
                                   QIcon(QStringLiteral(":/viewer/idcard-viewer.png"))));
    connect(m_export, &CardExport::ended, this, &MainWindow::sayWhatBecameOf);
    m_forget.setSingleShot(true);
    connect(&m_forget, &QTimer::timeout, this, &MainWindow::forgetCard);
    build();
    buildCardMenu();
    buildEditMenu();
    buildViewMenu();
    buildHelpMenu();
    // A button that was clicked would press itself at the next Space, by which cards are read.
    for (auto *const button : findChildren<QAbstractButton *>())
        button->setFocusPolicy(Qt::TabFocus);
    connectDesk();
    showCard({}, {});
    restore();
    apply(options);
    m_readButton->setFocus();
}

void MainWindow::build()
{
    m_mainSplitter->setObjectName(QStringLiteral("mainSplitter"));
    m_sideSplitter->setObjectName(QStringLiteral("sideSplitter"));
    for (QSplitter *const splitter : {m_mainSplitter, m_sideSplitter})
        splitter->setChildrenCollapsible(false);
    m_sideSplitter->addWidget(m_pane->holderColumn());
    m_sideSplitter->addWidget(m_history);
    m_mainSplitter->addWidget(m_pane);
    m_mainSplitter->addWidget(m_sideSplitter);

    auto *const center = new QWidget;
    auto *const layout = new QVBoxLayout(center);
    layout->addWidget(m_stateLine);
    layout->addWidget(m_simulator);
    layout->addWidget(m_mainSplitter, 1);
    layout->addWidget(builtCommands());
    setCentralWidget(center);

    connect(m_stateLine, &StateLine::cancelRequested, &m_desk, &app::CardDesk::cancel);
    connect(m_stateLine, &StateLine::detailsRequested, this, &MainWindow::showDetails);
    connect(m_stateLine, &StateLine::diagnosisRequested, this, &MainWindow::diagnose);
    connect(m_history, &HistoryPane::chosen, this, &MainWindow::showEarlierCard);
    connect(m_history, &HistoryPane::exportRequested, m_export,
            [this] { m_export->exportHistory(m_history); });
    connect(m_history, &HistoryPane::clearRequested, this, &MainWindow::clearHistory);
    connect(m_pane, &CardPane::copied, this, [this](const QString &what) {
        say({StateKind::READ, tr("Copied: %1").arg(what)});
    });
    connect(m_pane, &CardPane::copyRefused, this, [this] {
        say({StateKind::ATTENTION, tr("Nothing was copied."),
             tr("It is covered, the card does not have it, or no field is selected.")});
    });
    for (QTableView *const table : {m_pane->fields(), m_history->view()}) {
        // A table would take the key for itself, though nothing in it can be pressed.
        auto *const space = new QShortcut(Qt::Key_Space, table);
        space->setContext(Qt::WidgetShortcut);
        connect(space, &QShortcut::activated, &m_desk, &app::CardDesk::read);
    }
}

QWidget *MainWindow::builtCommands()
{
    m_automatic->setObjectName(QStringLiteral("automatic"));
    m_coverBox->setObjectName(QStringLiteral("cover"));
    m_readButton->setToolTip(tr("Space or F5"));
    m_readButton->setAccessibleName(tr("Read the card on the reader"));
    m_readButton->setDefault(true);
    m_coverBox->setToolTip(tr("While others look on. What is saved, printed or exported is the "
                              "whole card."));
    auto *const commands = new QWidget;
    auto *const layout = new QHBoxLayout(commands);
    layout->setContentsMargins({});
    layout->addWidget(m_readButton);
    layout->addWidget(m_automatic);
    layout->addStretch();
    layout->addWidget(m_coverBox);
    layout->addWidget(m_saveButton);
    layout->addWidget(m_printButton);
    connect(m_readButton, &QPushButton::clicked, &m_desk, &app::CardDesk::read);
    connect(m_automatic, &QCheckBox::toggled, this, &MainWindow::setAutomatic);
    connect(m_automatic, &QCheckBox::clicked, this, [this](bool automatic) {
        m_settings.isAutomatic = automatic;
        m_settings.store();
    });
    connect(m_coverBox, &QCheckBox::toggled, this, &MainWindow::cover);
    connect(m_coverBox, &QCheckBox::clicked, this, [this](bool covered) {
        m_settings.isCovered = covered;
        m_settings.store();
    });
    connect(m_saveButton, &QPushButton::clicked, m_export,
            [this] { m_export->save(m_shown.card); });
    connect(m_printButton, &QPushButton::clicked, m_export,
            [this] { m_export->print(m_shown.card); });
    return commands;
}

QAction *MainWindow::action(const QString &text, const QKeySequence &key,
                            const std::function<void()> &triggered)
{
    auto *const made = new QAction(text, this);
    made->setShortcut(key);
    connect(made, &QAction::triggered, this, triggered);
    return made;
}

QAction *MainWindow::cardAction(const QString &text, const QKeySequence &key,
                                const std::function<void()> &triggered)
{
    QAction *const made = action(text, key, triggered);
    m_cardActions->addAction(made);
    return made;
}

QAction *MainWindow::switchAction(const QString &text, const QKeySequence &key,
                                  bool ViewerSettings::*on,
                                  const std::function<void(bool)> &changed)
{
    auto *const made = new QAction(text, this);
    made->setShortcut(key);
    made->setCheckable(true);
    made->setChecked(m_settings.*on);
    connect(made, &QAction::toggled, this, changed);
    connect(made, &QAction::triggered, this, [this, on](bool isOn) {
        m_settings.*on = isOn;
        m_settings.store();
    });
    if (m_settings.*on)
        changed(true);
    return made;
}

void MainWindow::buildCardMenu()
{
    m_cardActions->setExclusive(false);
    QMenu *const menu = menuBar()->addMenu(tr("&Card"));
    menu->addAction(action(tr("&Read"), Qt::Key_F5, [this] { m_desk.read(); }));
    m_cancelAction = action(tr("&Give up reading"), Qt::Key_Escape, [this] { m_desk.cancel(); });
    m_cancelAction->setEnabled(false);
    menu->addAction(m_cancelAction);
    menu->addSeparator();
    menu->addAction(
        cardAction(tr("&Save"), QKeySequence::Save, [this] { m_export->save(m_shown.card); }));
    menu->addAction(cardAction(tr("Save &as…"), Qt::CTRL + Qt::SHIFT + Qt::Key_S,
                               [this] { m_export->saveAs(m_shown.card); }));
    menu->addAction(cardAction(tr("Export as P&DF…"), Qt::CTRL + Qt::Key_E,
                               [this] { m_export->exportPdf(m_shown.card); }));
    menu->addAction(
        cardAction(tr("Print pre&view…"), {}, [this] { m_export->preview(m_shown.card); }));
    menu->addAction(
        cardAction(tr("&Print…"), QKeySequence::Print, [this] { m_export->print(m_shown.card); }));
    menu->addSeparator();
    menu->addAction(action(tr("&Quit"), Qt::CTRL + Qt::Key_Q, [this] { close(); }));
}

void MainWindow::buildEditMenu()
{
    using Copied = CardPane::Copied;
    QMenu *const menu = menuBar()->addMenu(tr("&Edit"));
    menu->addAction(cardAction(tr("Copy the &name"), Qt::CTRL + Qt::Key_1,
                               [this] { m_pane->copy(Copied::NAME); }));
    menu->addAction(cardAction(tr("Copy the n&umber"), Qt::CTRL + Qt::Key_2,
                               [this] { m_pane->copy(Copied::NUMBER); }));
    QAction *const copy = cardAction(tr("&Copy the selected field"), QKeySequence::Copy,
                                     [this] { m_pane->copySelectedRow(); });
    QAction *const copyAll =
        cardAction(tr("Copy &all fields with labels"), Qt::CTRL + Qt::SHIFT + Qt::Key_C,
                   [this] { m_pane->copyAllWithLabels(); });
    menu->addActions({copy, copyAll});
    m_pane->fields()->addActions({copy, copyAll});
    menu->addSeparator();
    menu->addAction(cardAction(tr("Copy the &photo"), {}, [this] { m_pane->copy(Copied::PHOTO); }));
    menu->addAction(cardAction(tr("Copy the &front"), {}, [this] { m_pane->copy(Copied::FRONT); }));
    menu->addAction(cardAction(tr("Copy the &back"), {}, [this] { m_pane->copy(Copied::BACK); }));
    menu->addSeparator();
    menu->addAction(action(tr("&Search the history"), QKeySequence::Find,
                           [this] { m_history->focusSearch(); }));
    menu->addAction(action(tr("C&lear the history"), Qt::CTRL + Qt::SHIFT + Qt::Key_Delete,
                           [this] { clearHistory(); }));
    menu->addSeparator();
    menu->addAction(action(tr("S&ettings…"), Qt::CTRL + Qt::Key_Comma, [this] { openSettings(); }));
}

void MainWindow::buildViewMenu()
{
    QMenu *const menu = menuBar()->addMenu(tr("&View"));
    menu->addAction(switchAction(tr("&True size"), Qt::Key_F9, &ViewerSettings::isTrueSize,
                                 [this](bool on) { m_pane->setTrueSize(on); }));
    menu->addAction(switchAction(tr("&Larger type"), Qt::Key_F8, &ViewerSettings::hasLargeType,
                                 [this](bool on) { setLargeType(on); }));
    menu->addAction(switchAction(tr("Always on to&p"), {}, &ViewerSettings::isOnTop,
                                 [this](bool on) { setOnTop(on); }));
}

void MainWindow::buildHelpMenu()
{
    QMenu *const menu = menuBar()->addMenu(tr("&Help"));
    menu->addAction(action(tr("&Help"), QKeySequence::HelpContents, [this] { openHelp(); }));
    menu->addAction(action(tr("&Diagnose…"), Qt::CTRL + Qt::Key_D, [this] { diagnose(); }));
    menu->addAction(action(tr("&About"), {}, [this] { openAbout(); }));
}

void MainWindow::connectDesk()
{
    using app::CardDesk;
    m_desk.setLanguage(m_settings.language);
    connect(&m_desk, &CardDesk::readingStarted, this, [this] {
        dismissCard();
        keepFocus();
        m_readButton->setEnabled(false);
        m_cancelAction->setEnabled(true);
        say({});
    });
    const auto stopped = [this] {
        m_readButton->setEnabled(true);
        m_cancelAction->setEnabled(false);
    };
    connect(&m_desk, &CardDesk::cancelled, this, [this, stopped] {
        stopped();
        say({StateKind::WAITING, tr("Reading was given up."),
             tr("Lay a card on the reader and press Read.")});
    });
    connect(&m_desk, &CardDesk::failed, this, [this, stopped](const app::Problem &problem) {
        stopped();
        dismissCard();
        showProblem(problem);
    });
    connect(&m_desk, &CardDesk::cardRead, this,
            [this, stopped](const app::CardPointer &card, const app::Problem &problem) {
                stopped();
                addCard(card, problem);
            });
    connect(&m_desk, &CardDesk::cardRemoved, this, [this] {
        dismissCard();
        await();
    });
    connect(&m_desk, &CardDesk::readerAdded, this, [this] {
        if (!m_shown.card) // what is said of a card that was chosen meanwhile stays
            await();
    });
    connect(&m_desk, &CardDesk::readerRemoved, this, [this] {
        dismissCard();
        say({StateKind::ATTENTION, tr("The reader was unplugged."),
             tr("Plug it in again; reading goes on by itself.")});
    });
    connect(m_simulator, &SimulatorPanel::cardPut, this,
            [this](const QString &card, const QString &faults) {
                const bool isRead = m_automatic->isChecked();
                say({StateKind::WAITING, tr("A card lies on the simulator."),
                     isRead ? QString() : tr("Press Read.")});
                m_desk.putCard(card, faults);
            });
    connect(m_simulator, &SimulatorPanel::cardTaken, this, [this] {
        say({StateKind::WAITING, tr("No card lies on the simulator.")});
        m_desk.takeCard();
    });
}

void MainWindow::restore()
{
    resize(SIZE.boundedTo(QApplication::primaryScreen()->availableSize() - FRAME));
    m_mainSplitter->setSizes({SIDES_SHARE, HOLDER_SHARE});
    m_sideSplitter->setSizes({FIELDS_SHARE, HISTORY_SHARE});
    restoreGeometry(m_settings.geometry);
    m_mainSplitter->restoreState(m_settings.mainSplitter);
    m_sideSplitter->restoreState(m_settings.sideSplitter);
    m_history->view()->horizontalHeader()->restoreState(m_settings.historyHeader);
}

void MainWindow::apply(const ViewerOptions &options)
{
    app::RoadChoice choice = m_settings.reader;
    if (options.road)
        choice.road = *options.road;
    else if (options.device)
        choice = {app::ReaderRoad::USB, options.device, options.simulatorPhotos};
    else if (!options.card.isEmpty())
        choice = {app::ReaderRoad::SIMULATOR, {}, false};
    chooseRoad(choice);
    m_coverBox->setChecked(options.isCovered || m_settings.isCovered);
    await();
    m_automatic->setChecked(options.isAutomatic || m_settings.isAutomatic);
    if (!options.card.isEmpty())
        m_simulator->putCard(options.card, options.faults);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    m_settings.geometry = saveGeometry();
    m_settings.mainSplitter = m_mainSplitter->saveState();
    m_settings.sideSplitter = m_sideSplitter->saveState();
    m_settings.historyHeader = m_history->view()->horizontalHeader()->saveState();
    m_settings.store();
    QMainWindow::closeEvent(event);
}

void MainWindow::chooseRoad(const app::RoadChoice &choice)
{
    m_reader = choice;
    m_simulator->setVisible(choice.road == app::ReaderRoad::SIMULATOR);
    m_desk.setRoad(choice);
}

void MainWindow::setAutomatic(bool automatic)
{
    if (!m_desk.isReading())
        await(); // before a failure that comes at once
    m_desk.setAutomatic(automatic);
}

void MainWindow::cover(bool covered)
{
    m_pane->setCovered(covered);
    m_history->setCovered(covered);
    m_stateLine->setCovered(covered);
    m_export->setCovered(covered);
}

void MainWindow::setOnTop(bool onTop)
{
    const bool wasVisible = isVisible();
    setWindowFlag(Qt::WindowStaysOnTopHint, onTop); // which hides the window
    if (wasVisible)
        show();
}

void MainWindow::setLargeType(bool large)
{
    QFont larger = QApplication::font();
    if (large)
        larger.setPointSizeF(larger.pointSizeF() * LARGE_TYPE);
    setFont(larger);
}

void MainWindow::addCard(const app::CardPointer &card, const app::Problem &problem)
{
    const KeptCard kept{card, QDateTime::currentDateTime()};
    m_history->add(card);
    showCard(kept, app::kindForPeople(*card));
    if (m_settings.hasSound)
        QApplication::beep();
    const auto attention = [&card](bool isCovered) {
        return attentionTo(*card, isCovered).join(QLatin1Char(' '));
    };
    if (!problem.headline.isEmpty()) {
        say({StateKind::ATTENTION, problem.headline, problem.remedy, detailsOf(problem)});
    } else if (!attention(false).isEmpty()) {
        say({StateKind::ATTENTION,
             tr("The card was read; look at it closely."),
             attention(false),
             {},
             {},
             attention(true)});
    } else {
        say({StateKind::READ, tr("The card was read.")});
    }
}

void MainWindow::showEarlierCard(const KeptCard &kept)
{
    const QString caption = tr("Read at %1, from the history").arg(clock(kept.time));
    showCard(kept, caption);
    say({StateKind::ATTENTION, tr("An earlier card is shown."),
         tr("It was read at %1.").arg(clock(kept.time))});
}

void MainWindow::showCard(const KeptCard &kept, const QString &caption)
{
    m_forget.stop();
    m_shown = kept;
    if (!kept.card)
        keepFocus();
    m_pane->setCard(kept.card, caption);
    m_cardActions->setEnabled(kept.card != nullptr);
    m_saveButton->setEnabled(kept.card != nullptr);
    m_printButton->setEnabled(kept.card != nullptr);
}

void MainWindow::keepFocus()
{
    const QWidget *const focused = focusWidget();
    const QVector<QWidget *> disabled = {m_readButton, m_saveButton, m_printButton,
                                         m_pane->fields()};
    if (std::find(disabled.begin(), disabled.end(), focused) != disabled.end())
        centralWidget()->setFocus();
}

void MainWindow::dismissCard()
{
    m_history->deselect();
    const KeptCard previous = m_shown;
    if (m_settings.previousCard == PreviousCard::CLEARED)
        return forgetCard();
    if (!previous.card)
        return; // one that is grey stays so for as long as before
    showCard({}, {});
    m_pane->setCard(previous.card, {});
    m_pane->fade(tr("Previous card, %1").arg(clock(previous.time)));
    if (m_settings.previousCard == PreviousCard::FADED_A_WHILE)
        m_forget.start(m_settings.forgetAfterSeconds * 1000);
}

void MainWindow::forgetCard()
{
    showCard({}, {});
}

void MainWindow::clearHistory()
{
    m_history->clear();
    forgetCard();
    say({StateKind::WAITING, tr("The cards of this run are forgotten.")});
}

void MainWindow::say(const State &state)
{
    if (!m_desk.isReading())
        return m_stateLine->setState(state);
    const auto whileReading = [](const State &meanwhile) {
        QStringList words{tr("Leave the card on the reader."), meanwhile.headline, meanwhile.line};
        words.removeAll(QString());
        return words.join(QLatin1Char(' '));
    };
    m_stateLine->setState({StateKind::READING,
                           tr("Reading…"),
                           whileReading(state),
                           {},
                           {},
                           whileReading(coveredState(state))});
}

void MainWindow::sayWhatBecameOf(const app::CardPointer &card, const State &state)
{
    State said = state;
    if (card && card != m_shown.card && state.kind != StateKind::FAILED) {
        const QString warning = tr("It is an earlier card; another may lie on the reader.");
        said.kind = StateKind::ATTENTION;
        for (QString *const line : {&said.line, &said.coveredLine})
            *line = (warning + QLatin1Char(' ') + *line).trimmed();
    }
    say(said);
}

void MainWindow::await()
{
    say({StateKind::WAITING, m_automatic->isChecked()
                                 ? tr("Lay a card on the reader; it is read automatically.")
                                 : tr("Lay a card on the reader and press Read.")});
}

void MainWindow::showProblem(const app::Problem &problem)
{
    say({StateKind::FAILED, problem.headline, problem.remedy, detailsOf(problem)});
}

void MainWindow::showDetails()
{
    const State state = m_stateLine->state();
    auto *const box = new QMessageBox(QMessageBox::NoIcon, tr("Details"), state.headline,
                                      QMessageBox::Close, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(state.line + QLatin1String("\n\n") + state.details);
    box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box->setIconPixmap(stateIcon(state.kind, 48, devicePixelRatioF()));
    box->open();
}

void MainWindow::openSettings()
{
    // The way of reading that the command line asked for is not remembered unless it is chosen
    // here.
    ViewerSettings inUse = m_settings;
    inUse.reader = m_reader;
    auto *const dialog = new SettingsDialog(inUse, this);
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        const app::RoadChoice remembered = m_settings.reader;
        m_settings = dialog->settings();
        const app::RoadChoice chosen = m_settings.reader;
        if (chosen == m_reader)
            m_settings.reader = remembered;
        m_settings.store();
        if (chosen != m_reader) {
            dismissCard();
            await();
            chooseRoad(chosen);
        }
    });
    dialog->open();
}

void MainWindow::openHelp()
{
    auto *const box = new QMessageBox(QMessageBox::NoIcon, tr("Help"), tr("Reading a card"),
                                      QMessageBox::Close, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(
        tr("Lay the card on the reader and press Space, or let each new card be read.\n\n"
           "A click on a field copies what it says. The photo and the sides can be dragged to "
           "other programs.\n\n"
           "Space or F5: read\tEsc: give up reading\n"
           "Ctrl+1: copy the name\tCtrl+2: copy the number\n"
           "Ctrl+S: save\tCtrl+P: print\n"
           "F9: true size\tF8: larger type\n"
           "Ctrl+F: search the history\tCtrl+D: diagnose"));
    box->open();
}

void MainWindow::openAbout()
{
    auto *const box = new QMessageBox(QMessageBox::NoIcon, tr("About"), tr("Card viewer"),
                                      QMessageBox::Close, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setIconPixmap(windowIcon().pixmap(64));
    box->setInformativeText(QStringLiteral("idcard-viewer ") + app::versionText() +
                            QStringLiteral("\n\n") +
                            tr("Shows Chinese identity documents that a card reader has read. "
                               "Nothing of a card is kept but what you save."));
    box->open();
}

void MainWindow::diagnose()
{
    (new DiagnosisDialog(m_settings.language, this))->open();
}

void MainWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Space)
        m_desk.read();
    else
        QMainWindow::keyPressEvent(event);
}

} // namespace viewer
