// The pictures of the residence permit for residents of Hong Kong, Macao and Taiwan.

#include "render/makecardimg.h"

#include "render/card_canvas.h"
#include "render/card_fonts.h"
#include "render/card_texts.h"

using namespace card_texts;

namespace
{

constexpr TextStyle NAME{bodyFamily, 18, 0.0, 0};
constexpr TextStyle SEX{bodyFamily, 14, 0.0, 0};
constexpr TextStyle BIRTH{bodyFamily, 16, 0.0, 0};
constexpr TextStyle ADDRESS{bodyFamily, 16, 2.0, 0};
constexpr TextStyle NUMBER{numberFamily, 19, 3.0, NUMBER_WEIGHT};
constexpr TextStyle BACK{bodyFamily, 14, 0.0, 0};

constexpr QSize PHOTO_BOX(140, 210);

/** Draws month or day of birth: further right when a leading zero was taken off. */
void drawDatePart(CardCanvas &card, int x, int xWithoutZero, int y, const std::string &part)
{
    const DatePart date = datePart(part);
    card.text(date.zeroRemoved ? xWithoutZero : x, y, BIRTH, date.text);
}

struct Back {
    const char *prefix; ///< first two characters of the permit's number
    const char *path;
    int y[3]; ///< baselines of issuing authority, validity, travel permit's number
};

// The lines of the Taiwan back are one pixel higher, on purpose.
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
    CardCanvas card(QLatin1String(":/Pics/hmt_front.bmp"));
    card.text(98, 64, NAME, spreadName(info->szName));
    card.text(98, 100, SEX, field(info->szSex));
    card.text(98, 136, BIRTH, field(info->szBirthYear));
    drawDatePart(card, 171, 174, 136, info->szBirthMonth);
    drawDatePart(card, 212, 216, 136, info->szBirthDay);
    card.lines(98, 174, ADDRESS, field(info->szAddress), 11, 24);
    card.photo(310, 53, PHOTO_BOX, PhotoBackground::AS_IT_IS, info->byPhoto);
    card.text(175, 269, NUMBER, field(info->szID));
    return card.base64();
}

QString MakeCardImg::makeIDCardHmtBackBase64(_tagIDCARD_INFO_ALL_HMT *info)
{
    const Back *const back = backFor(field(info->szID));
    if (back == nullptr)
        return {};
    CardCanvas card(QLatin1String(back->path));
    card.text(223, back->y[0], BACK, field(info->szDept));
    card.text(223, back->y[1], BACK, validity(info->szValidStart, info->szValidEnd));
    card.text(223, back->y[2], BACK, field(info->szPassNumber));
    return card.base64();
}
