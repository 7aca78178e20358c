// Cards from JSON: whole again, or none when it is not what the tool prints.

#include <gmock/gmock.h>

#include <QJsonArray>
#include <QJsonDocument>

#include "apps/card/card_input.h"
#include "apps/card/card_output.h"
#include "apps/card/record_decoder.h"
#include "tests/card/card_samples.h"
#include "tests/tool/tool_runner.h"

using namespace app;

namespace
{

/** As it is printed, and taken in again. */
QJsonObject printed(const Card &card)
{
    const QJsonObject object = toJson(card, std::nullopt, *parseInlineParts("all"));
    return QJsonDocument::fromJson(QJsonDocument(object).toJson()).object();
}

/** It says and holds the same, to the byte. */
void expectSame(const Card &card, const Card &other)
{
    EXPECT_EQ(printed(card), printed(other));
    EXPECT_EQ(card.road(), other.road());
    EXPECT_EQ(card.kindCode(), other.kindCode());
    EXPECT_EQ(toTable(card, std::nullopt).toStdString(),
              toTable(other, std::nullopt).toStdString());
    EXPECT_EQ(holderName(card), holderName(other));
    const auto files = contentsOf(card, CardFiles::ALL);
    const auto otherFiles = contentsOf(other, CardFiles::ALL);
    ASSERT_EQ(files.size(), otherFiles.size());
    for (int i = 0; i < files.size(); ++i) {
        EXPECT_EQ(files[i].content, otherFiles[i].content) << files[i].name.toStdString();
        EXPECT_EQ(files[i].content.isNull(), otherFiles[i].content.isNull());
    }
}

void expectWholeAgain(const Card &card)
{
    const auto taken = cardFromJson(printed(card));
    ASSERT_TRUE(taken);
    expectSame(*taken, card);
}

class KindFromTheLibrary : public testing::TestWithParam<unsigned int>
{
};

TEST_P(KindFromTheLibrary, IsTheSameCardAgain)
{
    expectWholeAgain(samples::cardOf(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Kinds, KindFromTheLibrary,
                         testing::Values(IDCARD_KIND_CN, IDCARD_KIND_HMT, IDCARD_KIND_FOREIGN_2017,
                                         IDCARD_KIND_FOREIGN_NEW));

class KindFromARecord : public testing::TestWithParam<const char *>
{
};

TEST_P(KindFromARecord, IsTheSameCardAgain)
{
    const QByteArray record = recordOf(GetParam());
    for (const Road road : {Road::USB, Road::FILE}) {
        const FP_INFO_TYPE prints = record.size() > 2000   ? FP_INFO_TWO
                                    : record.size() > 1500 ? FP_INFO_ONE
                                                           : FP_INFO_NONE;
        const auto card = decodeRawRecord(record, prints, road);
        ASSERT_TRUE(card);
        expectWholeAgain(*card);
    }
}

INSTANTIATE_TEST_SUITE_P(Cards, KindFromARecord,
                         testing::Values("resident", "resident-one-fingerprint",
                                         "resident-no-fingerprint", "resident-longest-texts",
                                         "hmt-macao", "foreign-2017", "foreign-2017-longest-name",
                                         "foreign-new", "foreign-new-unknown-nationality"));

TEST(CardFromJson, PhotoPrintsAndPictures_AreWholeAgain)
{
    expectWholeAgain(samples::residentCardWithEverything());
}

TEST(CardFromJson, TextThatWasCut_IsKnownInWhole)
{
    const QByteArray record = recordOf("resident-longest-texts");
    const auto card = decodeRawRecord(record, FP_INFO_NONE, Road::USB);
    ASSERT_FALSE(card->cutFields().isEmpty());
    const auto taken = cardFromJson(printed(*card));
    ASSERT_EQ(taken->cutFields().size(), card->cutFields().size());
    EXPECT_EQ(taken->cutFields()[0].content, card->cutFields()[0].content);
    EXPECT_STREQ(taken->cutFields()[0].key, card->cutFields()[0].key);
}

TEST(CardFromJson, OddRecord_IsKnown)
{
    QByteArray record = recordOf("resident");
    record[17] = static_cast<char>(~record[17]);
    const auto card = decodeRawRecord(record, FP_INFO_TWO, Road::USB);
    ASSERT_TRUE(card->hasOddRecord());
    expectWholeAgain(*card);
}

TEST(CardFromJson, CompressedPhoto_IsNoneButItsFormIsKnown)
{
    auto records = samples::filledRecords();
    std::fill_n(records->cn.byPhoto, IDCARD_COMPRESSED_PHOTO_SIZE, static_cast<unsigned char>(7));
    const Card card(IDCARD_KIND_CN, *records);
    ASSERT_EQ(card.photoFormat(), PhotoFormat::COMPRESSED);
    const auto taken = cardFromJson(printed(card));
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->photoFormat(), PhotoFormat::COMPRESSED);
    EXPECT_TRUE(taken->photo().isNull());
    expectSame(*taken, card);
}

TEST(CardFromJson, PrintsOfAnUnusualAmount_StayUnknown)
{
    auto records = samples::filledRecords();
    records->cn.fpInfoType = static_cast<FP_INFO_TYPE>(-1);
    const auto taken = cardFromJson(printed(Card(IDCARD_KIND_CN, *records)));
    ASSERT_TRUE(taken);
    EXPECT_FALSE(taken->fingerprintCount());
}

/** Parts that not every card has, so that it is one without them. */
bool isNeeded(const QString &key)
{
    return !QStringList({"cardKind", "notes", "age", "frontPicture", "backPicture"}).contains(key);
}

TEST(CardFromJson, KeyThatIsMissing_IsNoCard)
{
    const QJsonObject whole = printed(samples::residentCardWithEverything());
    int keys = 0;
    for (const QString &key : whole.keys()) {
        QJsonObject object = whole;
        object.remove(key);
        // Without the prints it is a card that has none.
        EXPECT_EQ(cardFromJson(object).has_value(), !isNeeded(key) || key == "fingerprints")
            << key.toStdString();
        ++keys;
    }
    EXPECT_GE(keys, 15);
}

TEST(CardFromJson, ValueOfAnotherType_IsNoCard)
{
    const QJsonObject whole = printed(samples::residentCardWithEverything());
    QJsonArray deep;
    for (int i = 0; i < 100; ++i)
        deep = {deep};
    for (const QString &key : whole.keys()) {
        for (const QJsonValue &value :
             {QJsonValue(1e300), QJsonValue(true), QJsonValue(deep), QJsonValue(-1)}) {
            QJsonObject object = whole;
            object[key] = value;
            const auto card = cardFromJson(object);
            if (isNeeded(key) && key != "fingerprints") {
                EXPECT_FALSE(card) << key.toStdString();
            }
        }
    }
}

QJsonObject withPart(const char *part, const char *key, const QJsonValue &value)
{
    QJsonObject object = printed(samples::residentCardWithEverything());
    QJsonObject changed = object[QLatin1String(part)].toObject();
    changed[QLatin1String(key)] = value;
    object[QLatin1String(part)] = changed;
    return object;
}

TEST(CardFromJson, WhatDoesNotFitTogether_IsNoCard)
{
    for (const char *const part : {"year", "month", "day"}) {
        for (const QJsonValue &value : {QJsonValue(7), QJsonValue(QJsonValue::Null)})
            EXPECT_FALSE(cardFromJson(withPart("birthDate", part, value)));
    }
    for (const QJsonValue &count : {QJsonValue(1), QJsonValue(0), QJsonValue(3), QJsonValue(-2),
                                    QJsonValue(1e9), QJsonValue(QJsonValue::Null)})
        EXPECT_FALSE(cardFromJson(withPart("fingerprints", "count", count)));
    QJsonObject object = printed(samples::residentCard());
    object["kind"] = "hmt"; // with the fields of another kind
    EXPECT_FALSE(cardFromJson(object));
}

TEST(CardFromJson, Error_DoesNotMatterBesideACardAndIsNoneAlone)
{
    QJsonObject object = printed(samples::residentCard());
    object.insert("error", QJsonObject());
    EXPECT_TRUE(cardFromJson(object));
    EXPECT_FALSE(cardFromJson({}));
    QJsonObject error;
    error.insert("error", QJsonObject());
    EXPECT_FALSE(cardFromJson(error));
}

TEST(CardFromJson, FileThatIsNoBase64_IsNoCard)
{
    for (const char *const part : {"photo", "fingerprints", "frontPicture", "backPicture"}) {
        for (const QJsonValue &data : {QJsonValue("%%%"), QJsonValue("QUJD*"), QJsonValue("QUJ"),
                                       QJsonValue(7), QJsonValue(true), QJsonValue(QJsonObject()),
                                       QJsonValue(QString("照片")), QJsonValue(QString())})
            EXPECT_FALSE(cardFromJson(withPart(part, "data", data))) << part;
    }
}

TEST(CardFromJson, PhotoOfAnotherSizeOrForm_IsNoCard)
{
    const QByteArray photo = samples::residentCardWithEverything().photo();
    QByteArray jpeg = photo;
    jpeg.replace(0, 4, "\xFF\xD8\xFF\xE0");
    QByteArray huge = photo;
    huge.replace(18, 4, "\xFF\xFF\xFF\x7F"); // its width
    for (const QByteArray &bytes :
         {photo.left(photo.size() - 1), photo + '\0', QByteArray("BM"), jpeg, huge}) {
        EXPECT_FALSE(
            cardFromJson(withPart("photo", "data", QString::fromLatin1(bytes.toBase64()))));
    }
    EXPECT_FALSE(cardFromJson(withPart("photo", "data", QJsonValue::Null)));
    EXPECT_FALSE(cardFromJson(withPart("photo", "format", "png")));
}

TEST(CardFromJson, PrintsThatAreWithheld_AreNoneButTheirNumberIsKnown)
{
    const auto card = cardFromJson(withPart("fingerprints", "data", QJsonValue::Null));
    ASSERT_TRUE(card);
    EXPECT_EQ(card->fingerprintCount(), 2);
    EXPECT_TRUE(card->fingerprints().isNull());
}

TEST(CardFromJson, KindOrRoadThatIsNotKnown_IsNoCard)
{
    for (const char *const key : {"kind", "road", "photo"}) {
        for (const char *const value : {"", "passport", "USB", "resident ", "../usb"}) {
            QJsonObject object = printed(samples::residentCard());
            object[QLatin1String(key)] = value;
            EXPECT_FALSE(cardFromJson(object)) << key << ' ' << value;
        }
    }
}

} // namespace
