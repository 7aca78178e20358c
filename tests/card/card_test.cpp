#include <functional>

#include <gtest/gtest.h>

#include "tests/card/card_samples.h"

using namespace app;

namespace
{

class PhotoFormatOf : public testing::Test
{
protected:
    std::unique_ptr<CardRecords> records = std::make_unique<CardRecords>();
    unsigned char *photo = records->cn.byPhoto;
};

TEST_F(PhotoFormatOf, BmpFileOfTheCardsSize_IsABmpWhateverTheOrderOfItsRows)
{
    samples::putPhotoBmp(photo);
    EXPECT_EQ(photoFormatOf(photo), PhotoFormat::BMP);
    photo[22] = 0x82; // -126
    photo[23] = photo[24] = photo[25] = 0xFF;
    EXPECT_EQ(photoFormatOf(photo), PhotoFormat::BMP);
    for (const int offset : {1, 2, 18, 22, 28}) {
        samples::putPhotoBmp(photo);
        photo[offset] ^= 0x01;
        EXPECT_EQ(photoFormatOf(photo), PhotoFormat::UNKNOWN) << "byte " << offset;
    }
}

TEST_F(PhotoFormatOf, DataOfTheCompressedLength_IsCompressedEvenIfItBeginsLikeABmp)
{
    EXPECT_EQ(photoFormatOf(photo), PhotoFormat::NONE);
    photo[IDCARD_COMPRESSED_PHOTO_SIZE - 1] = 1;
    EXPECT_EQ(photoFormatOf(photo), PhotoFormat::COMPRESSED);
    photo[0] = 'B';
    photo[1] = 'M';
    EXPECT_EQ(photoFormatOf(photo), PhotoFormat::COMPRESSED);
    photo[IDCARD_COMPRESSED_PHOTO_SIZE] = 1;
    EXPECT_EQ(photoFormatOf(photo), PhotoFormat::UNKNOWN);
}

TEST(CardPhoto, BmpIsTheWholeFile)
{
    const Card card = samples::residentCardWithEverything();
    EXPECT_EQ(card.photo().size(), static_cast<int>(IDCARD_PHOTO_SIZE));
    EXPECT_TRUE(card.photo().startsWith("BM"));
}

TEST(CardPhoto, CompressedDataIsNoPhoto)
{
    auto records = samples::filledRecords();
    records->cn.byPhoto[0] = 7;
    const Card card(IDCARD_KIND_CN, *records);
    EXPECT_TRUE(card.photo().isNull());
}

struct PrintsCase {
    FP_INFO_TYPE type;
    int count;
    int bytes;
};

class CardFingerprints : public testing::TestWithParam<PrintsCase>
{
};

TEST_P(CardFingerprints, CountAndBytesFollowTheRecord)
{
    auto records = samples::filledRecords();
    records->cn.fpInfoType = GetParam().type;
    const Card card(IDCARD_KIND_CN, *records);
    EXPECT_EQ(card.fingerprintCount(), GetParam().count);
    EXPECT_EQ(card.fingerprints().size(), GetParam().bytes);
    EXPECT_EQ(card.fingerprints().isNull(), GetParam().count == 0);
}

INSTANTIATE_TEST_SUITE_P(Counts, CardFingerprints,
                         testing::Values(PrintsCase{FP_INFO_NONE, 0, 0},
                                         PrintsCase{FP_INFO_ONE, 1, 512},
                                         PrintsCase{FP_INFO_TWO, 2, 1024}));

TEST(CardFingerprintCount, RecordThatTheReadLeftAloneIsUnknown)
{
    const Card card(IDCARD_KIND_CN, *std::make_unique<CardRecords>());
    EXPECT_EQ(card.fingerprintCount(), std::nullopt);
    EXPECT_TRUE(card.fingerprints().isNull());
}

TEST(CardFingerprintCount, OtherKindsHaveNone)
{
    const Card card = samples::cardOf(IDCARD_KIND_HMT);
    EXPECT_FALSE(card.mayHaveFingerprints());
    EXPECT_EQ(card.fingerprintCount(), 0);
}

TEST(CardDigest, AnyChangeOfTheContent_ChangesIt)
{
    const QByteArray digest = samples::residentCard().digest();
    EXPECT_EQ(samples::residentCard().digest(), digest);
    const auto expectChanged =
        [&digest](const std::function<void(decltype(CardRecords::cn) &)> &change) {
            auto records = samples::filledRecords();
            change(records->cn);
            EXPECT_NE(Card(IDCARD_KIND_CN, *records).digest(), digest);
        };
    expectChanged([](auto &cn) { cn.szValidEnd = "20350203"; });
    expectChanged([](auto &cn) { // a text moved into the next field
        cn.szBirthYear = "199001";
        cn.szBirthMonth = "";
    });
    expectChanged([](auto &cn) { cn.byPhoto[IDCARD_PHOTO_SIZE - 1] = 1; });
    expectChanged([](auto &cn) { cn.fpInfoType = FP_INFO_ONE; });
}

TEST(IsCardKind, OnlyTheFourKindsAre)
{
    for (unsigned int kind = 0; kind <= 3; ++kind)
        EXPECT_TRUE(isCardKind(kind)) << kind;
    EXPECT_FALSE(isCardKind(4));
    EXPECT_FALSE(isCardKind(99));
}

} // namespace
