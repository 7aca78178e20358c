// The floor of a whole run of the tool: a program of Qt Gui alone that loads the two templates,
// paints what painting_record wrote down and prints both pictures as base64, once and cold.
//
// Usage: cold_painting FILE

#include <cstdio>

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>

#include "bench/qt_painting.h"
#include "bench/recorded_painting.h"

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
    for (const RecordedSide &side : {front, back}) {
        const QPixmap card = QPixmap::fromImage(QImage(side.templateFile));
        std::puts(paintedByQt(card, side.painted, photo).constData());
    }
    return 0;
}
