#include "tests/render/card_sides.h"

#include <algorithm>
#include <cstring>

#include <QBuffer>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>

#include "render/makecardimg.h"
#include "tests/support/gui_environment.h"

_tagIDCARD_INFO_ALL_CN residentCard()
{
    _tagIDCARD_INFO_ALL_CN r{};
    r.szName = "林晓雨";
    r.szSex = "女";
    r.szNation = "汉";
    r.szBirthYear = "1990";
    r.szBirthMonth = "12";
    r.szBirthDay = "31";
    r.szAddress = "云溪市柳荫路12号";
    r.szID = "990000199012314281";
    r.szDept = "云溪市公安局";
    r.szValidStart = "20200115";
    r.szValidEnd = "20400115";
    return r;
}

_tagIDCARD_INFO_ALL_HMT permit()
{
    _tagIDCARD_INFO_ALL_HMT r{};
    r.szName = "陈家明";
    r.szSex = "男";
    r.szBirthYear = "1985";
    r.szBirthMonth = "11";
    r.szBirthDay = "25";
    r.szAddress = "云溪市柳荫路一百二十三号四幢五单元六百七十八室";
    r.szID = "819999198511250010";
    r.szDept = "云溪市公安局";
    r.szValidStart = "20200115";
    r.szValidEnd = "20250115";
    r.szPassNumber = "H00000001";
    r.szReserved = "never drawn";
    return r;
}

_tagIDCARD_INFO_ALL_FOREIGN_2017 foreign2017Card()
{
    _tagIDCARD_INFO_ALL_FOREIGN_2017 r{};
    r.szEnglishName = "BERGSTROM, INGRID";
    r.szSex = "女";
    r.szID = "SWE990084060536";
    r.szNationality = "瑞典";
    r.szChineseName = "白英格";
    r.szValidStart = "20180420";
    r.szValidEnd = "20280420";
    r.szBirthYear = "1984";
    r.szBirthMonth = "06";
    r.szBirthDay = "05";
    r.szReserved = "the host's own";
    return r;
}

_tagIDCARD_INFO_ALL_FOREIGN_NEW foreignNewCard()
{
    _tagIDCARD_INFO_ALL_FOREIGN_NEW r{};
    r.szChineseName = "艾米";
    r.szSex = "男";
    r.szCardExtra = "01";
    r.szBirthYear = "1979";
    r.szBirthMonth = "01";
    r.szBirthDay = "09";
    r.szEnglishName = "MILLER, EMIL";
    r.szID = "999840197901090017";
    r.szValidStart = "20231201";
    r.szValidEnd = "20331201";
    r.szNationality = "美国";
    return r;
}

double px(double mm)
{
    return mm * pixelsPerMm();
}

double height(int pt)
{
    return pt * 0.35277777777777775 * pixelsPerMm();
}

ExpectedText onResidentCard(const std::string &text, double xmm, double ymm, int pt)
{
    return {text, px(xmm), px(ymm), BODY, static_cast<int>(height(pt))};
}

ExpectedText belowTop(const std::string &text, double xmm, double ymm, int pt)
{
    ExpectedText expected = onResidentCard(text, xmm, ymm, pt);
    expected.y += height(pt);
    return expected;
}

ExpectedText endingAt(const std::string &text, double xmm, double ymm)
{
    ExpectedText expected = onResidentCard(text, xmm, ymm);
    QFont font;
    font.setFamily(QString::fromUtf8(BODY));
    font.setPixelSize(expected.pixelSize);
    const int width = QFontMetrics(font).boundingRect(QString::fromStdString(text)).width();
    expected.x -= 0.5 * width + 9;
    return expected;
}

QSize PhotoPlace::fitted(QSize photo) const
{
    const QSize inside(static_cast<int>(box.width()), static_cast<int>(box.height()));
    return photo.scaled(inside, Qt::KeepAspectRatio);
}

