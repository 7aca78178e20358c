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

    void save(const app::CardPointer &card);
    void saveAs(const app::CardPointer &card);
    void exportPdf(const app::CardPointer &card);
    void preview(const app::CardPointer &card);
    void print(const app::CardPointer &card);
    void exportHistory(const HistoryPane *history);

signals:
    void ended(const viewer::State &state);

private:
    void saveIn(const QString &folder, const app::Card &card);
    void printOn(const app::Card &card, QPrinter *printer);
    void askForFolder(const std::function<void(const QString &folder)> &use);
    void askForFile(const QString &title, const QString &proposal, const QString &filter,
                    const std::function<void(const QString &path)> &use);
    void report(const QString &done, const QString &note = {});
    void reportFailure(const QString &failed, const QString &problem);

    ViewerSettings *m_settings;
    QWidget *m_window;
};

} // namespace viewer
