#pragma once

// The cards of this run: a list that can be searched, exported and cleared.

#include <functional>

#include <QLineEdit>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QWidget>

#include "apps/card_view/card_table.h"
#include "apps/viewer/history_csv.h"

namespace viewer
{

class HistoryPane : public QWidget
{
    Q_OBJECT

public:
    explicit HistoryPane(QWidget *parent = nullptr);

    void add(const app::CardPointer &card);
    void clear();
    /** No card is marked as the one that is seen. */
    void deselect();
    void setCovered(bool covered);
    void focusSearch();

    /** The oldest first, as a register has them. */
    QVector<KeptCard> cards() const;

    QTableView *view() const { return m_view; }

signals:
    /** By the user. */
    void chosen(const viewer::KeptCard &card);
    void exportRequested();
    void clearRequested();

private:
    void keepChoice(const std::function<void()> &change);

    app::CardHistory m_history;
    QSortFilterProxyModel m_found;
    QLineEdit *m_search;
    QTableView *m_view;
    QPushButton *m_export;
    QPushButton *m_clear;
};

} // namespace viewer
