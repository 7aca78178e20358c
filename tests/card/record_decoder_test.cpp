// Cards from raw records.

#include <algorithm>
#include <random>

#include <gmock/gmock.h>

#include "apps/card/record_decoder.h"
#include "tests/support/ucs2.h"
#include "tests/tool/tool_runner.h"

using namespace app;

namespace
{

constexpr int TEXT = 16;
constexpr int PHOTO = 272;
constexpr int PRINTS = 1296;
constexpr int KIND_LETTER = TEXT + 248;

QStringList contentOf(const Card &card, const char *key)
{
    for (const CardField &field : card.fields()) {
        if (qstrcmp(field.key, key) == 0)
            return field.content;
    }
    ADD_FAILURE() << key;
    return {};
}

/** The record with this text, filled up with blanks, in the place of a day of validity. */
QByteArray withDay(QByteArray record, int offset, const QString &text)
{
    const auto day = ucs2(text.leftJustified(8, ' ').toStdU16String());
    std::copy(day.begin(), day.end(), record.begin() + offset);
    return record;
}

TEST(DecodeRawRecord, DaysOfValidityAreAsTheRecordHasThem)
{
    constexpr int VALID_FROM = TEXT + 188;
    constexpr int VALID_TO = TEXT + 204;
    for (const char *kind : {"resident", "hmt-macao", "foreign-2017", "foreign-new"}) {
        for (const char *day :
             {"20150203", "2015020", "2015", "", "2020.1.1", "....", "长期", "不详"}) {
            const QString text = QString::fromUtf8(day);
            const QByteArray record =
                withDay(withDay(recordOf(kind), VALID_FROM, text), VALID_TO, text);
            const auto card = decodeRawRecord(record, FP_INFO_NONE, Road::FILE);
            ASSERT_TRUE(card);
            EXPECT_EQ(contentOf(*card, "validFrom").first(), text) << kind;
            EXPECT_EQ(contentOf(*card, "validTo").first(), text) << kind;
        }
    }
}

TEST(DecodeRawRecord, EndThatSaysLongTermAmongOtherTextIsThatForResidentsAndPermits)
{
    constexpr int VALID_TO = TEXT + 204;
    for (const char *kind : {"resident", "hmt-macao"}) {
        const auto card =
            decodeRawRecord(withDay(recordOf(kind), VALID_TO, QStringLiteral("至长期。")),
                            FP_INFO_NONE, Road::FILE);
        ASSERT_TRUE(card);
        EXPECT_EQ(contentOf(*card, "validTo").first(), QStringLiteral("长期"));
    }
}

TEST(DecodeRawRecord, RoadIsTheOneThatIsNamedAndPrintsTheBlockAtTheirPlace)
{
    const QByteArray record = recordOf("resident-one-fingerprint");
    for (const Road road : {Road::USB, Road::FILE}) {
        const auto card = decodeRawRecord(record, FP_INFO_ONE, road);
        ASSERT_TRUE(card);
        EXPECT_EQ(card->road(), road);
        EXPECT_EQ(card->fingerprintCount(), 1);
        EXPECT_EQ(card->fingerprints(), record.mid(PRINTS, 512));
    }
}

TEST(DecodeRawRecord, CardOfAKindWithoutPrintsKeepsThoseThatItHas)
{
    QByteArray record = recordOf("foreign-new");
    record.insert(PRINTS, QByteArray(512, 'p'));
    const auto card = decodeRawRecord(record, FP_INFO_ONE, Road::FILE);
    ASSERT_TRUE(card);
    EXPECT_TRUE(card->mayHaveFingerprints());
    EXPECT_EQ(card->fingerprints(), QByteArray(512, 'p'));
    EXPECT_FALSE(
        decodeRawRecord(recordOf("foreign-new"), FP_INFO_NONE, Road::FILE)->mayHaveFingerprints());
}

TEST(DecodeRawRecord, PhotoWithoutADecoderStaysCompressedAndZerosAreNone)
{
    QByteArray record = recordOf("resident");
    const auto card = decodeRawRecord(record, FP_INFO_TWO, Road::FILE);
    ASSERT_TRUE(card);
    EXPECT_EQ(card->photoFormat(), PhotoFormat::COMPRESSED);
    EXPECT_TRUE(card->photo().isNull());
    record.replace(PHOTO, 1024, QByteArray(1024, '\0'));
    EXPECT_EQ(decodeRawRecord(record, FP_INFO_TWO, Road::FILE)->photoFormat(), PhotoFormat::NONE);
}

TEST(DecodeRawRecord, ForeignNationalityIsNameAndCodeApart)
{
    for (const char *name : {"foreign-2017", "foreign-new"}) {
        const auto card = decodeRawRecord(recordOf(name), FP_INFO_NONE, Road::FILE);
        ASSERT_TRUE(card);
        EXPECT_EQ(contentOf(*card, "nationalityCode").first(),
                  builtInCard(QLatin1String(name)).nationality);
        EXPECT_FALSE(contentOf(*card, "nationality").first().isEmpty());
        EXPECT_FALSE(contentOf(*card, "nationality").first().contains('/'));
    }
}

TEST(DecodeRawRecord, CountryCodeThatLooksLikeTheSeparatorStaysTheCode)
{
    QByteArray record = recordOf("foreign-new");
    record.replace(TEXT + 242, 6, QByteArray(" \0/\0 \0", 6));
    const auto card = decodeRawRecord(record, FP_INFO_NONE, Road::FILE);
    ASSERT_TRUE(card);
    EXPECT_EQ(contentOf(*card, "nationalityCode").first(), " / ");
    EXPECT_EQ(contentOf(*card, "nationality").first(), "");
}

struct SexPlace {
    const char *card;
    int offset;
};

class UnknownSex : public testing::TestWithParam<SexPlace>
{
};

TEST_P(UnknownSex, OfAForeignersCardGivesNoCard)
{
    QByteArray record = recordOf(GetParam().card);
    for (const char code : {'3', '8'}) {
        record[TEXT + GetParam().offset] = code;
        EXPECT_FALSE(decodeRawRecord(record, FP_INFO_NONE, Road::FILE)) << code;
    }
    for (const char code : {'0', '1', '2', '9'}) {
        record[TEXT + GetParam().offset] = code;
        EXPECT_TRUE(decodeRawRecord(record, FP_INFO_NONE, Road::FILE)) << code;
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, UnknownSex,
                         testing::Values(SexPlace{"foreign-2017", 120},
                                         SexPlace{"foreign-new", 30}));

TEST(DecodeRawRecord, AnythingInTheBlocksIsDecodedWithoutHarm)
{
    std::mt19937 random(7);
    QByteArray record = recordOf("resident");
    for (const char kind : {' ', 'I', 'Y', 'J'}) {
        for (int round = 0; round < 500; ++round) {
            for (int offset = TEXT; offset < record.size(); ++offset)
                record[offset] = static_cast<char>(random());
            record[KIND_LETTER] = kind;
            record[KIND_LETTER + 1] = 0;
            const auto card = decodeRawRecord(record, FP_INFO_TWO, Road::FILE);
            if (!card)
                continue;
            ASSERT_EQ(card->fingerprints(), record.mid(PRINTS, 1024));
            ASSERT_FALSE(card->fields().isEmpty());
        }
    }
}

} // namespace
