#include "apps/card/card_output.h"

#include <algorithm>
#include <array>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>

#include "apps/card/card_files.h"
#include "apps/card/card_notes.h"
#include "apps/process/json_object.h"
#include "apps/process/translation.h"
#include "apps/terminal/text_layout.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Card)

struct PhotoFormatRow {
    PhotoFormat format;
    const char *key;
    const char *label; ///< for people
    const char *note;  ///< why there is no picture to save; null when there is one
};

constexpr std::array<PhotoFormatRow, 4> PHOTO_FORMATS = {{
    {PhotoFormat::NONE, "none", QT_TR_NOOP("none"), QT_TR_NOOP("The reader delivered no photo")},
    {PhotoFormat::BMP, "bmp", QT_TR_NOOP("BMP picture, 102 x 126 pixels"), nullptr},
    {PhotoFormat::COMPRESSED, "compressed", QT_TR_NOOP("compressed, not a picture"),
     QT_TR_NOOP("The reader delivered the photo in the card's compressed form, not as a picture")},
    {PhotoFormat::UNKNOWN, "unknown", QT_TR_NOOP("in a form that is not known"),
     QT_TR_NOOP("The reader delivered the photo in a form that is not known")},
}};

// The keys of the fields that identify the holder.
constexpr std::array<const char *, 3> NAMES = {"name", "englishName", "chineseName"};
constexpr std::array<const char *, 2> NUMBERS = {"idNumber", "travelPermitNumber"};
// Those that tell more of him than a bystander should see.
constexpr std::array<const char *, 2> PRIVATE_MATTERS = {"birthDate", "address"};

template <typename Keys>
bool isOneOf(const CardField &field, const Keys &keys)
{
    return std::any_of(keys.begin(), keys.end(),
                       [&](const char *key) { return qstrcmp(key, field.key) == 0; });
}

const PhotoFormatRow &photoFormatRow(const Card &card)
{
    const PhotoFormat format = card.photoFormat();
    return *std::find_if(PHOTO_FORMATS.begin(), PHOTO_FORMATS.end(),
                         [&](const PhotoFormatRow &row) { return row.format == format; });
}

struct RoadKey {
    Road road;
    const char *key;
};

constexpr std::array<RoadKey, 3> ROADS = {{
    {Road::READER_LIBRARY, "reader-library"},
    {Road::USB, "usb"},
    {Road::FILE, "file"},
}};

const char *roadKey(Road road)
{
    return std::find_if(ROADS.begin(), ROADS.end(),
                        [&](const RoadKey &row) { return row.road == road; })
        ->key;
}

/** Cards and readers fill a field up with blanks, which are no part of what it says. */
QString withoutTrailingBlanks(QString text)
{
    while (!text.isEmpty() && text.at(text.size() - 1).isSpace())
        text.chop(1);
    return text;
}

QJsonValue jsonValue(const CardField &field)
{
    QStringList parts = field.content;
    if (parts.isEmpty())
        return QJsonValue::Null;
    for (QString &part : parts)
        part = withoutTrailingBlanks(part);
    if (field.form != FieldForm::SPLIT_DATE)
        return parts.first();
    return JsonObject{{"year", parts[0]}, {"month", parts[1]}, {"day", parts[2]}};
}

bool isEightDigits(const QString &text)
{
    return text.size() == 8 && std::all_of(text.begin(), text.end(), [](QChar character) {
               return character >= QLatin1Char('0') && character <= QLatin1Char('9');
           });
}

QStringList dateParts(const QString &date)
{
    if (!isEightDigits(date))
        return {date};
    return {date.mid(0, 4), date.mid(4, 2), date.mid(6)};
}

/** On one line, a date with hyphens; empty when the field says nothing. */
QString textForPeople(const CardField &field)
{
    QStringList parts = field.content;
    if (field.form == FieldForm::DATE)
        parts = dateParts(parts.first());
    for (QString &part : parts)
        part = withoutTrailingBlanks(part);
    parts.removeAll(QString());
    return parts.join(QLatin1Char('-'));
}

/** As the record has it, where the decoder has cut it off. */
CardField wholeField(const Card &card, const CardField &field)
{
    for (const CardField &whole : card.cutFields()) {
        if (qstrcmp(whole.key, field.key) == 0)
            return whole;
    }
    return field;
}

QString fingerprintsForPeople(const Card &card)
{
    const std::optional<int> count = card.fingerprintCount();
    if (!count)
        return tr("unknown; the reader delivered an unusual amount of data");
    return *count == 0 ? tr("none") : QString::number(*count);
}

struct CardSideRow {
    CardSide side;
    const char *key;
    const char *label;
};

constexpr std::array<CardSideRow, 2> CARD_SIDES = {{
    {CardSide::FRONT, "frontPicture", QT_TR_NOOP("Front picture")},
    {CardSide::BACK, "backPicture", QT_TR_NOOP("Back picture")},
}};

