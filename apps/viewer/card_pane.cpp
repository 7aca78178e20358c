#include "apps/viewer/card_pane.h"

#include <QApplication>
#include <QClipboard>
#include <QScreen>
#include <QScrollBar>
#include <QWindow>

#include "apps/viewer/true_size.h"

namespace viewer
{

namespace
{

QString reasonOfMissingSide(const app::Card &card)
{
    return card.mayHavePictures() ? CardPane::tr("The library painted no picture.")
                                  : CardPane::tr("This road gives no picture.");
}

/** Null bytes: there is no picture, and `reason` is shown instead. */
void showPicture(QLabel *label, const QByteArray &file, const QString &reason, bool isCovered)
{
    QPixmap picture;
    picture.loadFromData(file);
    const bool isCover = isCovered && !picture.isNull();
    const bool isSeen = !isCover && !picture.isNull();
    const QString state = isSeen    ? CardPane::tr("The picture is shown in its true size.")
                          : isCover ? CardPane::tr("Covered")
                                    : reason;
    label->setAccessibleDescription(state);
    label->setToolTip(state);
    label->setFrameShape(isSeen ? QFrame::NoFrame : QFrame::StyledPanel);
    label->setBackgroundRole(isCover ? QPalette::Mid : QPalette::Base);
    if (isSeen) {
        label->setPixmap(picture);
        return;
    }
    label->setText(isCover ? state
                           : (label->accessibleName() + QLatin1Char('\n') + state).trimmed());
    if (label->heightForWidth(label->maximumWidth()) > label->maximumHeight())
        label->setText(label->accessibleName()); // the tool tip has the rest
}

} // namespace

CardPane::CardPane(QWidget *parent) : QWidget(parent)
{
    m_ui.setupUi(this);
    m_ui.fields->setModel(&m_fields);
    m_ui.fields->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_ui.fields->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    m_ui.fields->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    rescale();
}

void CardPane::setCard(const app::CardPointer &card)
{
    m_card = card;
    m_fields.setCard(card);
    showPictures();
}

void CardPane::setCovered(bool covered)
{
    m_isCovered = covered;
    m_fields.setCovered(covered);
    showPictures();
}

void CardPane::showPictures()
{
    if (!m_card) {
        for (QLabel *const label : {m_ui.front, m_ui.back, m_ui.photo})
            showPicture(label, {}, {}, m_isCovered);
        return;
    }
    const QString reason = reasonOfMissingSide(*m_card);
    showPicture(m_ui.front, m_card->picture(app::CardSide::FRONT), reason, m_isCovered);
    showPicture(m_ui.back, m_card->picture(app::CardSide::BACK), reason, m_isCovered);
    showPicture(m_ui.photo, m_card->photo(), app::missingPhotoNote(*m_card), m_isCovered);
}

void CardPane::copyRows(bool all) const
{
    QStringList lines;
    for (int row = 0; row < m_fields.rowCount(); ++row) {
        if (all || m_ui.fields->selectionModel()->isRowSelected(row, {}))
            lines << m_fields.item(row, 0)->text() + QLatin1Char('\t') +
                         m_fields.item(row, 1)->text();
    }
    if (!lines.isEmpty())
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
    // A screen that the window has left may go on reporting: the scale is that of the present one.
    connect(screen, &QScreen::physicalDotsPerInchChanged, this, &CardPane::rescale,
            Qt::UniqueConnection);
    connect(screen, &QScreen::geometryChanged, this, &CardPane::rescale, Qt::UniqueConnection);
    rescale();
}

void CardPane::rescale()
{
    const QWindow *const handle = window()->windowHandle();
    const app::ScreenScale scale =
        app::screenScale(handle != nullptr ? *handle->screen() : *QApplication::primaryScreen());
    m_ui.front->setFixedSize(scale.sizeOf(app::CARD_SIZE_MM));
    m_ui.back->setFixedSize(scale.sizeOf(app::CARD_SIZE_MM));
    m_ui.photo->setFixedSize(scale.sizeOf(app::PHOTO_SIZE_MM));
    m_ui.scaleNote->setVisible(!scale.isTrue);
    m_ui.sides->setFixedWidth(m_ui.sides->widget()->sizeHint().width() +
                              m_ui.sides->verticalScrollBar()->sizeHint().width());
    showPictures();
}

} // namespace viewer
