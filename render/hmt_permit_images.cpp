// The pictures of the residence permit for residents of Hong Kong, Macao and Taiwan.

#include "render/makecardimg.h"

#include "render/card_items.h"
#include "render/card_template.h"
#include "render/card_texts.h"
#include "render/tools.h"

namespace
{

using Hmt = _tagIDCARD_INFO_ALL_HMT;
using Text = TextItem<Hmt>;
using DatePart = DatePartItem<Hmt>;

constexpr TextStyle NAME{Family::BODY, 18, 0.0, 0};
constexpr TextStyle SEX{Family::BODY, 14, 0.0, 0};
constexpr TextStyle BIRTH{Family::BODY, 16, 0.0, 0};
constexpr TextStyle ADDRESS{Family::BODY, 16, 2.0, 0};
constexpr TextStyle NUMBER{Family::NUMBER, 19, 3.0, NUMBER_WEIGHT};
constexpr TextStyle BACK{Family::BODY, 14, 0.0, 0};

constexpr CardItem<Hmt> FRONT_ITEMS[] = {
    Text{[](const Hmt &r) { return card_texts::spreadName(r.szName); }, 98, 64, NAME, 0, 0},
    Text{[](const Hmt &r) { return card_texts::field(r.szSex); }, 98, 100, SEX, 0, 0},
    Text{[](const Hmt &r) { return card_texts::field(r.szBirthYear); }, 98, 136, BIRTH, 0, 0},
    DatePart{&Hmt::szBirthMonth, 171, 174, 136, BIRTH},
    DatePart{&Hmt::szBirthDay, 212, 216, 136, BIRTH},
    Text{[](const Hmt &r) { return card_texts::field(r.szAddress); }, 98, 174, ADDRESS, 11, 24},
    PhotoItem{310, 53, QSize(140, 210), PhotoBackground::AS_IT_IS},
    Text{[](const Hmt &r) { return card_texts::field(r.szID); }, 175, 269, NUMBER, 0, 0},
};

/** The three lines of a back, whose first stands at (x, y). */
constexpr int BACK_X = 223;

struct Back {
    const char *prefix; ///< first two characters of the permit's number
    const char *path;
    int y[3]; ///< baselines of issuing authority, validity, travel permit's number
};

// The lines of the Taiwan back stand one pixel higher: on purpose.
constexpr Back BACKS[] = {
    {"81", ":/Pics/hm_back.bmp", {224, 247, 268}},
    {"82", ":/Pics/hm_back.bmp", {224, 247, 268}},
    {"83", ":/Pics/tw_back.bmp", {223, 246, 267}},
};

/** The back for the holder of `number`, or null when its prefix is not known. */
const Back *backFor(const QString &number)
{
    const QString prefix = number.left(2);
    for (const Back &back : BACKS)
        if (prefix == QLatin1String(back.prefix))
            return &back;
    return nullptr;
}

} // namespace

QString MakeCardImg::makeIDCardHmtFrontBase64(_tagIDCARD_INFO_ALL_HMT *info)
{
    QPixmap canvas = loadTemplate(QLatin1String(":/Pics/hmt_front.bmp"));
    drawItems(canvas, *info, FRONT_ITEMS);
    return Tools::convertPixmapToBase64ViaJpg(canvas);
}

QString MakeCardImg::makeIDCardHmtBackBase64(_tagIDCARD_INFO_ALL_HMT *info)
{
    const Back *const back = backFor(card_texts::field(info->szID));
    if (back == nullptr)
        return {};
    QPixmap canvas = loadTemplate(QLatin1String(back->path));
    const QString lines[] = {
        card_texts::field(info->szDept),
        card_texts::validity(info->szValidStart, info->szValidEnd),
        card_texts::field(info->szPassNumber),
    };
    for (int i = 0; i < 3; ++i)
        drawLine(canvas, lines[i], BACK, BACK_X, back->y[i]);
    return Tools::convertPixmapToBase64ViaJpg(canvas);
}