namespace
{

/** The size of the templates that are painted on as they are. */
constexpr QSize UNSCALED(494, 312);

template <typename Record>
QString madeOf(QString (*maker)(Record *), Record record, const QByteArray &photo)
{
    std::memcpy(record.byPhoto, photo.constData(),
                std::min(static_cast<std::size_t>(photo.size()), sizeof(record.byPhoto)));
    return maker(&record);
}

template <auto maker, auto record>
QString made(const QByteArray &photo)
{
    return madeOf(maker, record(), photo);
}

_tagIDCARD_INFO_ALL_HMT taiwanPermit()
{
    auto record = permit();
    record.szID = "839999198511250010";
    return record;
}

/** A text of a foreigner's card. */
ExpectedText wide(const std::string &text, double x, double y)
{
    return {text, x, y, BODY, 14, 50, 1.0};
}

ExpectedText number(const std::string &text, double x, double y)
{
    return {text, x, y, NUMBER, 19, 63, 3.0};
}

ExpectedText addressOfPermit(const std::string &text, double y)
{
    return {text, 98, y, BODY, 16, 50, 2.0};
}

std::vector<ExpectedText> backOfPermit(double y)
{
    return {{"云溪市公安局", 223, y, BODY, 14},
            {"2020.01.15 - 2025.01.15", 223, y + 23, BODY, 14},
            {"H00000001", 223, y + 44, BODY, 14}};
}

std::vector<CardSide> makeCardSides()
{
    const QSize real(static_cast<int>(px(85.6) + 2.0), static_cast<int>(px(54.0) + 1.0));
    const auto photoAt = [](double x, double y, bool hasClearWhite) {
        return PhotoPlace{QRectF(x, y, 140, 210), hasClearWhite};
    };
    using Make = MakeCardImg;
    return {
        {"resident front",
         ":/Pics/IDCardFront.bmp",
         real,
         made<Make::makeIDCardCNFrontBase64, residentCard>,
         {onResidentCard("林晓雨", 17.0, 10.8, 11),
          onResidentCard("女", 17.0, 17.3),
          onResidentCard("汉", 34.0, 17.3),
          onResidentCard("1990", 17.0, 23.8),
          endingAt("12", 33.0, 23.8),
          endingAt("31", 41.0, 23.8),
          belowTop("云溪市柳荫路12号", 17.0, 28.0),
          {"990000199012314281", px(30.0), px(48.0), NUMBER, static_cast<int>(height(12)), 63,
           0.48}},
         PhotoPlace{QRectF(px(54.0), px(8.0), px(26.0), px(32.0)), true}},
        {"resident back",
         ":/Pics/IDCardBack.bmp",
         real,
         made<Make::makeIDCardCNBackBase64, residentCard>,
         {belowTop("云溪市公安局", 36.0, 38.3), belowTop("2020.01.15 - 2040.01.15", 36.0, 45.3)},
         {}},
        {"permit front",
         ":/Pics/hmt_front.bmp",
         UNSCALED,
         made<Make::makeIDCardHmtFrontBase64, permit>,
         {{"陈家明", 98, 64, BODY, 18},
          {"男", 98, 100, BODY, 14},
          {"1985", 98, 136, BODY, 16},
          {"11", 171, 136, BODY, 16},
          {"25", 212, 136, BODY, 16},
          addressOfPermit("云溪市柳荫路一百二十三", 174),
          addressOfPermit("号四幢五单元六百七十八", 198),
          addressOfPermit("室", 222),
          number("819999198511250010", 175, 269)},
         photoAt(310, 53, false)},
        {"Hong Kong back",
         ":/Pics/hm_back.bmp",
         UNSCALED,
         made<Make::makeIDCardHmtBackBase64, permit>,
         backOfPermit(224),
         {}},
        {"Taiwan back",
         ":/Pics/tw_back.bmp",
         UNSCALED,
         made<Make::makeIDCardHmtBackBase64, taiwanPermit>,
         backOfPermit(223),
         {}},
        {"2017 front",
         ":/Pics/f2017_front.bmp",
         UNSCALED,
         made<Make::makeIDCardF2017FrontBase64, foreign2017Card>,
         {wide("BERGSTROM, INGRID", 48, 51), wide("白英格", 48, 89), wide("女 / F", 48, 125),
          wide("1984.06.05", 154, 125), wide(" / 瑞典", 48, 166),
          wide("2018.04.20 - 2028.04.20", 48, 203), wide("the host's own", 48, 243),
          number("SWE990084060536", 154, 265)},
         photoAt(316, 58, true)},
        {"2017 back",
         ":/Pics/f2017_back.bmp",
         UNSCALED,
         made<Make::makeIDCardF2017BackBase64, foreign2017Card>,
         {},
         {}},
        {"new front",
         ":/Pics/fnew_front.bmp",
         UNSCALED,
         made<Make::makeIDCardFNewFrontBase64, foreignNewCard>,
         {wide("MILLER, EMIL", 47, 74), wide("艾米", 47, 112), wide("男 / M", 47, 152),
          wide("1979.01.09", 153, 152), wide(" / 美国", 47, 195),
          wide("2023.12.01 - 2033.12.01", 47, 242), number("999840197901090017", 153, 271)},
         photoAt(315, 58, true)},
        {"new back",
         ":/Pics/fnew_back.bmp",
         UNSCALED,
         made<Make::makeIDCardFNewBackBase64, foreignNewCard>,
         {},
         {}},
    };
}

/** The photo with every pixel clear that is exactly opaque white or nearly so. */
QPixmap withClearWhite(const QPixmap &photo)
{
    QImage image = photo.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            if (pixel == qRgb(255, 255, 255) || pixel == qRgb(254, 254, 254))
                image.setPixel(x, y, qRgba(254, 254, 254, 0));
        }
    return QPixmap::fromImage(image);
}

void drawPhoto(QPainter &painter, const QPixmap &photo, const PhotoPlace &place)
{
    const QPixmap shown = place.hasClearWhite ? withClearWhite(photo) : photo;
    const QSize box(static_cast<int>(place.box.width()), static_cast<int>(place.box.height()));
    painter.drawPixmap(place.box.topLeft(),
                       shown.scaled(box, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

QPixmap emptyCard(const CardSide &side)
{
    const QPixmap card = QPixmap::fromImage(QImage(QString::fromLatin1(side.templatePath)));
    return side.size == UNSCALED
               ? card
               : card.scaled(side.size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

const std::vector<CardSide> &cardSides()
{
    static const std::vector<CardSide> sides = makeCardSides();
    return sides;
}

std::vector<CardSide> cardFronts()
{
    std::vector<CardSide> fronts;
    std::copy_if(cardSides().begin(), cardSides().end(), std::back_inserter(fronts),
                 [](const CardSide &side) { return side.photo.has_value(); });
    return fronts;
}

std::vector<Painted> textsOf(const CardSide &side)
{
    const PaintingRecorder recorder;
    side.make(QByteArray());
    return recorder.painted();
}

QString composed(const CardSide &side, const std::vector<Painted> &texts, const QPixmap &photo)
{
    QPixmap card = emptyCard(side);
    {
        QPainter painter(&card);
        for (const Painted &text : texts) {
            // The number, which is the last text, lies above the photo.
            if (side.photo && !photo.isNull() && &text == &texts.back())
                drawPhoto(painter, photo, *side.photo);
            painter.setPen(text.color);
            painter.setFont(text.font);
            painter.drawText(text.point, QString::fromStdString(text.text));
        }
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    card.toImage().save(&buffer, "JPG", -1);
    return QString::fromLatin1(bytes.toBase64());
}
