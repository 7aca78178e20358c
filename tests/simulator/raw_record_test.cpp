// The chip's text block of every built-in card against its description file, byte by byte, and the
// answer of a read around it.

#include <map>

#include <gmock/gmock.h>

#include "simulator/card/card_media.h"
#include "simulator/card/photo_codec.h"
#include "simulator/card/raw_record.h"
#include "tests/simulator/built_in_card.h"
#include "tests/simulator/card_files.h"
#include "tests/simulator/text_place.h"
#include "tests/support/test_name.h"

using namespace simulator;

namespace
{

constexpr int TEXT_SIZE = 256;

// Where the block has the texts, and the letter of the kind.
struct Layout {
    std::vector<TextPlace> places;
    char kindLetter;
};

const Layout &layoutOf(const std::string &kind)
{
    static const std::map<std::string, Layout> table = {
        {"resident",
         {{{"name", 0, 30},
           {"sex", 30, 2},
           {"ethnicGroup", 32, 4},
           {"birthDate", 36, 16},
           {"address", 52, 70},
           {"idNumber", 122, 36},
           {"issuingAuthority", 158, 30},
           {"validFrom", 188, 16},
           {"validTo", 204, 16}},
          ' '}},
        {"hmt",
         {{{"name", 0, 30},
           {"sex", 30, 2},
           {"birthDate", 36, 16},
           {"address", 52, 70},
           {"idNumber", 122, 36},
           {"issuingAuthority", 158, 30},
           {"validFrom", 188, 16},
           {"validTo", 204, 16},
           {"travelPermitNumber", 220, 18},
           {"issueCount", 238, 4}},
          'J'}},
        {"foreign-2017",
         {{{"englishName", 0, 120},
           {"sex", 120, 2},
           {"idNumber", 122, 30},
           {"nationality", 152, 6},
           {"chineseName", 158, 30},
           {"validFrom", 188, 16},
           {"validTo", 204, 16},
           {"birthDate", 220, 16},
           {"cardVersion", 236, 4},
           {"authorityCode", 240, 8}},
          'I'}},
        {"foreign-new",
         {{{"chineseName", 0, 30},
           {"sex", 30, 2},
           {"cardExtra", 32, 4},
           {"birthDate", 36, 16},
           {"englishName", 52, 70},
           {"idNumber", 122, 36},
           {"validFrom", 188, 16},
           {"validTo", 204, 16},
           {"nationality", 242, 6}},
          'Y'}},
    };
    return table.at(kind);
}

// The whole block as the description asks for it: spaces, the texts, the kind letter.
QByteArray expectedBlock(const QJsonObject &card)
{
    QByteArray block;
    while (block.size() < TEXT_SIZE)
        block.append("\x20\x00", 2);
    const Layout &layout = layoutOf(card.value(QStringLiteral("kind")).toString().toStdString());
    for (const TextPlace &place : layout.places)
        putText(block, place, card.value(QLatin1String(place.key)).toString());
    block[248] = layout.kindLetter;
    return block;
}

int twoBytes(const QByteArray &bytes, int offset)
{
    return static_cast<unsigned char>(bytes.at(offset)) * 256 +
           static_cast<unsigned char>(bytes.at(offset + 1));
}

class RawRecord : public testing::TestWithParam<std::string>
{
};

} // namespace

TEST_P(RawRecord, TextOfBuiltInCard_IsTheDescriptionFieldByField)
{
    const QByteArray block = textBlock(builtInCard(QString::fromStdString(GetParam())));
    const QByteArray expected = expectedBlock(sourceCard(QString::fromStdString(GetParam())));
    ASSERT_EQ(block.size(), TEXT_SIZE);
    for (int i = 0; i < TEXT_SIZE; ++i)
        ASSERT_EQ(block.at(i), expected.at(i)) << "at offset " << i;
}

TEST_P(RawRecord, AnswerOfBuiltInCard_HasItsBlocksInARightFrame)
{
    const CardDescription card = builtInCard(QString::fromStdString(GetParam()));
    const QByteArray answer = readAnswer(card, {});
    const int prints = 512 * card.fingerprints;
    ASSERT_EQ(answer.size(), 1297 + prints);
    EXPECT_EQ(answer.left(5).toHex(), "aaaaaa9669");
    EXPECT_EQ(twoBytes(answer, 5), answer.size() - 7);
    EXPECT_EQ(answer.mid(7, 7).toHex(), "00009001000400");
    EXPECT_EQ(twoBytes(answer, 14), prints);
    EXPECT_EQ(answer.mid(16, 256), textBlock(card));
    EXPECT_EQ(answer.mid(272, 1024), compressedPhoto(card));
    EXPECT_EQ(answer.mid(1296, prints), fingerprintTemplates(card));
    char sum = 0;
    for (int i = 5; i < answer.size(); ++i)
        sum = static_cast<char>(sum ^ answer.at(i));
    EXPECT_EQ(sum, 0);
}

INSTANTIATE_TEST_SUITE_P(Cards, RawRecord, testing::ValuesIn(sourceCardParameters()), testNameOf);

TEST(RawRecordText, TextLongerThanItsField_IsCutAndLeavesTheNextFieldAlone)
{
    CardDescription card;
    card.name = QString(16, QLatin1Char('x'));
    card.sex = QStringLiteral("1");
    EXPECT_EQ(textBlock(card).mid(28, 6), QByteArray("x\0001\000 \000", 6));
}

TEST(RawRecordText, PaddingOfTheMakersRecord_DoesNotCount)
{
    CardDescription card;
    card.padding = Padding::ZEROS;
    EXPECT_EQ(textBlock(card).left(4), QByteArray(" \000 \000", 4));
}

TEST(RawRecordAnswer, UnknownKind_HasALetterThatNoDocumentHas)
{
    Faults faults;
    faults.add(FaultKind::UNKNOWN_KIND, {}, {9, {}});
    for (const char *name : {"resident", "hmt-macao", "foreign-2017", "foreign-new"}) {
        const QByteArray letter = readAnswer(builtInCard(name), faults).mid(16 + 248, 2);
        EXPECT_EQ(letter, QByteArray("?\0", 2)) << name;
    }
}

TEST(RawRecordAnswer, PhotoLength_IsOnlyReported)
{
    for (const int length : {0, 500, 1023, 38862}) {
        Faults faults;
        faults.add(FaultKind::PHOTO_LENGTH, {}, {length, {}});
        const QByteArray answer = readAnswer(builtInCard("resident"), faults);
        EXPECT_EQ(answer.size(), 2321);
        EXPECT_EQ(twoBytes(answer, 5), 2321 - 7);
        EXPECT_EQ(twoBytes(answer, 12), length);
    }
}

TEST(RawRecordAnswer, UndecodablePhoto_IsOfUsualLengthAndDoesNotDecode)
{
    Faults faults;
    const auto decodes = [&faults] {
        return !decompressPhoto(readAnswer(builtInCard("resident"), faults).mid(272, 1024))
                    .isEmpty();
    };
    EXPECT_TRUE(decodes());
    faults.add(FaultKind::PHOTO_UNDECODABLE, {}, {});
    EXPECT_FALSE(decodes());
}
