// Cards from raw records.

#include <random>

#include <gmock/gmock.h>

#include "apps/card/record_decoder.h"
#include "simulator/card/raw_record.h"
#include "tests/tool/tool_runner.h"

using namespace app;

namespace
{

constexpr int TEXT = 16;
constexpr int PHOTO = 272;
constexpr int PRINTS = 1296;
constexpr int KIND_LETTER = TEXT + 248;

QByteArray recordOf(const char *card)
{
    return simulator::readAnswer(builtInCard(QLatin1String(card)), {});
}

QStringList contentOf(const Card &card, const char *key)
{
    for (const CardField &field : card.fields()) {
        if (qstrcmp(field.key, key) == 0)
            return field.content;
    }
    ADD_FAILURE() << key;
    return {};
}

TEST(WithoutDatePoints, UndoesWhatTheDecodersDo)
{
    // YYYY.MM.DD is put together from whatever there is.
    for (const char *date : {"20150203", "2015020", "201502", "20150", "2015", "201", ""}) {
        const QString text = QLatin1String(date);
        const QString formatted = text.mid(0, 4) + '.' + text.mid(4, 2) + '.' + text.mid(6);
        EXPECT_EQ(withoutDatePoints(formatted), text) << date;
    }
}

TEST(WithoutDatePoints, LeavesOtherTextAsItIs)
{
    for (const char *text : {"长期", "20150203", "2015.02", "20151.02.03", "2015.021.03", "....."})
        EXPECT_EQ(withoutDatePoints(QString::fromUtf8(text)), QString::fromUtf8(text));
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
