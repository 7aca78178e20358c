#pragma once

// The window: its parts, and what the user can do with a card.

#include <memory>

#include <QMainWindow>

#include "apps/card_sheet.h"
#include "viewer/card_desk.h"
#include "viewer/card_table.h"
#include "viewer/viewer_options.h"

namespace viewer
{

namespace Ui
{
class MainWindow;
}

class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(const ViewerOptions &options = {});
    ~MainWindow() override;

    /** Whether nothing is read over USB any more, after waiting for so long. */
    bool endsWithin(int milliseconds) { return m_desk.endsWithin(milliseconds); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void prepareHistory();
    void connectControls();
    void connectDesk();
    void apply(const ViewerOptions &options);

    void addCard(const CardPointer &card, const Message &message);
    void showCard(const CardPointer &card);
    void cover(bool covered);
    void clearHistory();
    void askWhereToSave();
    void saveIn(const QString &parent, const CardPointer &card);
    void askForPdf();
    void exportPdf(const QString &path, const CardPointer &card);
    void askForPrinter();
    /** That a copy is not covered, while the window is. */
    QStringList wholeCardNote() const;
    void tell(const QString &headline, const QStringList &lines = {},
              Message::Kind kind = Message::Kind::Note);

    const std::unique_ptr<Ui::MainWindow> m_ui;
    CardDesk m_desk;
    History m_history;
    CardPointer m_card;
};

} // namespace viewer
