#include "apps/viewer/history_pane.h"

#include <algorithm>

#include <QDateTime>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace viewer
{

HistoryPane::HistoryPane(QWidget *parent)
    : QWidget(parent), m_search(new QLineEdit), m_view(new QTableView),
      m_export(new QPushButton(tr("E&xport…"))), m_clear(new QPushButton(tr("C&lear")))
{
    m_search->setObjectName(QStringLiteral("search"));
    m_search->setPlaceholderText(tr("Search the cards of this run"));
    m_search->setAccessibleName(tr("Search the cards of this run"));
    m_search->setClearButtonEnabled(true);
    m_export->setObjectName(QStringLiteral("exportHistory"));
    m_export->setToolTip(tr("Write these cards to a table for spreadsheet programs"));
    m_clear->setObjectName(QStringLiteral("clearHistory"));
    m_clear->setToolTip(tr("Forget all cards of this run"));

    m_found.setSourceModel(&m_history);
    m_found.setFilterKeyColumn(-1); // all of them
    m_found.setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_view->setObjectName(QStringLiteral("history"));
    m_view->setAccessibleName(tr("Cards of this run"));
    m_view->setModel(&m_found);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setTabKeyNavigation(false);
    m_view->setShowGrid(false);
    m_view->setWordWrap(false);
    m_view->verticalHeader()->hide();
    m_view->horizontalHeader()->setHighlightSections(false);
    m_view->horizontalHeader()->setSectionResizeMode(app::CardHistory::KIND, QHeaderView::Stretch);

    auto *const row = new QHBoxLayout;
    row->addWidget(m_search, 1);
    row->addWidget(m_export);
    row->addWidget(m_clear);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addLayout(row);
    layout->addWidget(m_view, 1);

    connect(m_search, &QLineEdit::textChanged, this, [this](const QString &text) {
        keepChoice([this, &text] { m_found.setFilterFixedString(text); });
    });
    connect(m_view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) {
                const int source = m_found.mapToSource(current).row();
                if (source >= 0)
                    emit chosen({m_history.card(source), m_history.time(source)});
            });
    connect(m_export, &QPushButton::clicked, this, &HistoryPane::exportRequested);
    connect(m_clear, &QPushButton::clicked, this, &HistoryPane::clearRequested);
    clear();
}

void HistoryPane::add(const app::CardPointer &card)
{
    // What is chosen stays chosen: the card that was read is shown without it.
    const QSignalBlocker quiet(m_view->selectionModel());
    m_history.add(card, QDateTime::currentDateTime());
    const QModelIndex newest = m_found.mapFromSource(m_history.index(0, 0));
    m_view->setCurrentIndex(newest);
    m_view->scrollToTop();
    for (const int column :
         {app::CardHistory::NAME, app::CardHistory::NUMBER, app::CardHistory::TIME}) {
        const int before = m_view->columnWidth(column);
        m_view->resizeColumnToContents(column);
        m_view->setColumnWidth(column, std::max(m_view->columnWidth(column), before));
    }
    m_export->setEnabled(true);
    m_clear->setEnabled(true);
}

void HistoryPane::clear()
{
    m_history.setRowCount(0);
    m_search->clear();
    m_export->setEnabled(false);
    m_clear->setEnabled(false);
}

void HistoryPane::deselect()
{
    m_view->setCurrentIndex({});
    m_view->clearSelection();
}

void HistoryPane::setCovered(bool covered)
{
    if (covered)
        m_search->clear(); // what is searched for may be a name
    keepChoice([this, covered] { m_history.setCovered(covered); });
}

/** Qt chooses the next row in the place of one that is no longer found: nobody has asked for it. */
void HistoryPane::keepChoice(const std::function<void()> &change)
{
    const QSignalBlocker quiet(m_view->selectionModel());
    const QPersistentModelIndex before = m_found.mapToSource(m_view->currentIndex());
    change();
    if (QPersistentModelIndex(m_found.mapToSource(m_view->currentIndex())) != before)
        deselect();
}

void HistoryPane::focusSearch()
{
    m_search->setFocus();
    m_search->selectAll();
}

QVector<KeptCard> HistoryPane::cards() const
{
    QVector<KeptCard> cards;
    for (int row = m_history.rowCount() - 1; row >= 0; --row)
        cards << KeptCard{m_history.card(row), m_history.time(row)};
    return cards;
}

} // namespace viewer
