#pragma once

// What leaves the window: a card that is saved, exported or printed, and the table of the history.

#include <functional>

#include <QObject>

#include "apps/viewer/history_pane.h"
#include "apps/viewer/state_line.h"
#include "apps/viewer/viewer_settings.h"

class QPrinter;

namespace viewer
{

class CardExport : public QObject
{
    Q_OBJECT

public:
    /** Dialogs belong to `window`. The first folder that is chosen is noted in `settings`. */
    CardExport(ViewerSettings *settings, QWidget *window);

    /** From now on no file is called by its holder, unless the user does so. */
    void setCovered(bool covered) { m_isCovered = covered; }

    void save(const app::CardPointer &card);
    void saveAs(const app::CardPointer &card);
    void exportPdf(const app::CardPointer &card);
    void preview(const app::CardPointer &card);
    void print(const app::CardPointer &card);
    void exportHistory(const HistoryPane *history);

signals:
    /** `card`: the one that was saved, exported or printed; null: the history was. */
    void ended(const app::CardPointer &card, const viewer::State &state);

private:
    /** False when it could not be saved; it says so. */
    bool saveIn(const QString &folder, const app::CardPointer &card);
    void writePdf(const app::CardPointer &card, const QString &path);
    /** Says what became of it. `file`: what it is to be printed into; empty: it was painted on a
     * printer's page, if it could be. */
    void finishPrint(const app::CardPointer &card, const QString &file, bool isPainted);
    void askForFolder(const std::function<void(const QString &folder)> &use);
    void askForFile(const QString &title, const QString &proposal, const QString &filter,
                    const std::function<void(const QString &path)> &use);
    void report(const app::CardPointer &card, const QString &done, const QString &note = {},
                const QString &holder = {});
    void reportFailure(const app::CardPointer &card, const QString &failed, const QString &problem,
                       const QString &holder = {});

    ViewerSettings *m_settings;
    QWidget *m_window;
    bool m_isCovered = false;
};

} // namespace viewer
