#pragma once

// The window: its parts, and what the user can do with a card.

#include <QCheckBox>
#include <QMainWindow>
#include <QPushButton>
#include <QTableView>

#include "apps/card_sheet.h"
#include "viewer/banner.h"
#include "viewer/card_desk.h"
#include "viewer/card_pane.h"
#include "viewer/road_panel.h"
#include "viewer/viewer_options.h"

namespace viewer
{

class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(const ViewerOptions &options = {});

    /** Whether nothing is read over USB any more, after waiting for so long. */
    bool endsWithin(int milliseconds) { return m_desk.endsWithin(milliseconds); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void makeActions();
    QWidget *makeCommands();
    QWidget *makeHistory();
    void connectDesk();
    void apply(const ViewerOptions &options);

    void showCard(const CardPointer &card);
    void cover(bool covered);
    void clearHistory();
    void askWhereToSave();
    void saveIn(const QString &parent, const CardPointer &card);
    void askForPdf();
    void exportPdf(const QString &path, const CardPointer &card);
    void askForPrinter();
    static app::CardSheet sheetOf(const app::Card &card);
    /** That a copy is not covered, while the window is. */
    QStringList wholeCardNote() const;
    void tell(const QString &headline, const QStringList &lines = {},
              Message::Kind kind = Message::Kind::Note);

    CardDesk m_desk;
    RoadPanel m_road;
    Banner m_banner;
    CardPane m_pane;
    History m_history;
    QTableView m_historyTable;
    QPushButton m_read;
    QCheckBox m_automatic;
    QCheckBox m_cover;
    QList<QAction *> m_cardActions; ///< what takes a card
    QList<QAction *> m_copyActions;
    CardPointer m_card;
};

} // namespace viewer
