#include "bench/picture_sides.h"

#include <QImage>

#include "bench/qt_painting.h"
#include "bench/sample_cards.h"
#include "render/makecardimg.h"

namespace
{

SampleCards cards;

} // namespace

Side sideOf(const char *path, QString (*make)())
{
    Side side{make, QPixmap::fromImage(QImage(QString::fromLatin1(path))), {}};
    {
        const PaintingRecorder recorder;
        make();
        side.painted = recorder.painted();
    }
    return side;
}

QString floorOf(const Side &side)
{
    static const QByteArray photo(reinterpret_cast<const char *>(cards.cn.byPhoto),
                                  sizeof(cards.cn.byPhoto));
    return QString::fromLatin1(paintedByQt(side.card, side.painted, photo));
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
