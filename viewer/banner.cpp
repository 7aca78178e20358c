#include "viewer/banner.h"

#include <QAccessible>
#include <QStyle>

#include "ui_banner.h"

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

Banner::Banner(QWidget *parent) : QFrame(parent), m_ui(std::make_unique<Ui::Banner>())
{
    m_ui->setupUi(this);
}

Banner::~Banner() = default;

void Banner::tell(const Message &message)
{
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    m_ui->icon->setPixmap(style()->standardIcon(iconOf(message.kind), nullptr, this).pixmap(size));
    m_ui->headline->setText(message.headline);
    m_ui->details->setText(message.lines.join(QLatin1Char('\n')));
    m_ui->details->setVisible(!message.lines.isEmpty());
    setAccessibleName(message.headline);
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace viewer
