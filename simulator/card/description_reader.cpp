// From JSON to a card: what is not a known key of the card's kind, of the right type and of a
// possible value is refused, so that a slip in a description never looks like a fault of a reader.

#include "simulator/card/description_reader.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QStringList>

#include "common/texts.h"
#include "simulator/card/description_keys.h"
#include "simulator/translated_texts.h"

namespace simulator
{

namespace
{

SIMULATOR_TEXTS(Descriptions)

struct KindKey {
    const char *name;
    bool (*allowed)(CardKind kind);
    // Stores the value in the card, or says why not and, in `part`, which part of it is meant.
    QString (*read)(CardDescription *card, const QJsonValue &value, QString *part);
};

QString typeName(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Null:
        return tr("null");
    case QJsonValue::Bool:
        return tr("true or false");
    case QJsonValue::Double:
        return tr("a number");
    case QJsonValue::String:
        return tr("a text");
    case QJsonValue::Array:
        return tr("a list");
    case QJsonValue::Object:
        return tr("an object");
    case QJsonValue::Undefined:
        break;
    }
    return tr("nothing");
}

QString wrongType(const char *wanted, const QJsonValue &value)
{
    return filledIn(tr("must be %1, not %2"), tr(wanted), typeName(value));
}

// A text as a message can show it: short, and without characters that would upset a terminal.
QString quoted(const QString &text)
{
    constexpr int LONGEST_QUOTE = 60;
    QString shown = text.left(LONGEST_QUOTE);
    for (QChar &character : shown) {
        if (!character.isPrint() && !character.isSurrogate())
            character = QChar::ReplacementCharacter;
    }
    if (!shown.isEmpty() && shown.at(shown.size() - 1).isHighSurrogate())
        shown.chop(1);
    const QString rest = text.size() > LONGEST_QUOTE ? QStringLiteral("...") : QString();
    return tr("\"%1\"").arg(shown + rest);
}

QString listed(const QStringList &words)
{
    return words.join(tr(", "));
}

// A value that must be one of a few words, each meaning a constant.
template <typename Value>
struct Word {
    const char *word;
    Value value;
};

template <typename Value>
QString readWord(const QJsonValue &value, std::initializer_list<Word<Value>> words, Value *result)
{
    if (!value.isString())
        return wrongType(QT_TR_NOOP("a text"), value);
    QStringList known;
    for (const Word<Value> &word : words) {
        if (value.toString() == QLatin1String(word.word)) {
            *result = word.value;
            return {};
        }
        known << QLatin1String(word.word);
    }
    return filledIn(tr("%1 is none of %2"), quoted(value.toString()), listed(known));
}

// A whole number from 0 to `maximum`.
QString readNumber(const QJsonValue &value, double maximum, double *result)
{
    if (!value.isDouble())
        return wrongType(QT_TR_NOOP("a number"), value);
    const double number = value.toDouble();
    if (number < 0 || number > maximum || number != std::floor(number)) {
        return tr("%1 is not a whole number from 0 to %2")
            .arg(number, 0, 'g', 15)
            .arg(maximum, 0, 'f', 0);
    }
    *result = number;
    return {};
}

QString readKind(const QJsonValue &value, CardKind *kind)
{
    return readWord<CardKind>(value,
                              {{"resident", CardKind::RESIDENT},
                               {"hmt", CardKind::HMT},
                               {"foreign-2017", CardKind::FOREIGN2017},
                               {"foreign-new", CardKind::FOREIGN_NEW}},
                              kind);
}

QString readFingerprints(CardDescription *card, const QJsonValue &value, QString * /*part*/)
{
    double number = 0;
    QString problem = readNumber(value, 2, &number);
    card->fingerprints = static_cast<int>(number);
    return problem;
}

QString readPadding(CardDescription *card, const QJsonValue &value, QString * /*part*/)
{
    return readWord<Padding>(value, {{"zeros", Padding::ZEROS}, {"spaces", Padding::SPACES}},
                             &card->padding);
}

// The name of a file beside the description.
QString readFileName(const QJsonValue &value, QString *result)
{
    if (!value.isString())
        return wrongType(QT_TR_NOOP("a text"), value);
    *result = value.toString();
    const bool isName =
        !result->isEmpty() && std::all_of(result->cbegin(), result->cend(), [](QChar character) {
            return character.isPrint() && character != QLatin1Char('/');
        });
    return isName ? QString()
                  : tr("%1 is not the name of a file in the same folder").arg(quoted(*result));
}

QString readPhotoPart(CardDescription *card, const QString &part, const QJsonValue &value)
{
    if (part == QLatin1String("delivery")) {
        return readWord<PhotoDelivery>(value,
                                       {{"bmp", PhotoDelivery::BMP_FILE},
                                        {"compressed", PhotoDelivery::COMPRESSED},
                                        {"file", PhotoDelivery::OWN_FILE}},
                                       &card->photoDelivery);
    }
    if (part == QLatin1String("file"))
        return readFileName(value, &card->photoFile);
    if (part == QLatin1String("seed")) {
        double seed = 0;
        QString problem = readNumber(value, std::numeric_limits<std::uint32_t>::max(), &seed);
        card->photoSeed = static_cast<std::uint32_t>(seed);
        return problem;
    }
    return tr("is not a known key; keys of a photo: delivery, file, seed");
}

QString readPhoto(CardDescription *card, const QJsonValue &value, QString *part)
{
    if (!value.isObject())
        return wrongType(QT_TR_NOOP("an object"), value);
    const QJsonObject photo = value.toObject();
    if (!photo.contains(QStringLiteral("delivery"))) {
        *part = QStringLiteral("delivery");
        return tr("is missing");
    }
    for (auto it = photo.constBegin(); it != photo.constEnd(); ++it) {
        QString problem = readPhotoPart(card, it.key(), it.value());
        if (!problem.isEmpty()) {
            *part = it.key();
            return problem;
        }
    }
    const bool needsFile = card->photoDelivery == PhotoDelivery::OWN_FILE;
    if (needsFile == card->photoFile.isEmpty()) {
        *part = QStringLiteral("file");
        return needsFile ? tr("is missing") : tr("goes with the delivery \"file\" alone");
    }
    return {};
}

QString readFaults(CardDescription *card, const QJsonValue &value, QString * /*part*/)
{
    if (!value.isArray())
        return wrongType(QT_TR_NOOP("a list of texts"), value);
    QStringList list;
    const QJsonArray array = value.toArray();
    for (const QJsonValue fault : array) {
        if (!fault.isString())
            return tr("must be a list of texts, not %1 in the list").arg(typeName(fault));
        list << fault.toString();
    }
    QString problem;
    if (const std::optional<Faults> faults = parseFaults(list, &problem))
        card->faults = *faults;
    return problem;
}

bool onAnyCard(CardKind /*kind*/)
{
    return true;
}

bool onResidentCard(CardKind kind)
{
    return kind == CardKind::RESIDENT;
}

// The keys that hold something other than a text of the card; all optional.
constexpr KindKey OTHER_KEYS[] = {
    {"fingerprints", onResidentCard, readFingerprints},
    {"photo", onAnyCard, readPhoto},
    {"padding", onAnyCard, readPadding},
    {"faults", onAnyCard, readFaults},
};

const KindKey *findOtherKey(const QString &name)
{
    for (const KindKey &key : OTHER_KEYS) {
        if (name == QLatin1String(key.name))
            return &key;
    }
    return nullptr;
}

QStringList keysOf(CardKind kind)
{
    QStringList names = {QStringLiteral("kind")};
    for (const TextKey &key : textKeys()) {
        if (key.rule(kind).use != KeyUse::ABSENT)
            names << QLatin1String(key.name);
    }
    for (const KindKey &key : OTHER_KEYS) {
        if (key.allowed(kind))
            names << QLatin1String(key.name);
    }
    return names;
}

QString unknownKey(CardKind kind)
{
    return filledIn(tr("is not a key of a %1 card; its keys: %2"), cardKindName(kind),
                    listed(keysOf(kind)));
}

QString readText(CardDescription *card, const TextKey &key, const QJsonValue &value)
{
    if (key.rule(card->kind).use == KeyUse::ABSENT)
        return unknownKey(card->kind);
    if (!value.isString())
        return wrongType(QT_TR_NOOP("a text"), value);
    const QString text = value.toString();
    const QString problem = textProblem(key, card->kind, text);
    if (!problem.isEmpty())
        return filledIn(tr("%1 %2"), quoted(text), problem);
    card->*key.text = text;
    return {};
}

QString readKey(CardDescription *card, const QString &name, const QJsonValue &value, QString *part)
{
    if (name == QLatin1String("kind"))
        return {};
    if (const TextKey *key = findTextKey(name))
        return readText(card, *key, value);
    const KindKey *key = findOtherKey(name);
    if (key == nullptr || !key->allowed(card->kind))
        return unknownKey(card->kind);
    return key->read(card, value, part);
}

QString missingKey(const QJsonObject &object, CardKind kind)
{
    for (const TextKey &key : textKeys()) {
        QString name = QLatin1String(key.name);
        if (key.rule(kind).use == KeyUse::REQUIRED && !object.contains(name))
            return name;
    }
    return {};
}

// Reads every key of `object` into `card`; false when one is refused.
bool readKeys(CardDescription *card, const QJsonObject &object, DescriptionError *error)
{
    const QString kindKey = QStringLiteral("kind");
    if (!object.contains(kindKey)) {
        error->key = kindKey;
        error->reason = tr("is missing");
        return false;
    }
    error->reason = readKind(object.value(kindKey), &card->kind);
    if (!error->reason.isEmpty()) {
        error->key = kindKey;
        return false;
    }
    for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
        QString part;
        error->reason = readKey(card, it.key(), it.value(), &part);
        if (!error->reason.isEmpty()) {
            error->key = part.isEmpty() ? it.key() : it.key() + QLatin1Char('.') + part;
            return false;
        }
    }
    error->key = missingKey(object, card->kind);
    if (!error->key.isEmpty()) {
        error->reason = tr("is missing; a %1 card needs it").arg(cardKindName(card->kind));
        return false;
    }
    return true;
}

