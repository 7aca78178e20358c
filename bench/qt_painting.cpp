#include "bench/qt_painting.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>

namespace
{

void draw(const Painted &item, const QByteArray &photo, QPainter *painter)
{
    if (item.isText) {
        painter->setPen(item.color);
        painter->setFont(item.font);
        painter->drawText(item.point, QString::fromStdString(item.text));
        return;
    }
    QPixmap picture;
    picture.loadFromData(photo);
    painter->drawPixmap(
        item.point, picture.scaled(item.pixmap, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

} // namespace

QByteArray paintedByQt(QPixmap card, const std::vector<Painted> &painted, const QByteArray &photo)
{
    const QSize size = painted.empty() ? card.size() : painted.front().canvas;
    if (size != card.size())
        card = card.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (!painted.empty()) {
        QPainter painter(&card);
        for (const Painted &item : painted)
            draw(item, photo, &painter);
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    card.toImage().save(&buffer, "JPG", -1);
    return bytes.toBase64();
}
