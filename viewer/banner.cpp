#include "viewer/banner.h"

#include <array>

#include <QAccessible>
#include <QStyle>

#include "ui_banner.h"

namespace viewer
{

namespace
{

// By the kind of the message.
constexpr std::array<QStyle::StandardPixmap, 3> ICONS = {
    QStyle::SP_MessageBoxInformation, QStyle::SP_MessageBoxWarning, QStyle::SP_MessageBoxCritical};

} // namespace

Banner::Banner(QWidget *parent) : QFrame(parent), m_ui(std::make_unique<Ui::Banner>())
{
    m_ui->setupUi(this);
}

Banner::~Banner() = default;

void Banner::tell(const Message &message)
{
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    const QStyle::StandardPixmap icon = ICONS.at(static_cast<std::size_t>(message.kind));
    m_ui->icon->setPixmap(style()->standardIcon(icon, nullptr, this).pixmap(size));
    m_ui->headline->setText(message.headline);
    m_ui->details->setText(message.lines.join(QLatin1Char('\n')));
    m_ui->details->setVisible(!message.lines.isEmpty());
    setAccessibleName(message.headline);
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace viewer
