#include "viewer/banner.h"

#include <QAccessible>
#include <QGridLayout>
#include <QStyle>

namespace viewer
{

namespace
{

QStyle::StandardPixmap iconOf(Message::Kind kind)
{
    switch (kind) {
    case Message::Kind::Note:
        return QStyle::SP_MessageBoxInformation;
    case Message::Kind::Warning:
        return QStyle::SP_MessageBoxWarning;
    case Message::Kind::Failure:
        return QStyle::SP_MessageBoxCritical;
    }
    return QStyle::SP_MessageBoxInformation;
}

} // namespace

Banner::Banner()
{
    setFrameShape(QFrame::StyledPanel);
    QFont bold = font();
    bold.setBold(true);
    m_headline.setFont(bold);
    m_headline.setObjectName(QStringLiteral("headline"));
    m_details.setObjectName(QStringLiteral("details"));
    m_details.setAccessibleName(tr("Details of the message"));
    for (QLabel *const label : {&m_headline, &m_details}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    m_details.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);

    auto *const layout = new QGridLayout(this);
    layout->addWidget(&m_icon, 0, 0, Qt::AlignTop);
    layout->addWidget(&m_headline, 0, 1);
    layout->addWidget(&m_details, 1, 1);
    layout->setColumnStretch(1, 1);
}

void Banner::tell(const Message &message)
{
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    m_icon.setPixmap(style()->standardIcon(iconOf(message.kind), nullptr, this).pixmap(size));
    m_headline.setText(message.headline);
    m_details.setText(message.lines.join(QLatin1Char('\n')));
    m_details.setVisible(!message.lines.isEmpty());
    setAccessibleName(message.headline);
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace viewer
