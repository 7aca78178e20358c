#pragma once

// The window: its parts, and what the user can do with a card.

#include "apps/viewer/card_desk.h"
#include "apps/viewer/card_table.h"
#include "apps/viewer/viewer_options.h"
#include "ui_main_window.h"

class QFileDialog;

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
    void keyPressEvent(QKeyEvent *event) override;

private:
    void connectControls();
    void connectTables();
    void connectDesk();
    void apply(const ViewerOptions &options);

    void addCard(const app::CardPointer &card, const app::Message &message);
    void showCard(const app::CardPointer &card);
    /** Whoever was shown is not the holder of what comes next; the history still has him. */
    void dismissCard();
    void cover(bool covered);
    void clearHistory();

    /** What uses the path that a dialog gives. */
    using CardUse = void (MainWindow::*)(const QString &path, const app::Card &card);
    void askWhereToSave();
    void saveIn(const QString &parent, const app::Card &card);
    void askForPdf();
    void exportPdf(const QString &path, const app::Card &card);
    void ask(QFileDialog *dialog, CardUse use);
    void askForPrinter();

    void showMessage(const app::Message &message);
    /** `problem` is empty if there is a copy of the card now. */
    void tellOfCopy(const QString &done, const QString &failed, const QString &problem);

    Ui::MainWindow m_ui;
    app::CardDesk m_desk;
    app::CardHistory m_history;
    app::CardPointer m_card;
};

} // namespace viewer
