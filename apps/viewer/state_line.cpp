#include "apps/viewer/state_line.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QTextLayout>
#include <QVBoxLayout>

namespace viewer
{

namespace
{

constexpr int ICON_SIZE = 40;
constexpr int LINES = 2; ///< below the headline
constexpr int SPACING = 2;
constexpr double HEADLINE_SCALE = 1.35;
constexpr int GROUND_SHARE = 12; ///< per cent of the state's colour in the ground

enum Buttons { NO_BUTTON, CANCEL, FAILURE };

/** As much of the text as so many lines of this width hold; "…" stands for the rest. */
QString fitted(const QString &text, const QFont &font, int width, int lines)
{
    QTextLayout layout(text, font);
    layout.beginLayout();
    int begin = 0;
    for (int line = 0; line < lines; ++line) {
        QTextLine laid = layout.createLine();
        if (!laid.isValid())
            return text;
        laid.setLineWidth(width);
        begin = line + 1 < lines ? laid.textStart() + laid.textLength() : laid.textStart();
    }
    layout.endLayout();
    return text.left(begin) + QFontMetrics(font).elidedText(text.mid(begin), Qt::ElideRight, width);
}

QColor mixed(const QColor &first, const QColor &second, int shareOfSecond)
{
    const auto mix = [&](int one, int other) {
        return (one * (100 - shareOfSecond) + other * shareOfSecond) / 100;
    };
    return {mix(first.red(), second.red()), mix(first.green(), second.green()),
            mix(first.blue(), second.blue())};
}

/** Screen readers speak a notification that appears, wherever the focus is. */
QAccessibleInterface *notificationOf(const QString & /*className*/, QObject *object)
{
    auto *const line = qobject_cast<StateLine *>(object);
    return line == nullptr ? nullptr : new QAccessibleWidget(line, QAccessible::Notification);
}

} // namespace

State coveredState(const State &state)
{
    State covered = state;
    if (!state.coveredHeadline.isEmpty())
        covered.headline = state.coveredHeadline;
    if (!state.coveredLine.isEmpty())
        covered.line = state.coveredLine;
    return covered;
}

StateLine::StateLine(QWidget *parent)
    : QFrame(parent), m_icon(new QLabel), m_headline(new QLabel), m_line(new QLabel),
      m_buttons(new QStackedWidget), m_cancel(new QPushButton(tr("Cancel"))),
      m_details(new QPushButton(tr("De&tails"))), m_diagnose(new QPushButton(tr("Dia&gnose")))
{
    QAccessible::installFactory(notificationOf);
    build();
    fitToFont();
}

void StateLine::build()
{
    setObjectName(QStringLiteral("stateLine"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    m_icon->setObjectName(QStringLiteral("icon"));
    m_icon->setFixedSize(ICON_SIZE, ICON_SIZE);
    m_headline->setObjectName(QStringLiteral("headline"));
    m_headline->setTextFormat(Qt::PlainText);
    m_headline->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    m_line->setObjectName(QStringLiteral("line"));
    m_line->setTextFormat(Qt::PlainText);
    m_line->setWordWrap(true);
    m_line->setAlignment(Qt::AlignTop);
    m_line->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    m_line->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_cancel->setObjectName(QStringLiteral("cancel"));
    m_cancel->setToolTip(tr("Esc"));
    m_details->setObjectName(QStringLiteral("details"));
    m_diagnose->setObjectName(QStringLiteral("diagnose"));
    m_diagnose->setToolTip(tr("Look for what keeps cards from being read"));

    auto *const failureButtons = new QWidget;
    auto *const failureLayout = new QHBoxLayout(failureButtons);
    failureLayout->setContentsMargins({});
    failureLayout->addWidget(m_details);
    failureLayout->addWidget(m_diagnose);
    auto *const cancelPage = new QWidget;
    auto *const cancelLayout = new QHBoxLayout(cancelPage);
    cancelLayout->setContentsMargins({});
    cancelLayout->addStretch();
    cancelLayout->addWidget(m_cancel);
    m_buttons->addWidget(new QWidget);
    m_buttons->addWidget(cancelPage);
    m_buttons->addWidget(failureButtons);
    m_buttons->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);

    auto *const texts = new QVBoxLayout;
    texts->setSpacing(SPACING);
    texts->addStretch();
    texts->addWidget(m_headline);
    texts->addWidget(m_line);
    texts->addStretch();
    auto *const layout = new QHBoxLayout(this);
    layout->addWidget(m_icon);
    layout->addLayout(texts, 1);
    layout->addWidget(m_buttons);

    connect(m_cancel, &QPushButton::clicked, this, &StateLine::cancelRequested);
    connect(m_details, &QPushButton::clicked, this, &StateLine::detailsRequested);
    connect(m_diagnose, &QPushButton::clicked, this, &StateLine::diagnosisRequested);
}

void StateLine::fitToFont()
{
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * HEADLINE_SCALE);
    large.setBold(true);
    if (m_headline->font() != large)
        m_headline->setFont(large);
    const int headlineHeight = QFontMetrics(large).lineSpacing();
    const int linesHeight = LINES * QFontMetrics(font()).lineSpacing();
    const QMargins margins = layout()->contentsMargins();
    m_headline->setFixedHeight(headlineHeight);
    setFixedHeight(headlineHeight + SPACING + linesHeight + margins.top() + margins.bottom() +
                   2 * frameWidth());
}

void StateLine::setState(const State &state)
{
    m_given = state;
    showState();
    // Of an alert they would not be told.
    QAccessibleEvent event(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&event);
}

void StateLine::setCovered(bool covered)
{
    m_isCovered = covered;
    showState();
}

void StateLine::showState()
{
    m_state = m_isCovered ? coveredState(m_given) : m_given;
    const bool isFailure = m_state.kind == StateKind::FAILED || !m_state.details.isEmpty();
    m_details->setEnabled(!m_state.details.isEmpty());
    m_buttons->setCurrentIndex(m_state.kind == StateKind::READING ? CANCEL
                               : isFailure                        ? FAILURE
                                                                  : NO_BUTTON);
    colour();
    showTexts();
    setAccessibleName(m_state.headline);
    setAccessibleDescription(m_state.line);
}

void StateLine::colour()
{
    m_icon->setPixmap(stateIcon(m_state.kind, ICON_SIZE, devicePixelRatioF()));
    const QColor ground = mixed(QApplication::palette().color(QPalette::Window),
                                stateColour(m_state.kind), GROUND_SHARE);
    QPalette colours = palette();
    if (colours.color(QPalette::Window) == ground)
        return;
    colours.setColor(QPalette::Window, ground);
    setPalette(colours);
}

void StateLine::showTexts()
{
    const QString headline = QFontMetrics(m_headline->font())
                                 .elidedText(m_state.headline, Qt::ElideRight, m_headline->width());
    m_headline->setText(headline);
    m_headline->setToolTip(headline == m_state.headline ? QString() : m_state.headline);
    const QString line = fitted(m_state.line, m_line->font(), m_line->width(), LINES);
    m_line->setText(line);
    m_line->setVisible(!line.isEmpty());
    m_line->setToolTip(line == m_state.line ? QString() : m_state.line);
}

void StateLine::changeEvent(QEvent *event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        fitToFont();
    if (event->type() == QEvent::PaletteChange)
        colour();
}

void StateLine::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    showTexts();
}

} // namespace viewer