/** Why there is no picture of this side, in words that follow a colon. */
QString reasonOfMissingPicture(const Card &card, CardSide side)
{
    const bool isBackOfPermit = side == CardSide::BACK && card.kindCode() == IDCARD_KIND_HMT;
    // The front of a permit does not depend on the number: only the back can be missing by it.
    if (isBackOfPermit && !card.picture(CardSide::FRONT).isNull())
        return tr("the permit's number begins with none of 81, 82, 83");
    return tr("the library painted none");
}

QString pathIn(const QString &folder, const char *name)
{
    return folder.isEmpty() ? QLatin1String(name) : QDir(folder).filePath(QLatin1String(name));
}

JsonObject kindToJson(const Card &card)
{
    return {{"kind", QLatin1String(card.kindKey())},
            {"cardKind", static_cast<int>(card.kindCode())}};
}

void insertPictures(const Card &card, QJsonObject *object)
{
    for (const CardSideRow &row : CARD_SIDES) {
        const char *const format = card.picture(row.side).isNull() ? "none" : "jpeg";
        object->insert(QString(QLatin1String(row.key)),
                       JsonObject{{"format", QLatin1String(format)}});
    }
}

/** What the card means on this day, and the whole of what the decoder cut. */
void insertNotes(const Card &card, const QDate &today, QJsonObject *object)
{
    QJsonArray keys;
    for (const CardNote &note : cardNotes(card, today))
        keys << note.key;
    object->insert("notes", keys);
    const std::optional<int> age = ageOnDay(card, today);
    object->insert("age", age ? QJsonValue(*age) : QJsonValue());
    QJsonObject whole;
    for (const CardField &field : card.cutFields())
        whole.insert(QString(QLatin1String(field.key)), jsonValue(field));
    if (!whole.isEmpty())
        object->insert("whole", whole);
}

/** Null for null bytes. */
QJsonValue base64(const QByteArray &bytes)
{
    return bytes.isNull() ? QJsonValue() : QString::fromLatin1(bytes.toBase64());
}

/** Names the files in the parts of `object` that they belong to. */
void insertFiles(const Card &card, const std::optional<QString> &folder, InlineParts inlined,
                 QJsonObject *object)
{
    for (const CardFile &file : cardFiles(CardFiles::ALL)) {
        if (file.jsonKey == nullptr || !object->contains(QLatin1String(file.jsonKey)))
            continue;
        const bool saved = folder.has_value() && !file.content(card).isNull();
        QJsonObject part = object->value(QLatin1String(file.jsonKey)).toObject();
        part.insert("file", saved ? QJsonValue(pathIn(*folder, file.name)) : QJsonValue());
        if ((inlined & file.part) != InlineParts())
            part.insert("data", base64(file.content(card)));
        object->insert(QString(QLatin1String(file.jsonKey)), part);
    }
}

CardRow plainRow(const QString &label, const QString &content)
{
    return {CardRow::Sort::PLAIN, label, content, content};
}

CardRow kindRow(const Card &card)
{
    return plainRow(tr("Kind"), kindForPeople(card));
}

QStringList cells(const CardRow &row)
{
    return {row.label, shownContent(row)};
}

QVector<QStringList> noteRows(const Card &card, const QDate &today)
{
    QVector<QStringList> rows;
    for (const CardNote &note : cardNotes(card, today))
        rows << QStringList{rows.isEmpty() ? tr("Note") : QString(), note.words};
    return rows;
}

/** Which picture is missing, and where the files are. */
QVector<QStringList> savedRows(const Card &card, CardFiles which, const QString &folder)
{
    QVector<QStringList> rows;
    for (const CardSideRow &row : CARD_SIDES) {
        if (card.mayHavePictures() && card.picture(row.side).isNull())
            rows << QStringList{tr(row.label),
                                tr("none: %1").arg(reasonOfMissingPicture(card, row.side))};
    }
    QString label = tr("Saved as");
    for (const CardFile &file : cardFiles(which)) {
        if (file.content(card).isNull())
            continue;
        rows << QStringList{label, pathIn(folder, file.name)};
        label.clear();
    }
    return rows;
}

/** The first of the card's fields with these keys that says something; empty when none does. */
template <typename Keys>
QString firstOf(const Card &card, const Keys &keys)
{
    for (const CardField &field : card.fields()) {
        if (isOneOf(field, keys) && !field.content.value(0).trimmed().isEmpty())
            return textForPeople(wholeField(card, field));
    }
    return {};
}

} // namespace

QString shownContent(const CardRow &row)
{
    return row.content.isEmpty() ? QStringLiteral("-") : row.content;
}

QString kindForPeople(const Card &card)
{
    return tr(card.kindLabel());
}

