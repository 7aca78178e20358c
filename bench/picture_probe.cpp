// Makes the two pictures of one card, or does what Qt itself needs for the same result: the floor.
// scripts/count-picture-instructions runs it under a counter of instructions, which counts inside
// `measuredPictures` only.
//
// Usage: picture_probe resident|hmt|foreign-2017|foreign-new makers|floor COUNT
//
// The floor scales the resident card's templates, draws the same texts with the same fonts,
// decodes, scales and draws the photo, and encodes two JPEG files as base64 text. It does not load
// the templates, whiten the photo, or prepare texts and fonts.

#include "bench/sample_cards.h"
#include "render/makecardimg.h"
#include "render/tools.h"
#include "tests/render/painting_recorder.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPixmap>

namespace
{

/** One side of a card: how the library makes it and what Qt has to do for it. */
struct Side {
    QString (*make)();
    QPixmap card; ///< the template, loaded
    QSize canvas; ///< what it is scaled to
    QSize photo;  ///< what the photo is scaled to
    std::vector<Painted> painted;
};

SampleCards cards;

Side sideOf(const char *path, QString (*make)())
{
    Side side{make, QPixmap::fromImage(QImage(QString::fromLatin1(path))), {}, {}, {}};
    {
        const PaintingRecorder recorder;
        make();
        side.painted = recorder.painted();
    }
    side.canvas = side.card.size();
    for (const Painted &painted : side.painted) {
        side.canvas = painted.canvas;
        if (!painted.isText)
            side.photo = painted.pixmap;
    }
    return side;
}

QString floorOf(const Side &side)
{
    QPixmap canvas =
        side.canvas == side.card.size()
            ? side.card
            : side.card.scaled(side.canvas, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (!side.painted.empty()) {
        QPainter painter(&canvas);
        for (const Painted &item : side.painted) {
            if (item.isText) {
                painter.setPen(item.color);
                painter.setFont(item.font);
                painter.drawText(item.point, QString::fromStdString(item.text));
            } else {
                QPixmap photo;
                photo.loadFromData(cards.cn.byPhoto, sizeof(cards.cn.byPhoto));
                painter.drawPixmap(item.point, photo.scaled(side.photo, Qt::IgnoreAspectRatio,
                                                            Qt::SmoothTransformation));
            }
        }
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    canvas.toImage().save(&buffer, "JPG", -1);
    return QString::fromLatin1(bytes.toBase64());
}

struct Kind {
    const char *name;
    const char *frontPath;
    const char *backPath;
    QString (*front)();
    QString (*back)();
};

constexpr Kind KINDS[] = {
    {"resident", ":/Pics/IDCardFront.bmp", ":/Pics/IDCardBack.bmp",
     [] { return MakeCardImg::makeIDCardCNFrontBase64(&cards.cn); },
     [] { return MakeCardImg::makeIDCardCNBackBase64(&cards.cn); }},
    {"hmt", ":/Pics/hmt_front.bmp", ":/Pics/hm_back.bmp",
     [] { return MakeCardImg::makeIDCardHmtFrontBase64(&cards.hmt); },
     [] { return MakeCardImg::makeIDCardHmtBackBase64(&cards.hmt); }},
    {"foreign-2017", ":/Pics/f2017_front.bmp", ":/Pics/f2017_back.bmp",
     [] { return MakeCardImg::makeIDCardF2017FrontBase64(&cards.f2017); },
     [] { return MakeCardImg::makeIDCardF2017BackBase64(&cards.f2017); }},
    {"foreign-new", ":/Pics/fnew_front.bmp", ":/Pics/fnew_back.bmp",
     [] { return MakeCardImg::makeIDCardFNewFrontBase64(&cards.fNew); },
     [] { return MakeCardImg::makeIDCardFNewBackBase64(&cards.fNew); }},
};

} // namespace

/** What is counted: front and back, `count` times. Returns how long the texts are. */
extern "C" [[gnu::noinline]] int measuredPictures(const Side &front, const Side &back, bool floor,
                                                  int count)
{
    int length = 0;
    for (int i = 0; i < count; ++i) {
        length += (floor ? floorOf(front) : front.make()).length();
        length += (floor ? floorOf(back) : back.make()).length();
    }
    return length;
}

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QGuiApplication application(argc, argv);
    if (argc != 4)
        return 2;
    for (const Kind &kind : KINDS) {
        if (std::strcmp(argv[1], kind.name) != 0)
            continue;
        const bool floor = std::strcmp(argv[2], "floor") == 0;
        const int count = std::atoi(argv[3]);
        const Side front = sideOf(kind.frontPath, kind.front);
        const Side back = sideOf(kind.backPath, kind.back);
        floorOf(front); // warm
        floorOf(back);
        const int length = measuredPictures(front, back, floor, count);
        std::printf("%s %s: %d characters of base64 in %d rounds\n", argv[1], argv[2], length,
                    count);
        return length > 0 ? 0 : 1;
    }
    return 2;
}
