#include "viewer/card_pane.h"

#include <algorithm>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QScrollBar>
#include <QWindow>

#include "apps/card_output.h"

namespace viewer
{

namespace
{

QString reasonOfMissingSide(const CardPointer &card)
{
    if (!card)
        return {};
    return card->mayHavePictures() ? CardPane::tr("The library painted no picture.")
                                   : CardPane::tr("This road gives no picture.");
}

} // namespace

CardPane::CardPane()
    : m_front(tr("Front"), {app::CARD_WIDTH_MM, app::CARD_HEIGHT_MM}),
      m_back(tr("Back"), {app::CARD_WIDTH_MM, app::CARD_HEIGHT_MM}),
      m_photo(tr("Photo"), {app::PHOTO_WIDTH_MM, app::PHOTO_HEIGHT_MM})
{
    m_front.setObjectName(QStringLiteral("front"));
    m_back.setObjectName(QStringLiteral("back"));
    m_photo.setObjectName(QStringLiteral("photo"));
    m_scaleNote.setObjectName(QStringLiteral("scaleNote"));
    m_scaleNote.setWordWrap(true);
    m_scaleNote.setText(tr("This screen does not tell its size: the pictures may not be as large "
                           "as the card."));
    makeTable();

    auto *const texts = new QVBoxLayout;
    texts->addWidget(&m_photo, 0, Qt::AlignHCenter);
    texts->addWidget(&m_table, 1);
    auto *const layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(makePictures(), 0, 0);
    layout->addLayout(texts, 0, 1);
    layout->addWidget(&m_scaleNote, 1, 0, 1, 2);
    layout->setColumnStretch(1, 1);
    rescale();
}

QWidget *CardPane::makePictures()
{
    auto *const sides = new QWidget;
    auto *const layout = new QVBoxLayout(sides);
    layout->addWidget(&m_front);
    layout->addWidget(&m_back);
    layout->addStretch();
    m_sides.setWidget(sides);
    m_sides.setWidgetResizable(true);
    m_sides.setFrameShape(QFrame::NoFrame);
    m_sides.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_sides.setObjectName(QStringLiteral("sides"));
    m_sides.setAccessibleName(tr("Sides of the card"));
    return &m_sides;
}

void CardPane::makeTable()
{
    m_table.setModel(&m_fields);
    m_table.setObjectName(QStringLiteral("fields"));
    m_table.setAccessibleName(tr("Fields of the card"));
    m_table.setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table.setTabKeyNavigation(false);
    m_table.setWordWrap(true);
    m_table.verticalHeader()->hide();
    m_table.verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table.horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    m_table.horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    m_table.horizontalHeader()->setHighlightSections(false);
}

void CardPane::setCard(const CardPointer &card)
{
    const QString reason = reasonOfMissingSide(card);
    m_front.setPicture(card ? card->picture(app::CardSide::Front) : QByteArray(), reason);
    m_back.setPicture(card ? card->picture(app::CardSide::Back) : QByteArray(), reason);
    m_photo.setPicture(card ? card->photo() : QByteArray(),
                       card ? translated("Card", app::missingPhotoNote(*card).toUtf8().constData())
                            : QString());
    m_fields.setCard(card);
}

void CardPane::setCovered(bool covered)
{
    for (PictureView *const view : {&m_front, &m_back, &m_photo})
        view->setCovered(covered);
    m_fields.setCovered(covered);
}

void CardPane::addTableActions(const QList<QAction *> &actions)
{
    m_table.addActions(actions);
    m_table.setContextMenuPolicy(Qt::ActionsContextMenu);
}

void CardPane::copySelected() const
{
    QVector<int> rows;
    for (const QModelIndex &index : m_table.selectionModel()->selectedRows())
        rows << index.row();
    std::sort(rows.begin(), rows.end());
    if (!rows.isEmpty())
        copy(rows);
}

void CardPane::copyAll() const
{
    QVector<int> rows;
    for (int row = 0; row < m_fields.rowCount(); ++row)
        rows << row;
    if (!rows.isEmpty())
        copy(rows);
}

void CardPane::copy(const QVector<int> &rows) const
{
    QStringList lines;
    for (const int row : rows)
        lines << m_fields.rowText(row);
    QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void CardPane::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    QWindow *const handle = window()->windowHandle();
    connect(handle, &QWindow::screenChanged, this, &CardPane::followScreen, Qt::UniqueConnection);
    followScreen(handle->screen());
}

void CardPane::followScreen(QScreen *screen)
{
    if (m_screen != nullptr)
        m_screen->disconnect(this);
    m_screen = screen;
    connect(screen, &QScreen::physicalDotsPerInchChanged, this, &CardPane::rescale);
    connect(screen, &QScreen::geometryChanged, this, &CardPane::rescale);
    connect(screen, &QObject::destroyed, this, [this] { m_screen = nullptr; });
    rescale();
}

void CardPane::rescale()
{
    const app::ScreenScale scale =
        app::screenScale(m_screen != nullptr ? *m_screen : *QApplication::primaryScreen());
    for (PictureView *const view : {&m_front, &m_back, &m_photo})
        view->setScale(scale);
    m_scaleNote.setVisible(!scale.isTrue);
    m_sides.setFixedWidth(m_sides.widget()->sizeHint().width() +
                          m_sides.verticalScrollBar()->sizeHint().width());
}

} // namespace viewer
