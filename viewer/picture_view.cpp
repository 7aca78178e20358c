#include "viewer/picture_view.h"

#include <QPainter>

namespace viewer
{

void PictureView::setPicture(const QByteArray &file, const QString &reason)
{
    m_picture = QPixmap();
    m_picture.loadFromData(file);
    m_reason = reason;
    describe();
}

void PictureView::setCovered(bool covered)
{
    m_isCovered = covered;
    describe();
}

void PictureView::describe()
{
    setAccessibleDescription(m_picture.isNull() ? m_reason
                             : m_isCovered      ? tr("Covered")
                                                : tr("The picture is shown in its true size."));
    setToolTip(accessibleDescription());
    update();
}

void PictureView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    if (!m_picture.isNull() && !m_isCovered) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(rect(), m_picture);
        return;
    }
    constexpr int MARGIN = 8;
    const bool isCover = !m_picture.isNull();
    painter.setPen(QPen(palette().color(QPalette::Mid), 1, isCover ? Qt::SolidLine : Qt::DashLine));
    painter.setBrush(isCover ? QBrush(palette().color(QPalette::Mid), Qt::BDiagPattern)
                             : palette().brush(QPalette::Base));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    QString text = isCover ? tr("Covered") : accessibleName() + QLatin1Char('\n') + m_reason;
    const QRect room = rect().adjusted(MARGIN, MARGIN, -MARGIN, -MARGIN);
    QRect place = painter.boundingRect(room, Qt::AlignCenter | Qt::TextWordWrap, text);
    if (!room.contains(place)) // the tool tip has the rest
        text = accessibleName();
    if (isCover)
        painter.fillRect(place.adjusted(-MARGIN, -MARGIN / 2, MARGIN, MARGIN / 2),
                         palette().brush(QPalette::Base));
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(room, Qt::AlignCenter | Qt::TextWordWrap, text);
}

} // namespace viewer
