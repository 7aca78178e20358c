// The pictures of the resident identity card, laid out in millimetres and painted at the size that
// a real card has on the screen.

#include "render/makecardimg.h"

#include <variant>

#include <QPixmap>
#include <QStringList>

#include "render/card_items.h"
#include "render/card_template.h"
#include "render/card_texts.h"
#include "render/tools.h"

namespace
{

using Cn = _tagIDCARD_INFO_ALL_CN;
using DrawCall = bool (*)(QPixmap &, QString, QColor, QString, int, double, double);

/** A line of text; which corner of it stands at (xmm, ymm) is the drawing call's affair. */
struct MillimetreText {
    QString (*text)(const Cn &record);
    DrawCall draw;
    double xmm;
    double ymm;
    int pt;
    Family family;
};

/** The address: lines below each other, smaller when it is long. */
struct MillimetreLines {
    std::string Cn::*text;
    double xmm;
    double ymm; ///< top of the first line
    int pt;
    int ptIfLong;
    int longFrom; ///< characters
    double gapMm; ///< between two lines
};

struct MillimetrePhoto {
    double xmm;
    double ymm;
    double boxWidthMm;
    double boxHeightMm;
};

using MillimetreItem = std::variant<MillimetreText, MillimetreLines, MillimetrePhoto>;

// What the canvas is larger than the card, in pixels. All positions are measured on this canvas.
constexpr double EXTRA_WIDTH = 2.0;
constexpr double EXTRA_HEIGHT = 1.0;

constexpr DrawCall FROM_TOP = &Tools::drawStringInPixmapFromTop;
constexpr DrawCall FROM_BOTTOM = &Tools::drawStringInPixmapFromBottom;
constexpr DrawCall FROM_BOTTOM_RIGHT = &Tools::drawStringInPixmapFromBottomRight;
constexpr DrawCall NUMBER_FROM_BOTTOM = &Tools::drawIDCodeStringInPixmapFromBottom;

constexpr MillimetreItem FRONT[] = {
    MillimetreText{[](const Cn &r) { return card_texts::spreadName(r.szName); }, FROM_BOTTOM, 17.0,
                   10.8, 11, Family::BODY},
    MillimetreText{[](const Cn &r) { return card_texts::field(r.szSex); }, FROM_BOTTOM, 17.0, 17.3,
                   9, Family::BODY},
    MillimetreText{[](const Cn &r) { return card_texts::field(r.szNation); }, FROM_BOTTOM, 34.0,
                   17.3, 9, Family::BODY},
    MillimetreText{[](const Cn &r) { return card_texts::field(r.szBirthYear); }, FROM_BOTTOM, 17.0,
                   23.8, 9, Family::BODY},
    MillimetreText{[](const Cn &r) { return card_texts::datePart(r.szBirthMonth).text; },
                   FROM_BOTTOM_RIGHT, 33.0, 23.8, 9, Family::BODY},
    MillimetreText{[](const Cn &r) { return card_texts::datePart(r.szBirthDay).text; },
                   FROM_BOTTOM_RIGHT, 41.0, 23.8, 9, Family::BODY},
    MillimetreLines{&Cn::szAddress, 17.0, 28.0, 9, 8, 31, 1.0},
    MillimetrePhoto{54.0, 8.0, 26.0, 32.0},
    MillimetreText{[](const Cn &r) { return card_texts::field(r.szID); }, NUMBER_FROM_BOTTOM, 30.0,
                   48.0, 12, Family::NUMBER},
};

constexpr MillimetreItem BACK[] = {
    MillimetreText{[](const Cn &r) { return card_texts::field(r.szDept); }, FROM_TOP, 36.0, 38.3, 9,
                   Family::BODY},
    MillimetreText{[](const Cn &r) { return card_texts::validity(r.szValidStart, r.szValidEnd); },
                   FROM_TOP, 36.0, 45.3, 9, Family::BODY},
};

void draw(QPixmap &canvas, const Cn &record, const MillimetreText &item)
{
    item.draw(canvas, item.text(record), Qt::black, familyName(item.family), item.pt, item.xmm,
              item.ymm);
}

void draw(QPixmap &canvas, const Cn &record, const MillimetreLines &item)
{
    QString text = card_texts::field(record.*item.text);
    const int pt = text.length() < item.longFrom ? item.pt : item.ptIfLong;
    const double step = Tools::getPixelHeightFromPoint(pt) + item.gapMm * Tools::getmm2Pixel();
    int number = 0;
    for (const QString &line : Tools::autoWrapEx(text)) {
        Tools::drawStringInPixmapFromTop(canvas, line, Qt::black, familyName(Family::BODY), pt,
                                         item.xmm, item.ymm, number * step);
        ++number;
    }
}

void draw(QPixmap &canvas, const Cn &record, const MillimetrePhoto &item)
{
    const double pixelsPerMm = Tools::getmm2Pixel();
    const QSize box(static_cast<int>(item.boxWidthMm * pixelsPerMm),
                    static_cast<int>(item.boxHeightMm * pixelsPerMm));
    QPixmap photo = fittedPhoto(record.byPhoto, PhotoBackground::TRANSPARENT, box);
    if (!photo.isNull())
        Tools::drawSubPixmapEx(canvas, photo, item.xmm, item.ymm);
}

/** The template at `path` at the size of a real card; null when it cannot be loaded. */
QPixmap realSizeCanvas(const QString &path)
{
    const QPixmap card = loadTemplate(path);
    const QSizeF size = MakeCardImg::getCardRealPixelSize();
    if (card.isNull())
        return card;
    const QPixmap canvas = card.scaled(static_cast<int>(size.width() + EXTRA_WIDTH),
                                       static_cast<int>(size.height() + EXTRA_HEIGHT),
                                       Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (canvas.isNull())
        qBadAlloc(); // throws; it is never empty
    return canvas;
}

template <std::size_t count>
QString paint(const QString &path, const Cn &record, const MillimetreItem (&items)[count])
{
    QPixmap canvas = realSizeCanvas(path);
    for (const MillimetreItem &item : items)
        std::visit([&](const auto &it) { draw(canvas, record, it); }, item);
    return Tools::convertPixmapToBase64ViaJpg(canvas);
}

} // namespace

QString MakeCardImg::makeIDCardCNFrontBase64(_tagIDCARD_INFO_ALL_CN *info)
{
    return paint(QLatin1String(":/Pics/IDCardFront.bmp"), *info, FRONT);
}

QString MakeCardImg::makeIDCardCNBackBase64(_tagIDCARD_INFO_ALL_CN *info)
{
    return paint(QLatin1String(":/Pics/IDCardBack.bmp"), *info, BACK);
}
