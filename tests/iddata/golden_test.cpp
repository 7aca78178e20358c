// Every card of the simulator against its golden record: the frame that the simulator makes, and
// what the decoders make of it.

#include "simulator/card/raw_record.h"
#include "tests/iddata/decoded_frame.h"
#include "tests/iddata/golden_record.h"
#include "tests/simulator/built_in_card.h"
#include "tests/support/test_name.h"

#include <map>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCryptographicHash>

namespace
{

class Golden : public testing::TestWithParam<std::string>
{
protected:
    QString name = QString::fromStdString(GetParam());
    GoldenRecord golden = goldenRecord(name);
};

std::string sha256(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().toStdString();
}

FieldTexts textsOf(const QJsonObject &object)
{
    FieldTexts texts;
    for (auto it = object.begin(); it != object.end(); ++it)
        texts[it.key().toStdString()] = it.value().toString().toStdString();
    return texts;
}

INSTANTIATE_TEST_SUITE_P(Cards, Golden, testing::ValuesIn(builtInCardParameters()), testNameOf);

} // namespace

TEST_P(Golden, FrameOfTheSimulator_IsTheGoldenOne)
{
    const simulator::CardDescription card = builtInCard(name);
    const QByteArray frame = simulator::readAnswer(card, card.faults);
    ASSERT_EQ(frame.size(), golden.frame.size());
    for (int i = 0; i < frame.size(); ++i)
        ASSERT_EQ(frame.at(i), golden.frame.at(i)) << "byte " << i;
}

TEST_P(Golden, DecodedTexts_AreTheGoldenOnes)
{
    ASSERT_GT(golden.frame.size(), reader_frames::PRINTS_OFFSET);
    const DecodedFrame decoded = decodedFrame(golden.frame);
    const std::map<QString, ID_TYPE> types = {
        {QStringLiteral("resident"), ID_TYPE_CN},
        {QStringLiteral("hmt"), ID_TYPE_HMT},
        {QStringLiteral("foreign-2017"), ID_TYPE_FOREIGN_2017},
        {QStringLiteral("foreign-new"), ID_TYPE_FOREIGN_NEW},
    };
    const QString kind = golden.expected[QStringLiteral("kind")].toString();
    EXPECT_EQ(decoded.type, types.at(kind));
    EXPECT_EQ(decoded.fields, textsOf(golden.expected[QStringLiteral("fields")].toObject()));
}

TEST_P(Golden, DecodedPhotoAndPrints_AreTheGoldenOnes)
{
    ASSERT_GT(golden.frame.size(), reader_frames::PRINTS_OFFSET);
    const DecodedFrame decoded = decodedFrame(golden.frame);
    const auto expected = [this](const char *key) { return golden.expected[QLatin1String(key)]; };
    EXPECT_EQ(sha256(decoded.photo), expected("photoSha256").toString().toStdString());
    EXPECT_EQ(sha256(decoded.prints), expected("fingerprintsSha256").toString().toStdString());
    EXPECT_EQ(decoded.prints.size(),
              expected("fingerprints").toInt(-1) * reader_frames::PRINT_SIZE);
}

TEST(GoldenFolder, EveryCard_HasAFrameAndItsTextsAndNothingElseIsThere)
{
    QStringList expected;
    for (const QString &card : simulator::builtInCardNames())
        expected << card + ".bin" << card + ".json";
    expected.sort();
    QStringList found = goldenFolder().entryList(QDir::Files);
    found.sort();
    EXPECT_EQ(found, expected);
    EXPECT_EQ(expected.size(), 2 * 27);
}
