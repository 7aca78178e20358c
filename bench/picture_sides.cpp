#include "bench/picture_sides.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QPainter>

#include "bench/sample_cards.h"
#include "render/makecardimg.h"

namespace
{

SampleCards cards;

} // namespace

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

const Kind KINDS[KIND_COUNT] = {
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
