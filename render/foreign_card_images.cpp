// The pictures of the foreigner's permanent residence card, 2017 edition and new edition. They draw
// the same texts in the same styles; where they stand differs, down to single pixels, on purpose.

#include "render/makecardimg.h"

#include "render/card_items.h"
#include "render/card_template.h"
#include "render/card_texts.h"
#include "render/tools.h"

namespace
{

constexpr TextStyle BODY{Family::BODY, 14, 1.0, 0};
constexpr TextStyle NUMBER{Family::NUMBER, 19, 3.0, NUMBER_WEIGHT};

constexpr int NAME_WRAP = 25;
constexpr int NAME_LINE_STEP = 18;
constexpr QSize PHOTO_BOX(140, 210);

template <typename Record>
QString englishName(const Record &record)
{
    return card_texts::field(record.szEnglishName);
}

template <typename Record>
QString chineseName(const Record &record)
{
    return card_texts::field(record.szChineseName);
}

template <typename Record>
QString sex(const Record &record)
{
    return card_texts::bilingualSex(record.szSex);
}

template <typename Record>
QString birthDate(const Record &record)
{
    return card_texts::dottedDate(record.szBirthYear, record.szBirthMonth, record.szBirthDay);
}

template <typename Record>
QString nationality(const Record &record)
{
    return card_texts::nationality(record.szNationality);
}

template <typename Record>
QString validity(const Record &record)
{
    return card_texts::validity(record.szValidStart, record.szValidEnd);
}

template <typename Record>
QString cardNumber(const Record &record)
{
    return card_texts::field(record.szID);
}

using Foreign2017 = _tagIDCARD_INFO_ALL_FOREIGN_2017;
using ForeignNew = _tagIDCARD_INFO_ALL_FOREIGN_NEW;
using Text2017 = TextItem<Foreign2017>;
using TextNew = TextItem<ForeignNew>;

constexpr CardItem<Foreign2017> FOREIGN_2017_ITEMS[] = {
    Text2017{englishName, 48, 51, BODY, NAME_WRAP, NAME_LINE_STEP},
    Text2017{chineseName, 48, 89, BODY, 0, 0},
    Text2017{sex, 48, 125, BODY, 0, 0},
    Text2017{birthDate, 154, 125, BODY, 0, 0},
    Text2017{nationality, 48, 166, BODY, 0, 0},
    Text2017{validity, 48, 203, BODY, 0, 0},
    // Blank after a read, which leaves this field to the host.
    Text2017{[](const Foreign2017 &r) { return card_texts::field(r.szReserved); }, 48, 243, BODY, 0,
             0},
    PhotoItem{316, 58, PHOTO_BOX, PhotoBackground::TRANSPARENT},
    Text2017{cardNumber, 154, 265, NUMBER, 0, 0},
};

constexpr CardItem<ForeignNew> FOREIGN_NEW_ITEMS[] = {
    TextNew{englishName, 47, 74, BODY, NAME_WRAP, NAME_LINE_STEP},
    TextNew{chineseName, 47, 112, BODY, 0, 0},
    TextNew{sex, 47, 152, BODY, 0, 0},
    TextNew{birthDate, 153, 152, BODY, 0, 0},
    TextNew{nationality, 47, 195, BODY, 0, 0},
    TextNew{validity, 47, 242, BODY, 0, 0},
    PhotoItem{315, 58, PHOTO_BOX, PhotoBackground::TRANSPARENT},
    TextNew{cardNumber, 153, 271, NUMBER, 0, 0},
};

template <typename Record, std::size_t count>
QString paint(const QString &path, const Record &record, const CardItem<Record> (&items)[count])
{
    QPixmap canvas = loadTemplate(path);
    drawItems(canvas, record, items);
    return Tools::convertPixmapToBase64ViaJpg(canvas);
}

QString paintBare(const QString &path)
{
    return Tools::convertPixmapToBase64ViaJpg(loadTemplate(path));
}

} // namespace

QString MakeCardImg::makeIDCardF2017FrontBase64(_tagIDCARD_INFO_ALL_FOREIGN_2017 *info)
{
    return paint(QLatin1String(":/Pics/f2017_front.bmp"), *info, FOREIGN_2017_ITEMS);
}

QString MakeCardImg::makeIDCardF2017BackBase64(_tagIDCARD_INFO_ALL_FOREIGN_2017 *)
{
    return paintBare(QLatin1String(":/Pics/f2017_back.bmp"));
}

QString MakeCardImg::makeIDCardFNewFrontBase64(_tagIDCARD_INFO_ALL_FOREIGN_NEW *info)
{
    return paint(QLatin1String(":/Pics/fnew_front.bmp"), *info, FOREIGN_NEW_ITEMS);
}

QString MakeCardImg::makeIDCardFNewBackBase64(_tagIDCARD_INFO_ALL_FOREIGN_NEW *)
{
    return paintBare(QLatin1String(":/Pics/fnew_back.bmp"));
}
