#pragma once

// The window: its parts, and what the user can do with a card.

#include <QAction>
#include <QActionGroup>
#include <QCheckBox>
#include <QMainWindow>
#include <QPushButton>
#include <QSplitter>
#include <QTimer>

#include "apps/card_view/card_pane.h"
#include "apps/viewer/card_desk.h"
#include "apps/viewer/card_export.h"
#include "apps/viewer/history_pane.h"
#include "apps/viewer/simulator_panel.h"
#include "apps/viewer/state_line.h"
#include "apps/viewer/viewer_options.h"
#include "apps/viewer/viewer_settings.h"

namespace viewer
{

class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(const ViewerOptions &options = {});

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void build();
    QWidget *builtCommands();
    void buildCardMenu();
    void buildEditMenu();
    void buildViewMenu();
    void buildHelpMenu();
    QAction *action(const QString &text, const QKeySequence &key,
                    const std::function<void()> &triggered);
    QAction *cardAction(const QString &text, const QKeySequence &key,
                        const std::function<void()> &triggered);
    QAction *switchAction(const QString &text, const QKeySequence &key, bool ViewerSettings::*on,
                          const std::function<void(bool)> &changed);
    void connectDesk();
    void restore();
    void apply(const ViewerOptions &options);

    void chooseRoad(const app::RoadChoice &choice);
    void setAutomatic(bool automatic);
    void cover(bool covered);
    void setOnTop(bool onTop);
    void setLargeType(bool large);

    void addCard(const app::CardPointer &card, const app::Problem &problem);
    void showEarlierCard(const KeptCard &kept);
    void showCard(const KeptCard &kept, const QString &caption);
    /** Qt would give the focus of what is disabled to a neighbour, and it the next Space. */
    void keepFocus();
    /** Whoever was shown is not the holder of what comes next; the history still has him. */
    void dismissCard();
    void forgetCard();
    void clearHistory();

    /** While a card is read, this goes on to be said, too. */
    void say(const State &state);
    /** While a dialog was open, another card may have been read. */
    void sayWhatBecameOf(const app::CardPointer &card, const State &state);
    void await();
    void showProblem(const app::Problem &problem);
    void showDetails();
    void openSettings();
    void openHelp();
    void openAbout();
    void diagnose();

    ViewerSettings m_settings;
    app::RoadChoice m_reader; ///< in use; what is remembered unless the command line says otherwise
    app::CardDesk m_desk;
    KeptCard m_shown; ///< no card: none that anything can be done with
    QTimer m_forget;

    CardExport *m_export;
    StateLine *m_stateLine;
    SimulatorPanel *m_simulator;
    CardPane *m_pane;
    HistoryPane *m_history;
    QSplitter *m_mainSplitter;
    QSplitter *m_sideSplitter;
    QPushButton *m_readButton;
    QCheckBox *m_automatic;
    QCheckBox *m_coverBox;
    QPushButton *m_saveButton;
    QPushButton *m_printButton;
    QAction *m_cancelAction = nullptr;
    QActionGroup *m_cardActions;
};

} // namespace viewer
