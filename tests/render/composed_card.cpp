#include "tests/render/composed_card.h"

#include <algorithm>
#include <cstring>

#include <QBuffer>
#include <QImage>
#include <QPainter>

#include "render/makecardimg.h"
#include "tests/support/gui_environment.h"

namespace
{

template <typename Record>
Record withPhoto(Record record, const QByteArray &photo)
{
    std::memcpy(record.byPhoto, photo.constData(),
                std::min<std::size_t>(photo.size(), sizeof(record.byPhoto)));
    return record;
}

_tagIDCARD_INFO_ALL_CN residentCard()
{
    _tagIDCARD_INFO_ALL_CN r{};
    r.szName = "王五";
    r.szSex = "女";
    r.szNation = "汉";
    r.szBirthYear = "1990";
    r.szBirthMonth = "03";
    r.szBirthDay = "12";
    r.szAddress = "云溪市柳荫路12号";
    r.szID = "990000199003120017";
    r.szDept = "云溪市公安局";
    r.szValidStart = "20200115";
    r.szValidEnd = "长期";
    return r;
}

_tagIDCARD_INFO_ALL_HMT permit(const char *number)
{
    _tagIDCARD_INFO_ALL_HMT r{};
    r.szName = "陈家明";
    r.szBirthYear = "1985";
    r.szBirthMonth = "11";
    r.szBirthDay = "05";
    r.szAddress = "云溪市柳荫路12号";
    r.szID = number;
    r.szDept = "云溪市公安局";
    r.szValidStart = "20200115";
    r.szValidEnd = "20250115";
    r.szPassNumber = "H00000001";
    return r;
}

template <typename Record>
Record foreignCard()
{
    Record r{};
    r.szEnglishName = "BERGSTROM, INGRID";
    r.szChineseName = "白英格";
    r.szSex = "女";
    r.szNationality = "瑞典";
    r.szID = "SWE990084060536";
    r.szValidStart = "20180420";
    r.szValidEnd = "20280420";
    return r;
}

QString residentFront(const QByteArray &photo)
{
    auto record = withPhoto(residentCard(), photo);
    return MakeCardImg::makeIDCardCNFrontBase64(&record);
}

QString residentBack(const QByteArray &photo)
{
    auto record = withPhoto(residentCard(), photo);
    return MakeCardImg::makeIDCardCNBackBase64(&record);
}

QString hmtFront(const QByteArray &photo)
{
    auto record = withPhoto(permit("810000198511050017"), photo);
    return MakeCardImg::makeIDCardHmtFrontBase64(&record);
}

QString hongKongBack(const QByteArray &photo)
{
    auto record = withPhoto(permit("810000198511050017"), photo);
    return MakeCardImg::makeIDCardHmtBackBase64(&record);
}

QString taiwanBack(const QByteArray &photo)
{
    auto record = withPhoto(permit("830000198511050017"), photo);
    return MakeCardImg::makeIDCardHmtBackBase64(&record);
}

QString foreign2017Front(const QByteArray &photo)
{
    auto record = withPhoto(foreignCard<_tagIDCARD_INFO_ALL_FOREIGN_2017>(), photo);
    return MakeCardImg::makeIDCardF2017FrontBase64(&record);
}

QString foreign2017Back(const QByteArray &photo)
{
    auto record = withPhoto(foreignCard<_tagIDCARD_INFO_ALL_FOREIGN_2017>(), photo);
    return MakeCardImg::makeIDCardF2017BackBase64(&record);
}

QString foreignNewFront(const QByteArray &photo)
{
    auto record = withPhoto(foreignCard<_tagIDCARD_INFO_ALL_FOREIGN_NEW>(), photo);
    return MakeCardImg::makeIDCardFNewFrontBase64(&record);
}

QString foreignNewBack(const QByteArray &photo)
{
    auto record = withPhoto(foreignCard<_tagIDCARD_INFO_ALL_FOREIGN_NEW>(), photo);
    return MakeCardImg::makeIDCardFNewBackBase64(&record);
}

std::optional<PhotoPlace> nowhere()
{
    return std::nullopt;
}

std::optional<PhotoPlace> onResidentCard()
{
    const double mm = pixelsPerMm();
    return PhotoPlace{QRectF(54.0 * mm, 8.0 * mm, 26.0 * mm, 32.0 * mm), true};
}

std::optional<PhotoPlace> onPermit()
{
    return PhotoPlace{QRectF(310, 53, 140, 210), false};
}

std::optional<PhotoPlace> onForeign2017Card()
{
    return PhotoPlace{QRectF(316, 58, 140, 210), true};
}

std::optional<PhotoPlace> onForeignNewCard()
{
    return PhotoPlace{QRectF(315, 58, 140, 210), true};
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
    if (!side.hasRealSize)
        return card;
    const double mm = pixelsPerMm();
    return card.scaled(static_cast<int>(85.6 * mm + 2.0), static_cast<int>(54.0 * mm + 1.0),
                       Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

const std::vector<CardSide> &cardSides()
{
    static const std::vector<CardSide> sides = {
        {"resident front", ":/Pics/IDCardFront.bmp", true, residentFront, onResidentCard},
        {"resident back", ":/Pics/IDCardBack.bmp", true, residentBack, nowhere},
        {"permit front", ":/Pics/hmt_front.bmp", false, hmtFront, onPermit},
        {"Hong Kong back", ":/Pics/hm_back.bmp", false, hongKongBack, nowhere},
        {"Taiwan back", ":/Pics/tw_back.bmp", false, taiwanBack, nowhere},
        {"2017 front", ":/Pics/f2017_front.bmp", false, foreign2017Front, onForeign2017Card},
        {"2017 back", ":/Pics/f2017_back.bmp", false, foreign2017Back, nowhere},
        {"new front", ":/Pics/fnew_front.bmp", false, foreignNewFront, onForeignNewCard},
        {"new back", ":/Pics/fnew_back.bmp", false, foreignNewBack, nowhere},
    };
    return sides;
}

std::vector<CardSide> cardFronts()
{
    std::vector<CardSide> fronts;
    std::copy_if(cardSides().begin(), cardSides().end(), std::back_inserter(fronts),
                 [](const CardSide &side) { return side.photoPlace().has_value(); });
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
            if (side.photoPlace() && !photo.isNull() && &text == &texts.back())
                drawPhoto(painter, photo, *side.photoPlace());
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