QVector<CardRow> cardRows(const Card &card)
{
    QVector<CardRow> rows{kindRow(card)};
    for (const CardField &field : card.fields()) {
        const bool isPersonal =
            isOneOf(field, NAMES) || isOneOf(field, NUMBERS) || isOneOf(field, PRIVATE_MATTERS);
        if (!field.content.isEmpty())
            rows << CardRow{isPersonal ? CardRow::Sort::PERSONAL : CardRow::Sort::PLAIN,
                            tr(field.label), textForPeople(field),
                            textForPeople(wholeField(card, field))};
    }
    rows << plainRow(tr("Photo"), tr(photoFormatRow(card).label));
    rows.last().sort = CardRow::Sort::PHOTO;
    if (card.mayHaveFingerprints())
        rows << plainRow(tr("Fingerprints"), fingerprintsForPeople(card));
    return rows;
}

QString holderName(const Card &card)
{
    return firstOf(card, NAMES);
}

QString holderNumber(const Card &card)
{
    return firstOf(card, NUMBERS);
}

std::optional<Road> roadOf(const QString &key)
{
    const auto *const row = std::find_if(ROADS.begin(), ROADS.end(), [&](const RoadKey &each) {
        return QLatin1String(each.key) == key;
    });
    return row == ROADS.end() ? std::optional<Road>() : row->road;
}

std::optional<PhotoFormat> photoFormatOf(const QString &key)
{
    const auto *const row =
        std::find_if(PHOTO_FORMATS.begin(), PHOTO_FORMATS.end(),
                     [&](const PhotoFormatRow &each) { return QLatin1String(each.key) == key; });
    return row == PHOTO_FORMATS.end() ? std::optional<PhotoFormat>() : row->format;
}

std::optional<InlineParts> parseInlineParts(const QString &words)
{
    static const QMap<QString, InlineParts> parts = {
        {"photo", InlinePart::PHOTO},
        {"pictures", InlinePart::PICTURES},
        {"fingerprints", InlinePart::FINGERPRINTS},
        {"all", InlineParts(InlinePart::PHOTO) | InlinePart::PICTURES | InlinePart::FINGERPRINTS},
    };
    InlineParts named;
    for (const QString &word : splitAt(QLatin1Char(','), words)) {
        const auto found = parts.find(word.trimmed());
        if (found == parts.end())
            return std::nullopt;
        named |= *found;
    }
    return named;
}

JsonObject toJson(const Card &card, const std::optional<QString> &folder, InlineParts inlined,
                  const QDate &today)
{
    JsonObject object = kindToJson(card);
    object.insert("road", QLatin1String(roadKey(card.road())));
    for (const CardField &field : card.fields())
        object.insert(QString(QLatin1String(field.key)), jsonValue(field));

    object.insert("photo", JsonObject{{"format", QLatin1String(photoFormatRow(card).key)}});
    if (card.mayHaveFingerprints()) {
        const std::optional<int> count = card.fingerprintCount();
        object.insert("fingerprints",
                      JsonObject{{"count", count ? QJsonValue(*count) : QJsonValue()}});
    }
    insertNotes(card, today, &object);
    insertPictures(card, &object);
    insertFiles(card, folder, inlined, &object);
    return object;
}

JsonObject picturesToJson(const Card &card, const QString &folder)
{
    JsonObject object = kindToJson(card);
    insertPictures(card, &object);
    insertFiles(card, folder, {}, &object);
    return object;
}

QByteArray indentedJson(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

QByteArray jsonLine(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QString toTable(const Card &card, const std::optional<QString> &folder, const QDate &today,
                Colours colours)
{
    QVector<QStringList> rows;
    for (const CardRow &row : cardRows(card))
        rows << cells(row);
    const int firstNote = rows.size();
    rows += noteRows(card, today);
    const int afterNotes = rows.size();
    if (folder)
        rows += savedRows(card, CardFiles::ALL, *folder);
    QStringList lines = splitAt(QLatin1Char('\n'), alignedTable(rows));
    for (int i = firstNote; i < afterNotes; ++i)
        lines[i] = coloured(lines[i], Colour::YELLOW, colours);
    return lines.join(QLatin1Char('\n'));
}

QString picturesToTable(const Card &card, const QString &folder)
{
    return alignedTable(QVector<QStringList>{cells(kindRow(card))} +
                        savedRows(card, CardFiles::PICTURES, folder));
}

QString missingPhotoNote(const Card &card)
{
    const char *const note = photoFormatRow(card).note;
    return note == nullptr ? QString() : tr(note);
}

QString missingPictureNote(const Card &card, CardSide side)
{
    if (!card.mayHavePictures() || !card.picture(side).isNull())
        return {};
    const QString missing = side == CardSide::FRONT
                                ? tr("There is no picture of the card's front: %1")
                                : tr("There is no picture of the card's back: %1");
    return missing.arg(reasonOfMissingPicture(card, side));
}

} // namespace app
