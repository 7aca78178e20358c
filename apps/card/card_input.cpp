#include "apps/card/card_input.h"

#include <QJsonArray>
#include <QJsonValue>

#include "apps/card/card_notes.h"
#include "apps/card/card_output.h"

namespace app
{

namespace
{

constexpr int MOST_PRINTS = 2;

/** The texts of one field as `toJson` writes them; nothing when it writes no such thing. */
std::optional<QStringList> contentOf(const QJsonValue &value, FieldForm form)
{
    if (value.isNull())
        return QStringList();
    if (form != FieldForm::SPLIT_DATE)
        return value.isString() ? std::optional<QStringList>(QStringList(value.toString()))
                                : std::nullopt;
    QStringList parts;
    for (const char *const part : {"year", "month", "day"}) {
        const QJsonValue text = value.toObject()[QLatin1String(part)];
        if (!text.isString())
            return std::nullopt;
        parts << text.toString();
    }
    return parts;
}

/** Those of the fields that `object` has; nothing when one of them is written in another way. */
std::optional<FieldContents> contentsIn(const QJsonObject &object, const QVector<CardField> &fields)
{
    FieldContents contents;
    for (const CardField &field : fields) {
        const QString key = QLatin1String(field.key);
        if (!object.contains(key))
            continue;
        const auto content = contentOf(object[key], field.form);
        if (!content)
            return std::nullopt;
        contents.insert(key, *content);
    }
    return contents;
}

/** The file that a part of the card holds, null bytes when it holds none; nothing for damage. */
std::optional<QByteArray> fileIn(const QJsonObject &object, const char *part)
{
    const QJsonValue data = object[QLatin1String(part)].toObject()[QLatin1String("data")];
    if (data.isNull() || data.isUndefined())
        return QByteArray();
    const QByteArray text = data.toString().toLatin1();
    const QByteArray file = QByteArray::fromBase64(text);
    // What is no base64 is left out when it is decoded.
    return !file.isEmpty() && file.toBase64() == text ? std::optional<QByteArray>(file)
                                                      : std::nullopt;
}

bool isPhoto(const QByteArray &file)
{
    return file.size() == int(IDCARD_PHOTO_SIZE) &&
           photoFormatOf(reinterpret_cast<const unsigned char *>(file.constData())) ==
               PhotoFormat::BMP;
}

/** Nothing: the reader delivered an unusual amount of data. */
std::optional<int> printCountIn(const QJsonObject &object)
{
    const QJsonObject prints = object[QLatin1String("fingerprints")].toObject();
    if (prints.isEmpty())
        return 0;
    const int count = prints[QLatin1String("count")].toInt(-1);
    return 0 <= count && count <= MOST_PRINTS ? std::optional<int>(count) : std::nullopt;
}

std::optional<CardMedia> mediaIn(const QJsonObject &object)
{
    const auto photo = fileIn(object, "photo");
    const auto prints = fileIn(object, "fingerprints");
    const auto front = fileIn(object, "frontPicture");
    const auto back = fileIn(object, "backPicture");
    const auto count = printCountIn(object);
    // What is not to be given away is withheld, but how many there are is known.
    const bool isRight =
        prints &&
        (prints->isNull() || prints->size() == count.value_or(0) * int(IDCARD_FINGERPRINT_SIZE));
    if (!photo || !isRight || !front || !back)
        return std::nullopt;
    return CardMedia{*photo, count, *prints, {*front, *back}};
}

} // namespace

std::optional<Card> cardFromJson(const QJsonObject &object)
{
    const auto road = roadOf(object[QLatin1String("road")].toString());
    const auto kind = kindCodeOf(object[QLatin1String("kind")].toString());
    const auto format = photoFormatOf(
        object[QLatin1String("photo")].toObject()[QLatin1String("format")].toString());
    if (!road || !kind || !format)
        return std::nullopt;
    const QVector<CardField> fields = fieldsOfKind(*kind);
    const auto contents = contentsIn(object, fields);
    const auto whole = contentsIn(object[QLatin1String("whole")].toObject(), fields);
    const auto media = mediaIn(object);
    if (!contents || contents->size() != fields.size() || !whole || !media)
        return std::nullopt;
    if (*format == PhotoFormat::BMP && !isPhoto(media->photoArea))
        return std::nullopt;
    Card card(*road, *kind, *contents, *whole, *format, *media);
    card.setOddRecord(
        object[QLatin1String("notes")].toArray().contains(QLatin1String(ODD_RECORD_NOTE)));
    return card;
}

} // namespace app
