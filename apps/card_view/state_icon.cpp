#include "apps/card_view/state_icon.h"

#include <QPainter>
#include <QPainterPath>

namespace viewer
{

namespace
{

// The icon is painted in a square of this side.
constexpr double SIDE = 32.0;
constexpr double STROKE = 3.2;

/** A card that moves down towards the reader. */
void paintWaiting(QPainter *painter)
{
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(QRectF(9, 4, 14, 10), 2, 2);
    painter->drawLine(QPointF(16, 17), QPointF(16, 23));
    painter->drawPolyline(QPolygonF({{13, 20.5}, {16, 23.5}, {19, 20.5}}));
    painter->drawLine(QPointF(5, 28), QPointF(27, 28));
}

/** Waves above a card. */
void paintReading(QPainter *painter)
{
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(QRectF(6, 17, 20, 12), 2, 2);
    painter->drawArc(QRectF(12, 10, 8, 8), 40 * 16, 100 * 16);
    painter->drawArc(QRectF(8, 4, 16, 16), 40 * 16, 100 * 16);
}

void paintRead(QPainter *painter)
{
    painter->drawEllipse(QRectF(3, 3, 26, 26));
    painter->setPen(QPen(Qt::white, STROKE, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPolyline(QPolygonF({{10, 16.5}, {14.5, 21}, {22, 12}}));
}

void paintAttention(QPainter *painter)
{
    painter->drawPolygon(QPolygonF({{16, 4}, {29, 27}, {3, 27}}));
    painter->setPen(QPen(Qt::white, STROKE, Qt::SolidLine, Qt::RoundCap));
    painter->drawLine(QPointF(16, 12), QPointF(16, 19));
    painter->drawPoint(QPointF(16, 23.5));
}

void paintFailed(QPainter *painter)
{
    painter->drawEllipse(QRectF(3, 3, 26, 26));
    painter->setPen(QPen(Qt::white, STROKE, Qt::SolidLine, Qt::RoundCap));
    painter->drawLine(QPointF(11.5, 11.5), QPointF(20.5, 20.5));
    painter->drawLine(QPointF(20.5, 11.5), QPointF(11.5, 20.5));
}

struct Look {
    QRgb colour;
    void (*paint)(QPainter *painter);
};

const Look &lookOf(StateKind kind)
{
    static const Look looks[] = {
        {qRgb(0x5f, 0x7d, 0x95), paintWaiting}, {qRgb(0x2b, 0x7c, 0xc9), paintReading},
        {qRgb(0x2e, 0x8b, 0x57), paintRead},    {qRgb(0xd0, 0x7a, 0x00), paintAttention},
        {qRgb(0xcc, 0x35, 0x35), paintFailed},
    };
    return looks[static_cast<int>(kind)];
}

} // namespace

QColor stateColour(StateKind kind)
{
    return lookOf(kind).colour;
}

QPixmap stateIcon(StateKind kind, int size, qreal devicePixelRatio)
{
    QPixmap picture(QSize(size, size) * devicePixelRatio);
    picture.setDevicePixelRatio(devicePixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / SIDE, size / SIDE);
    painter.setPen(QPen(stateColour(kind), STROKE, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(stateColour(kind));
    lookOf(kind).paint(&painter);
    return picture;
}

} // namespace viewer
