#include "viewer/card_pane.h"

#include <algorithm>

#include <QApplication>
#include <QClipboard>
#include <QScreen>
#include <QScrollBar>
#include <QWindow>

#include "apps/card_output.h"
#include "apps/true_size.h"
#include "ui_card_pane.h"

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

/** Takes the first cell of each row. */
void copy(QModelIndexList rows)
{
    std::sort(rows.begin(), rows.end());
    QStringList lines;
    for (const QModelIndex &row : rows)
        lines << row.data().toString() + QLatin1Char('\t') +
                     row.siblingAtColumn(1).data().toString();
    if (!lines.isEmpty())
        QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

} // namespace

CardPane::CardPane(QWidget *parent) : QWidget(parent), m_ui(std::make_unique<Ui::CardPane>())
{
    m_ui->setupUi(this);
    m_ui->fields->setModel(&m_fields);
    m_ui->fields->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_ui->fields->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    m_ui->fields->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    rescale();
}

CardPane::~CardPane() = default;

void CardPane::setCard(const CardPointer &card)
{
    const QString reason = reasonOfMissingSide(card);
    m_ui->front->setPicture(card ? card->picture(app::CardSide::Front) : QByteArray(), reason);
    m_ui->back->setPicture(card ? card->picture(app::CardSide::Back) : QByteArray(), reason);
    m_ui->photo->setPicture(
        card ? card->photo() : QByteArray(),
        card ? translated("Card", app::missingPhotoNote(*card).toUtf8().constData()) : QString());
    m_fields.setCard(card);
}

void CardPane::setCovered(bool covered)
{
    for (PictureView *const view : findChildren<PictureView *>())
        view->setCovered(covered);
    m_fields.setCovered(covered);
}

void CardPane::addTableActions(const QList<QAction *> &actions)
{
    m_ui->fields->addActions(actions);
}

void CardPane::copySelected() const
{
    copy(m_ui->fields->selectionModel()->selectedRows());
}

void CardPane::copyAll() const
{
    QModelIndexList rows;
    for (int row = 0; row < m_fields.rowCount(); ++row)
        rows << m_fields.index(row, 0);
    copy(rows);
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
    m_ui->front->setFixedSize(scale.sizeOf(app::CARD_SIZE_MM));
    m_ui->back->setFixedSize(scale.sizeOf(app::CARD_SIZE_MM));
    m_ui->photo->setFixedSize(scale.sizeOf(app::PHOTO_SIZE_MM));
    m_ui->scaleNote->setVisible(!scale.isTrue);
    m_ui->sides->setFixedWidth(m_ui->sides->widget()->sizeHint().width() +
                               m_ui->sides->verticalScrollBar()->sizeHint().width());
}

} // namespace viewer
