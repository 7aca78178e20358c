#include "apps/card_view/card_pane.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>
#include <QWindow>

#include "apps/card_view/attention.h"
#include "apps/card_view/card_clipboard.h"
#include "apps/card_view/state_icon.h"
#include "apps/card_view/true_size.h"

namespace viewer
{

namespace
{

constexpr double NAME_SCALE = 2.0;
constexpr double NUMBER_SCALE = 1.5;
// Letters take half the place of ideographs, but foreigners have many.
constexpr int LONG_NAME = 16;

QString reasonOfMissingSide(const app::Card &card, app::CardSide side)
{
    return card.mayHavePictures() ? app::missingPictureNote(card, side)
                                  : CardPane::tr("This way of reading gives no picture.");
}

QLabel *plainLabel(const char *name)
{
    auto *const label = new QLabel;
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace

CardPane::CardPane(QWidget *parent)
    : QWidget(parent), m_front(new PictureView(tr("Front"), app::CARD_SIZE_MM)),
      m_back(new PictureView(tr("Back"), app::CARD_SIZE_MM)),
      m_photo(new PictureView(tr("Photo"), app::PHOTO_SIZE_MM)),
      m_captionLabel(plainLabel("caption")), m_name(plainLabel("name")),
      m_number(plainLabel("number")), m_notes(plainLabel("notes")),
      m_scaleNote(plainLabel("scaleNote")), m_fieldsView(new QTableView)
{
    build();
    fitToFont();
    showCard();
}

void CardPane::build()
{
    m_front->setObjectName(QStringLiteral("front"));
    m_back->setObjectName(QStringLiteral("back"));
    m_photo->setObjectName(QStringLiteral("photo"));
    m_name->setAccessibleDescription(tr("Name of the holder"));
    m_number->setAccessibleDescription(tr("Number of the document"));
    m_scaleNote->setText(tr("The screen does not say how large it is; the size may be wrong."));
    m_scaleNote->hide();
    m_holderColumn = builtHolder();

    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(builtSides());
}

QWidget *CardPane::builtSides()
{
    auto *const sides = new QWidget;
    auto *const layout = new QVBoxLayout(sides);
    layout->setContentsMargins({});
    layout->addWidget(m_front, 1);
    layout->addWidget(m_back, 1);
    layout->addWidget(m_scaleNote);
    return sides;
}

QWidget *CardPane::builtHolder()
{
    m_fieldsView->setObjectName(QStringLiteral("fields"));
    m_fieldsView->setAccessibleName(tr("Fields of the card"));
    m_fieldsView->setModel(&m_fields);
    m_fieldsView->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_fieldsView->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_fieldsView->setSelectionMode(QAbstractItemView::SingleSelection);
    m_fieldsView->setTabKeyNavigation(false);
    m_fieldsView->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_fieldsView->setShowGrid(false);
    m_fieldsView->setAlternatingRowColors(true);
    m_fieldsView->horizontalHeader()->hide();
    m_fieldsView->verticalHeader()->hide();
    m_fieldsView->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_fieldsView->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    m_fieldsView->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    connect(m_fieldsView, &QTableView::clicked, this,
            [this](const QModelIndex &index) { copyRow(index.row()); });

    auto *const texts = new QVBoxLayout;
    texts->addWidget(m_captionLabel);
    texts->addWidget(m_name);
    texts->addWidget(m_number);
    texts->addWidget(m_notes);
    texts->addStretch();
    auto *const head = new QHBoxLayout;
    head->addWidget(m_photo, 0, Qt::AlignTop);
    head->addLayout(texts, 1);
    auto *const holder = new QWidget;
    auto *const layout = new QVBoxLayout(holder);
    layout->setContentsMargins({});
    layout->addLayout(head);
    layout->addWidget(m_fieldsView, 1);
    return holder;
}

void CardPane::fitToFont()
{
    const auto scaled = [this](double scale) {
        QFont larger = font();
        larger.setPointSizeF(larger.pointSizeF() * scale);
        larger.setBold(true);
        return larger;
    };
    m_name->setFont(scaled(m_name->text().size() > LONG_NAME ? NUMBER_SCALE : NAME_SCALE));
    m_number->setFont(scaled(NUMBER_SCALE));
}

void CardPane::setCard(const app::CardPointer &card, const QString &caption)
{
    m_card = card;
    m_caption = caption;
    m_isFaded = false;
    m_fields.setCard(card);
    showCard();
}

void CardPane::fade(const QString &caption)
{
    m_isFaded = m_card != nullptr;
    m_caption = m_isFaded ? caption : QString();
    showCard();
}

void CardPane::setCovered(bool covered)
{
    m_isCovered = covered;
    showCard();
}

void CardPane::setTrueSize(bool trueSize)
{
    m_isTrueSize = trueSize;
    rescale();
}

void CardPane::showCard()
{
    const bool isUsable = m_card && !m_isFaded;
    m_fields.setCovered(m_isCovered);
    m_captionLabel->setText(m_caption);
    const auto shown = [this](const QString &text) {
        return m_isCovered && !text.isEmpty() ? app::COVERED_TEXT : text;
    };
    m_name->setText(m_card ? shown(app::holderName(*m_card)) : QString());
    m_number->setText(m_card ? shown(app::holderNumber(*m_card)) : QString());
    m_front->setPicture(m_card ? m_card->picture(app::CardSide::FRONT) : QByteArray(),
                        m_card ? reasonOfMissingSide(*m_card, app::CardSide::FRONT) : QString());
    m_back->setPicture(m_card ? m_card->picture(app::CardSide::BACK) : QByteArray(),
                       m_card ? reasonOfMissingSide(*m_card, app::CardSide::BACK) : QString());
    m_photo->setPicture(m_card ? m_card->photo() : QByteArray(),
                        m_card ? app::missingPhotoNote(*m_card) : QString());
    for (PictureView *const view : {m_front, m_back, m_photo}) {
        view->setCovered(m_isCovered);
        view->setFaded(m_isFaded);
    }
    fitToFont();
    showNotes();
    for (QWidget *const widget : {static_cast<QWidget *>(m_fieldsView),
                                  static_cast<QWidget *>(m_name), static_cast<QWidget *>(m_number)})
        widget->setEnabled(isUsable || !m_card);
}

void CardPane::showNotes()
{
    QStringList words;
    if (m_card && !m_isFaded)
        words = attentionTo(*m_card, m_isCovered);
    m_notes->setText(words.join(QLatin1Char('\n')));
    m_notes->setVisible(!words.isEmpty());
    QPalette colours = palette();
    colours.setColor(QPalette::Window, stateColour(StateKind::ATTENTION));
    colours.setColor(QPalette::WindowText, Qt::white);
    m_notes->setPalette(colours);
    m_notes->setAutoFillBackground(true);
    m_notes->setMargin(4);
}

void CardPane::copy(Copied what)
{
    if (!m_card || m_isFaded)
        return;
    switch (what) {
    case Copied::NAME:
        copyShown(app::holderName(*m_card), tr("Name"), m_isCovered);
        return;
    case Copied::NUMBER:
        copyShown(app::holderNumber(*m_card), tr("Number"), m_isCovered);
        return;
    case Copied::PHOTO:
    case Copied::FRONT:
    case Copied::BACK:
        break;
    }
    const PictureView *const view = what == Copied::PHOTO   ? m_photo
                                    : what == Copied::FRONT ? m_front
                                                            : m_back;
    if (view->visibleFile().isNull()) {
        emit copyRefused();
        return;
    }
    copyPicture(view->visibleFile());
    emit copied(view->accessibleName());
}

void CardPane::copyShown(const QString &text, const QString &label, bool isCovered)
{
    if (isCovered || text.isEmpty()) {
        emit copyRefused();
        return;
    }
    copyText(text);
    emit copied(label);
}

void CardPane::copyRow(int row)
{
    if (!m_card || m_isFaded)
        return;
    if (row < 0)
        emit copyRefused();
    else
        copyShown(m_fields.wholeContent(row), m_fields.item(row, 0)->text(),
                  m_fields.isCovered(row));
}

void CardPane::copySelectedRow()
{
    copyRow(m_fieldsView->currentIndex().row());
}

void CardPane::copyAllWithLabels()
{
    if (!m_card || m_isFaded)
        return;
    QStringList lines;
    for (int row = 0; row < m_fields.rowCount(); ++row)
        lines << m_fields.item(row, 0)->text() + QLatin1Char('\t') + m_fields.wholeContent(row);
    copyText(lines.join(QLatin1Char('\n')));
    emit copied(tr("All fields"));
}

void CardPane::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    QWindow *const handle = window()->windowHandle();
    connect(handle, &QWindow::screenChanged, this, &CardPane::followScreen, Qt::UniqueConnection);
    followScreen(handle->screen());
}

void CardPane::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        fitToFont();
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
    const QSize side = m_isTrueSize ? scale.sizeOf(app::CARD_SIZE_MM) : QSize();
    m_front->setFixedPictureSize(side);
    m_back->setFixedPictureSize(side);
    m_photo->setFixedSize(scale.sizeOf(app::PHOTO_SIZE_MM));
    m_scaleNote->setVisible(m_isTrueSize && !scale.isTrue);
}

} // namespace viewer
