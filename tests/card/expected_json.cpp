#include "tests/card/expected_json.h"

#include <QDate>
#include <QJsonArray>

#include "common/country_code_list.h"

namespace
{

QString countryName(const QString &code)
{
    for (const auto &row : COUNTRY_CODE_LIST) {
        if (row[1] == code.toStdString())
            return QString::fromStdString(row[2]);
    }
    return {};
}

/** What a decoder keeps of a text that gets so many bytes of UTF-8: whole characters. */
QString cutTo(QString text, int bytes)
{
    while (text.toUtf8().size() > bytes)
        text.chop(1);
    return text;
}

struct CutField {
    const char *key;
    int bytes;
};

constexpr CutField CUT_FIELDS[] = {{"name", 31},
                                   {"englishName", 31},
                                   {"chineseName", 31},
                                   {"address", 101},
                                   {"issuingAuthority", 31}};

const char *photoFormat(const simulator::CardDescription &card)
{
    switch (card.photoDelivery) {
    case simulator::PhotoDelivery::BMP_FILE:
    case simulator::PhotoDelivery::COMPRESSED: // which is decoded
        break;
    case simulator::PhotoDelivery::OWN_FILE: // of photos in unusual forms only this one is known
        return card.photoFile == QLatin1String("resident-photo-top-down.bmp") ? "bmp" : "unknown";
    }
    return "bmp";
}

/** Weights of the 18 digits of GB 11643; the weighted sum leaves 1 when divided by 11. */
bool hasWrongCheckDigit(const QString &number)
{
    constexpr int WEIGHTS[] = {7, 9, 10, 5, 8, 4, 2, 1, 6, 3, 7, 9, 10, 5, 8, 4, 2, 1};
    if (number.size() != 18 || !number.at(0).isDigit()) // or letters of a country
        return false;
    int sum = 0;
    for (int i = 0; i < 18; ++i)
        sum += WEIGHTS[i] * (number.at(i) == QLatin1Char('X') ? 10 : number.at(i).digitValue());
    return sum % 11 != 1;
}

/** Dates of eight digits compare as texts, and an age is the difference of their years. */
void insertNotesOfToday(const simulator::CardDescription &card, QJsonObject *json)
{
    const QString today = QDate::currentDate().toString("yyyyMMdd");
    QJsonArray notes;
    if (card.validTo < today) // a Chinese text is greater than digits
        notes << "expired";
    if (card.validFrom > today)
        notes << "not-yet-valid";
    if (hasWrongCheckDigit(card.idNumber))
        notes << "check-digit-wrong";
    if (json->value("nationality") == QJsonValue(QString()))
        notes << "unknown-nationality";
    json->insert("notes", notes);
    json->insert("age", (today.toInt() - card.birthDate.toInt()) / 10000);
}

} // namespace

QJsonObject expectedOfRead(const simulator::CardDescription &card)
{
    using simulator::CardKind;
    const bool isForeign = card.kind == CardKind::FOREIGN2017 || card.kind == CardKind::FOREIGN_NEW;
    QJsonObject json{{"road", "reader-library"},
                     {"kind", simulator::cardKindName(card.kind)},
                     {"sex", simulator::sexText(card)},
                     {"birthDate", QJsonObject{{"year", card.birthDate.mid(0, 4)},
                                               {"month", card.birthDate.mid(4, 2)},
                                               {"day", card.birthDate.mid(6)}}},
                     {"idNumber", card.idNumber},
                     {"validFrom", card.validFrom},
                     {"validTo", card.validTo}};
    json["photo"] = QJsonObject{{"format", photoFormat(card)}, {"file", QJsonValue()}};
    for (const char *picture : {"frontPicture", "backPicture"}) {
        json.insert(QLatin1String(picture),
                    QJsonObject{{"format", "jpeg"}, {"file", QJsonValue()}});
    }
    if (isForeign) {
        json["englishName"] = card.englishName;
        json["chineseName"] = card.chineseName;
        json["nationality"] = countryName(card.nationality);
        json["nationalityCode"] = QJsonValue();
    } else {
        json["name"] = card.name;
        json["address"] = card.address;
        json["issuingAuthority"] = card.issuingAuthority;
    }
    switch (card.kind) {
    case CardKind::RESIDENT:
        json["cardKind"] = 0;
        json["ethnicGroup"] = simulator::ethnicGroupText(card);
        json["fingerprints"] = QJsonObject{{"count", card.fingerprints}, {"file", QJsonValue()}};
        break;
    case CardKind::HMT:
        json["cardKind"] = 3;
        json["travelPermitNumber"] = card.travelPermitNumber;
        json["issueCount"] = QJsonValue();
        break;
    case CardKind::FOREIGN2017:
        json["cardKind"] = 1;
        break;
    case CardKind::FOREIGN_NEW:
        json["cardKind"] = 2;
        json["cardExtra"] = card.cardExtra;
        break;
    }
    insertNotesOfToday(card, &json);
    return json;
}

QJsonObject expectedOfRecord(const simulator::CardDescription &card, const QString &road)
{
    using simulator::CardKind;
    QJsonObject json = expectedOfRead(card);
    json["road"] = road;
    json["photo"] = QJsonObject{{"format", "bmp"}, {"file", QJsonValue()}};
    for (const char *picture : {"frontPicture", "backPicture"}) {
        json.insert(QLatin1String(picture),
                    QJsonObject{{"format", "none"}, {"file", QJsonValue()}});
    }
    QJsonArray notes = json["notes"].toArray();
    QJsonObject whole;
    for (const CutField &field : CUT_FIELDS) {
        const QString key = QLatin1String(field.key);
        const QString text = json.value(key).toString();
        if (!json.contains(key) || cutTo(text, field.bytes) == text)
            continue;
        json.insert(key, cutTo(text, field.bytes));
        // The English name of the new edition goes on in another field.
        const bool goesOn = card.kind == CardKind::FOREIGN_NEW && key == "englishName";
        whole.insert(key, goesOn ? text.left(35) : text);
        notes << "cut:" + key;
    }
    json["notes"] = notes;
    if (!whole.isEmpty())
        json["whole"] = whole;
    if (json.contains("nationalityCode"))
        json["nationalityCode"] = card.nationality;
    else // no label for an unknown sex
        json["sex"] = QString::fromUtf8(card.sex == QLatin1String("1") ? "男" : "女");
    if (json.contains("issueCount"))
        json["issueCount"] = card.issueCount;
    return json;
}
