// The pictures of the foreigner's permanent residence card, 2017 edition and new edition. They draw
// the same texts in the same styles; their positions differ, down to single pixels, on purpose.

#include "render/makecardimg.h"

#include "render/card_canvas.h"
#include "render/card_fonts.h"
#include "render/card_texts.h"

using namespace card_texts;

namespace
{

constexpr TextStyle BODY{bodyFamily, 14, 1.0, 0};
constexpr TextStyle NUMBER{numberFamily, 19, 3.0, NUMBER_WEIGHT};

constexpr int NAME_WRAP = 25;
constexpr int NAME_LINE_STEP = 18;
constexpr QSize PHOTO_BOX(140, 210);

template <typename Record>
QString birthDate(const Record &record)
{
    return dottedDate(record.szBirthYear, record.szBirthMonth, record.szBirthDay);
}

} // namespace

QString MakeCardImg::makeIDCardF2017FrontBase64(_tagIDCARD_INFO_ALL_FOREIGN_2017 *info)
{
    CardCanvas card(QLatin1String(":/Pics/f2017_front.bmp"));
    card.lines(48, 51, BODY, field(info->szEnglishName), NAME_WRAP, NAME_LINE_STEP);
    card.text(48, 89, BODY, field(info->szChineseName));
    card.text(48, 125, BODY, bilingualSex(info->szSex));
    card.text(154, 125, BODY, birthDate(*info));
    card.text(48, 166, BODY, nationality(info->szNationality));
    card.text(48, 203, BODY, validity(info->szValidStart, info->szValidEnd));
    card.text(48, 243, BODY, field(info->szReserved)); // a read leaves this field to the host
    card.photo(316, 58, PHOTO_BOX, PhotoBackground::TRANSPARENT, info->byPhoto);
    card.text(154, 265, NUMBER, field(info->szID));
    return card.base64();
}

QString MakeCardImg::makeIDCardF2017BackBase64(_tagIDCARD_INFO_ALL_FOREIGN_2017 *)
{
    return CardCanvas(QLatin1String(":/Pics/f2017_back.bmp")).base64();
}

QString MakeCardImg::makeIDCardFNewFrontBase64(_tagIDCARD_INFO_ALL_FOREIGN_NEW *info)
{
    CardCanvas card(QLatin1String(":/Pics/fnew_front.bmp"));
    card.lines(47, 74, BODY, field(info->szEnglishName), NAME_WRAP, NAME_LINE_STEP);
    card.text(47, 112, BODY, field(info->szChineseName));
    card.text(47, 152, BODY, bilingualSex(info->szSex));
    card.text(153, 152, BODY, birthDate(*info));
    card.text(47, 195, BODY, nationality(info->szNationality));
    card.text(47, 242, BODY, validity(info->szValidStart, info->szValidEnd));
    card.photo(315, 58, PHOTO_BOX, PhotoBackground::TRANSPARENT, info->byPhoto);
    card.text(153, 271, NUMBER, field(info->szID));
    return card.base64();
}

QString MakeCardImg::makeIDCardFNewBackBase64(_tagIDCARD_INFO_ALL_FOREIGN_NEW *)
{
    return CardCanvas(QLatin1String(":/Pics/fnew_back.bmp")).base64();
}