QString syntaxProblem(const QByteArray &json, const QJsonParseError &problem)
{
    const QByteArray before = json.left(problem.offset);
    const int line = before.count('\n') + 1;
    const int column = before.size() - (before.lastIndexOf('\n') + 1) + 1;
    return tr("line %1, column %2: %3").arg(line).arg(column).arg(problem.errorString());
}

} // namespace

QString DescriptionError::message() const
{
    return key.isEmpty() ? filledIn(tr("%1: %2"), file, reason)
                         : filledIn(tr("%1: %2: %3"), file, quoted(key), reason);
}

std::optional<CardDescription> readDescription(const QByteArray &json, const QString &file,
                                               DescriptionError *error)
{
    *error = {file, {}, {}};
    if (json.size() > LARGEST_DESCRIPTION) {
        error->reason =
            tr("is larger than a description may be (%1 bytes)").arg(LARGEST_DESCRIPTION);
        return std::nullopt;
    }
    QJsonParseError problem;
    const QJsonDocument document = QJsonDocument::fromJson(json, &problem);
    if (problem.error != QJsonParseError::NoError) {
        error->reason = syntaxProblem(json, problem);
        return std::nullopt;
    }
    if (!document.isObject()) {
        error->reason = tr("is not a JSON object");
        return std::nullopt;
    }
    CardDescription card;
    if (!readKeys(&card, document.object(), error))
        return std::nullopt;
    return card;
}

} // namespace simulator
