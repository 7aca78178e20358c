// The floor of a whole run of the tool: a program of Qt Gui alone that loads the two templates,
// paints what painting_record wrote down and prints both pictures as base64, once and cold.
//
// Usage: cold_painting FILE

#include <cstdio>

#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPixmap>

#include "bench/recorded_painting.h"

namespace
{

QByteArray pictureOf(const RecordedSide &side, const QByteArray &photoFile)
{
    QPixmap canvas = QPixmap::fromImage(QImage(side.templateFile));
    const QSize size = side.painted.empty() ? canvas.size() : side.painted.front().canvas;
    if (size != canvas.size())
        canvas = canvas.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    {
        QPainter painter(&canvas);
        for (const Painted &item : side.painted) {
            if (item.isText) {
                painter.setPen(item.color);
                painter.setFont(item.font);
                painter.drawText(item.point, QString::fromStdString(item.text));
            } else {
                QPixmap photo;
                photo.loadFromData(photoFile);
                painter.drawPixmap(item.point, photo.scaled(item.pixmap, Qt::IgnoreAspectRatio,
                                                            Qt::SmoothTransformation));
            }
        }
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    canvas.toImage().save(&buffer, "JPG", -1);
    return bytes.toBase64();
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QFile file(argc == 2 ? QString::fromLocal8Bit(argv[1]) : QString());
    if (!file.open(QIODevice::ReadOnly))
        return 2;
    QDataStream stream(&file);
    RecordedSide front;
    RecordedSide back;
    QByteArray photo;
    stream >> front >> back >> photo;
    if (stream.status() != QDataStream::Ok)
        return 1;
    for (const RecordedSide &side : {front, back})
        std::puts(pictureOf(side, photo).constData());
    return 0;
}
