// The makers of the four kinds: every call that reaches the painter, in order, against the layout.

#include "api/image_output.h"
#include "render/makecardimg.h"
#include "tests/render/picture_matchers.h"
#include "tests/render/sample_photo.h"
#include "tests/support/gui_environment.h"

#include <gmock/gmock.h>

#include <QFontMetrics>
#include <QStringList>

namespace
{

/** Pixels for millimetres on the card. */
double px(double mm)
{
    return mm * pixelsPerMm();
}

/** Height in pixels of a font of `pt` points. */
double height(int pt)
{
    return pt * 0.35277777777777775 * pixelsPerMm();
}

int size(int pt)
{
    return static_cast<int>(height(pt));
}

/** How far to the left of its right end a text of 9 points begins. */
double rightAligned(const QString &text)
{
    QFont font;
    font.setFamily(QString::fromUtf8(BODY));
    font.setPixelSize(size(9));
    return 0.5 * QFontMetrics(font).boundingRect(text).width() + 9;
}

std::string ideographs(int count)
{
    return QString(count, QChar(0x4e2d)).toStdString();
}

/** Records with a value in every field; the tests change what they are about. */
_tagIDCARD_INFO_ALL_CN residentCard()
{
    _tagIDCARD_INFO_ALL_CN r{};
    r.szName = "林晓雨";
    r.szSex = "女";
    r.szNation = "汉";
    r.szBirthYear = "1990";
    r.szBirthMonth = "12";
    r.szBirthDay = "31";
    r.szAddress = "云溪市柳荫路12号";
    r.szID = "990000199012314281";
    r.szDept = "云溪市公安局";
    r.szValidStart = "20200115";
    r.szValidEnd = "20400115";
    putSamplePhoto(r.byPhoto);
    return r;
}

_tagIDCARD_INFO_ALL_HMT hmtPermit()
{
    _tagIDCARD_INFO_ALL_HMT r{};
    r.szName = "陈家明";
    r.szSex = "男";
    r.szBirthYear = "1985";
    r.szBirthMonth = "11";
    r.szBirthDay = "25";
    r.szAddress = ideographs(23);
    r.szID = "819999198511250010";
    r.szDept = "云溪市公安局";
    r.szValidStart = "20200115";
    r.szValidEnd = "20250115";
    r.szPassNumber = "H00000001";
    r.szReserved = "never drawn";
    putSamplePhoto(r.byPhoto);
    return r;
}

_tagIDCARD_INFO_ALL_FOREIGN_2017 foreign2017Card()
{
    _tagIDCARD_INFO_ALL_FOREIGN_2017 r{};
    r.szEnglishName = "BERGSTROM, INGRID";
    r.szSex = "女";
    r.szID = "SWE990084060536";
    r.szNationality = "瑞典";
    r.szChineseName = "白英格";
    r.szValidStart = "20180420";
    r.szValidEnd = "20280420";
    r.szBirthYear = "1984";
    r.szBirthMonth = "06";
    r.szBirthDay = "05";
    r.szReserved = "the host's own";
    putSamplePhoto(r.byPhoto);
    return r;
}

_tagIDCARD_INFO_ALL_FOREIGN_NEW foreignNewCard()
{
    _tagIDCARD_INFO_ALL_FOREIGN_NEW r{};
    r.szChineseName = "艾米";
    r.szSex = "男";
    r.szCardExtra = "01";
    r.szBirthYear = "1979";
    r.szBirthMonth = "01";
    r.szBirthDay = "09";
    r.szEnglishName = "MILLER, EMIL";
    r.szID = "999840197901090017";
    r.szValidStart = "20231201";
    r.szValidEnd = "20331201";
    r.szNationality = "美国";
    putSamplePhoto(r.byPhoto);
    return r;
}

/** What a maker painted, and the picture it returned. */
struct Result {
    std::vector<Painted> painted;
    QString base64;

    std::vector<std::string> texts() const
    {
        std::vector<std::string> all;
        for (const Painted &p : painted)
            all.push_back(p.isText ? p.text : "(photo)");
        return all;
    }

    const Painted &text(const std::string &text) const
    {
        for (const Painted &p : painted)
            if (p.isText && p.text == text)
                return p;
        ADD_FAILURE() << text << " was not painted";
        return painted.front();
    }
};

template <typename Record>
Result make(QString (*maker)(Record *), Record record)
{
    const PaintingRecorder recorder;
    const QString base64 = maker(&record);
    return {recorder.painted(), base64};
}

Result residentFront(const _tagIDCARD_INFO_ALL_CN &r)
{
    return make(MakeCardImg::makeIDCardCNFrontBase64, r);
}
Result residentBack(const _tagIDCARD_INFO_ALL_CN &r)
{
    return make(MakeCardImg::makeIDCardCNBackBase64, r);
}
Result hmtFront(const _tagIDCARD_INFO_ALL_HMT &r)
{
    return make(MakeCardImg::makeIDCardHmtFrontBase64, r);
}
Result hmtBack(const _tagIDCARD_INFO_ALL_HMT &r)
{
    return make(MakeCardImg::makeIDCardHmtBackBase64, r);
}
Result foreign2017Front(const _tagIDCARD_INFO_ALL_FOREIGN_2017 &r)
{
    return make(MakeCardImg::makeIDCardF2017FrontBase64, r);
}
Result foreignNewFront(const _tagIDCARD_INFO_ALL_FOREIGN_NEW &r)
{
    return make(MakeCardImg::makeIDCardFNewFrontBase64, r);
}

const QSize TEMPLATE_SIZE(494, 312);

QSize realSize()
{
    return {static_cast<int>(85.6 * pixelsPerMm() + 2.0),
            static_cast<int>(54.0 * pixelsPerMm() + 1.0)};
}

using testing::ElementsAre;

} // namespace

TEST(ResidentFront, EveryItem_IsPaintedInOrderAtItsPlace)
{
    const Result result = residentFront(residentCard());
    ASSERT_EQ(result.painted.size(), 9U);
    const auto &p = result.painted;
    expectText(p[0], {"林晓雨", px(17.0), px(10.8), BODY, size(11)});
    expectText(p[1], {"女", px(17.0), px(17.3), BODY, size(9)});
    expectText(p[2], {"汉", px(34.0), px(17.3), BODY, size(9)});
    expectText(p[3], {"1990", px(17.0), px(23.8), BODY, size(9)});
    expectText(p[4], {"12", px(33.0) - rightAligned("12"), px(23.8), BODY, size(9)});
    expectText(p[5], {"31", px(41.0) - rightAligned("31"), px(23.8), BODY, size(9)});
    expectText(p[6], {"云溪市柳荫路12号", px(17.0), px(28.0) + height(9), BODY, size(9)});
    // The photo fills its box in one direction and keeps its proportions in the other.
    const QSize box(static_cast<int>(px(26.0)), static_cast<int>(px(32.0)));
    expectPhoto(p[7], px(54.0), px(8.0), QSize(102, 126).scaled(box, Qt::KeepAspectRatio));
    expectText(p[8], {"990000199012314281", px(30.0), px(48.0), NUMBER, size(12), 63, 0.48});
    for (const Painted &painted : p)
        EXPECT_EQ(painted.canvas, realSize());
}

TEST(ResidentFront, Picture_HasTheSizeOfARealCardAndTwoPixelsMore)
{
    EXPECT_EQ(decodedPicture(residentFront(residentCard()).base64).size(), realSize());
    if (expectedDpi() == 96.0) {
        EXPECT_EQ(realSize(), QSize(325, 205));
    }
}

TEST(ResidentFront, NameOfTwoCharacters_IsSpread)
{
    auto record = residentCard();
    record.szName = " 王五\t";
    EXPECT_EQ(residentFront(record).texts().front(), "王   五");
}

TEST(ResidentFront, NameOfAnotherLength_IsOnlyTrimmed)
{
    auto record = residentCard();
    for (const char *name : {"王", "欧阳修", "阿迪力江", ""}) {
        record.szName = std::string("\t ") + name + "  ";
        EXPECT_EQ(residentFront(record).texts().front(), name);
    }
}

TEST(ResidentFront, MonthAndDay_LoseALeadingZero)
{
    auto record = residentCard();
    record.szBirthMonth = " 01 ";
    record.szBirthDay = "05";
    const Result result = residentFront(record);
    expectText(result.painted[4], {"1", px(33.0) - rightAligned("1"), px(23.8), BODY, size(9)});
    expectText(result.painted[5], {"5", px(41.0) - rightAligned("5"), px(23.8), BODY, size(9)});
}

TEST(ResidentFront, MonthWithoutLeadingZero_Stays)
{
    auto record = residentCard();
    record.szBirthMonth = "10";
    record.szBirthDay = "00";
    const Result result = residentFront(record);
    EXPECT_EQ(result.painted[4].text, "10");
    EXPECT_EQ(result.painted[5].text, "0");
}

TEST(ResidentFront, AddressOfThirtyCharacters_StaysLarge)
{
    auto record = residentCard();
    record.szAddress = ideographs(30);
    const Result result = residentFront(record);
    const double step = height(9) + pixelsPerMm();
    expectText(result.painted[6], {ideographs(11), px(17.0), height(9) + px(28.0), BODY, size(9)});
    expectText(result.painted[7],
               {ideographs(11), px(17.0), height(9) + px(28.0) + step, BODY, size(9)});
    expectText(result.painted[8],
               {ideographs(8), px(17.0), height(9) + px(28.0) + 2 * step, BODY, size(9)});
}

TEST(ResidentFront, AddressOfThirtyOneCharacters_BecomesSmall)
{
    auto record = residentCard();
    record.szAddress = ideographs(31);
    const Result result = residentFront(record);
    const double step = height(8) + pixelsPerMm();
    expectText(result.painted[6], {ideographs(11), px(17.0), height(8) + px(28.0), BODY, size(8)});
    expectText(result.painted[8],
               {ideographs(9), px(17.0), height(8) + px(28.0) + 2 * step, BODY, size(8)});
}

TEST(ResidentFront, AddressOfElevenCharacters_HasAnEmptySecondLine)
{
    auto record = residentCard();
    record.szAddress = ideographs(11);
    EXPECT_THAT(residentFront(record).texts(),
                ElementsAre("林晓雨", "女", "汉", "1990", "12", "31", ideographs(11), "", "(photo)",
                            "990000199012314281"));
}

TEST(ResidentFront, AddressWithBlanksAround_IsNotTrimmed)
{
    auto record = residentCard();
    record.szAddress = " 云溪市 ";
    EXPECT_EQ(residentFront(record).painted[6].text, " 云溪市 ");
}

TEST(ResidentFront, TextAfterAZeroCharacter_IsNotPainted)
{
    auto record = residentCard();
    record.szSex = std::string("男\0女", 7);
    EXPECT_EQ(residentFront(record).painted[1].text, "男");
}

TEST(ResidentBack, EveryItem_IsPaintedInOrderAtItsPlace)
{
    const Result result = residentBack(residentCard());
    ASSERT_EQ(result.painted.size(), 2U);
    expectText(result.painted[0], {"云溪市公安局", px(36.0), px(38.3) + height(9), BODY, size(9)});
    expectText(result.painted[1],
               {"2020.01.15 - 2040.01.15", px(36.0), px(45.3) + height(9), BODY, size(9)});
    EXPECT_EQ(decodedPicture(result.base64).size(), realSize());
}

TEST(ResidentBack, LongTermEnd_IsKeptAsItIs)
{
    auto record = residentCard();
    record.szValidEnd = "长期";
    EXPECT_EQ(residentBack(record).texts().back(), "2020.01.15 - 长期");
    record.szValidEnd = " 长期  ";
    EXPECT_EQ(residentBack(record).texts().back(), "2020.01.15 -  长期  ");
}

TEST(ResidentBack, ShortDates_ArePaddedWithSpacesByTheInsertions)
{
    auto record = residentCard();
    record.szValidStart = "";
    record.szValidEnd = "2040";
    EXPECT_EQ(residentBack(record).texts().back(), "    .  . - 2040.  .");
}

TEST(HmtFront, EveryItem_IsPaintedInOrderAtItsPlace)
{
    const Result result = hmtFront(hmtPermit());
    ASSERT_EQ(result.painted.size(), 10U);
    const auto &p = result.painted;
    expectText(p[0], {"陈家明", 98, 64, BODY, 18});
    expectText(p[1], {"男", 98, 100, BODY, 14});
    expectText(p[2], {"1985", 98, 136, BODY, 16});
    expectText(p[3], {"11", 171, 136, BODY, 16});
    expectText(p[4], {"25", 212, 136, BODY, 16});
    expectText(p[5], {ideographs(11), 98, 174, BODY, 16, 50, 2.0});
    expectText(p[6], {ideographs(11), 98, 198, BODY, 16, 50, 2.0});
    expectText(p[7], {ideographs(1), 98, 222, BODY, 16, 50, 2.0});
    expectPhoto(p[8], 310, 53, QSize(102, 126).scaled(140, 210, Qt::KeepAspectRatio));
    EXPECT_EQ(p[8].pixmap.width(), 140);
    expectText(p[9], {"819999198511250010", 175, 269, NUMBER, 19, 63, 3.0});
    EXPECT_EQ(decodedPicture(result.base64).size(), TEMPLATE_SIZE);
}

TEST(HmtFront, MonthAndDayWithoutZero_MoveToTheRight)
{
    auto record = hmtPermit();
    record.szBirthMonth = "07";
    record.szBirthDay = "09";
    const Result result = hmtFront(record);
    expectText(result.painted[3], {"7", 174, 136, BODY, 16});
    expectText(result.painted[4], {"9", 216, 136, BODY, 16});
}

TEST(HmtFront, NameOfTwoCharacters_IsSpread)
{
    auto record = hmtPermit();
    record.szName = "王五 ";
    EXPECT_EQ(hmtFront(record).texts().front(), "王   五");
}

TEST(HmtFront, WhiteOfThePhoto_StaysWhite)
{
    const QImage picture = decodedPicture(hmtFront(hmtPermit()).base64);
    EXPECT_GT(qGray(picture.pixel(310 + 8, 53 + 8)), 250) << "the photo's own background";
}

TEST(HmtFront, UnknownPrefix_IsPaintedAllTheSame)
{
    auto record = hmtPermit();
    record.szID = "110000198511250010";
    EXPECT_FALSE(hmtFront(record).base64.isEmpty());
}

TEST(HmtBack, HongKongAndMacao_HaveTheirTemplateAndLines)
{
    for (const char *number : {"819999198511250010", "829999198511250010"}) {
        auto record = hmtPermit();
        record.szID = number;
        const Result result = hmtBack(record);
        ASSERT_EQ(result.painted.size(), 3U);
        expectText(result.painted[0], {"云溪市公安局", 223, 224, BODY, 14});
        expectText(result.painted[1], {"2020.01.15 - 2025.01.15", 223, 247, BODY, 14});
        expectText(result.painted[2], {"H00000001", 223, 268, BODY, 14});
        EXPECT_EQ(decodedPicture(result.base64).size(), TEMPLATE_SIZE);
    }
}

TEST(HmtBack, Taiwan_StandsOnePixelHigher)
{
    auto record = hmtPermit();
    record.szID = "83";
    record.szValidEnd = "长期";
    const Result result = hmtBack(record);
    ASSERT_EQ(result.painted.size(), 3U);
    expectText(result.painted[0], {"云溪市公安局", 223, 223, BODY, 14});
    expectText(result.painted[1], {"2020.01.15 - 长期", 223, 246, BODY, 14});
    expectText(result.painted[2], {"H00000001", 223, 267, BODY, 14});
}

TEST(HmtBack, TaiwanAndHongKong_HaveDifferentTemplates)
{
    auto record = hmtPermit();
    record.szDept = record.szPassNumber = "";
    record.szID = "81";
    const QImage hongKong = decodedPicture(hmtBack(record).base64);
    record.szID = "83";
    const QImage taiwan = decodedPicture(hmtBack(record).base64);
    EXPECT_NE(hongKong.copy(0, 0, 494, 150), taiwan.copy(0, 0, 494, 150));
}

TEST(HmtBack, OtherPrefix_GivesNoPicture)
{
    auto record = hmtPermit();
    for (const char *number : {"", "8", "11", "84", " 81", "8 1", "18"}) {
        record.szID = number;
        const Result result = hmtBack(record);
        EXPECT_EQ(result.base64, QString()) << number;
        EXPECT_TRUE(result.painted.empty()) << number;
    }
}

TEST(Foreign2017Front, EveryItem_IsPaintedInOrderAtItsPlace)
{
    const Result result = foreign2017Front(foreign2017Card());
    ASSERT_EQ(result.painted.size(), 9U);
    const auto &p = result.painted;
    expectText(p[0], {"BERGSTROM, INGRID", 48, 51, BODY, 14, 50, 1.0});
    expectText(p[1], {"白英格", 48, 89, BODY, 14, 50, 1.0});
    expectText(p[2], {"女 / F", 48, 125, BODY, 14, 50, 1.0});
    expectText(p[3], {"1984.06.05", 154, 125, BODY, 14, 50, 1.0});
    expectText(p[4], {" / 瑞典", 48, 166, BODY, 14, 50, 1.0});
    expectText(p[5], {"2018.04.20 - 2028.04.20", 48, 203, BODY, 14, 50, 1.0});
    expectText(p[6], {"the host's own", 48, 243, BODY, 14, 50, 1.0});
    expectPhoto(p[7], 316, 58, QSize(102, 126).scaled(140, 210, Qt::KeepAspectRatio));
    expectText(p[8], {"SWE990084060536", 154, 265, NUMBER, 19, 63, 3.0});
    EXPECT_EQ(decodedPicture(result.base64).size(), TEMPLATE_SIZE);
}

TEST(Foreign2017Front, LongEnglishName_IsPaintedInChunksOfTwentyFive)
{
    auto record = foreign2017Card();
    record.szEnglishName = std::string(25, 'A') + std::string(25, 'B') + std::string(10, 'C');
    const Result result = foreign2017Front(record);
    expectText(result.painted[0], {std::string(25, 'A'), 48, 51, BODY, 14, 50, 1.0});
    expectText(result.painted[1], {std::string(25, 'B'), 48, 69, BODY, 14, 50, 1.0});
    expectText(result.painted[2], {std::string(10, 'C'), 48, 87, BODY, 14, 50, 1.0});
    EXPECT_EQ(result.painted[3].text, "白英格");
}

TEST(Foreign2017Front, EmptyEnglishName_IsOneEmptyChunk)
{
    auto record = foreign2017Card();
    record.szEnglishName = "";
    const Result result = foreign2017Front(record);
    expectText(result.painted[0], {"", 48, 51, BODY, 14, 50, 1.0});
    EXPECT_EQ(result.painted.size(), 9U);
}

TEST(Foreign2017Front, Sex_IsBilingualWhereItIsKnown)
{
    const struct {
        const char *sex;
        const char *painted;
    } cases[] = {{"女", "女 / F"}, {"男", "男 / M"}, {"男  ", "男 / M"}, {"男女", "女 / F"},
                 {"未知", "未知"}, {"", ""},         {"X ", "X "}};
    for (const auto &c : cases) {
        auto record = foreign2017Card();
        record.szSex = c.sex;
        EXPECT_EQ(foreign2017Front(record).painted[2].text, c.painted);
    }
}

TEST(Foreign2017Front, NationalityCode_IsPaintedBehindTheName)
{
    auto record = foreign2017Card();
    record.szNationality = "SWE";
    EXPECT_EQ(foreign2017Front(record).painted[4].text, "瑞典 / SWE");
    record.szNationality = "";
    EXPECT_EQ(foreign2017Front(record).painted[4].text, " / ");
}

TEST(Foreign2017Front, LongTermEnd_IsKeptAsItIs)
{
    auto record = foreign2017Card();
    record.szValidEnd = "长期";
    EXPECT_EQ(foreign2017Front(record).painted[5].text, "2018.04.20 - 长期");
}

TEST(Foreign2017Front, ShortBirthParts_AreJoinedAllTheSame)
{
    auto record = foreign2017Card();
    record.szBirthYear = record.szBirthMonth = record.szBirthDay = "";
    record.szReserved = "";
    EXPECT_EQ(foreign2017Front(record).painted[3].text, "..");
    EXPECT_EQ(foreign2017Front(record).painted[6].text, "");
}

TEST(ForeignNewFront, EveryItem_IsPaintedInOrderAtItsPlace)
{
    const Result result = foreignNewFront(foreignNewCard());
    ASSERT_EQ(result.painted.size(), 8U);
    const auto &p = result.painted;
    expectText(p[0], {"MILLER, EMIL", 47, 74, BODY, 14, 50, 1.0});
    expectText(p[1], {"艾米", 47, 112, BODY, 14, 50, 1.0});
    expectText(p[2], {"男 / M", 47, 152, BODY, 14, 50, 1.0});
    expectText(p[3], {"1979.01.09", 153, 152, BODY, 14, 50, 1.0});
    expectText(p[4], {" / 美国", 47, 195, BODY, 14, 50, 1.0});
    expectText(p[5], {"2023.12.01 - 2033.12.01", 47, 242, BODY, 14, 50, 1.0});
    expectPhoto(p[6], 315, 58, QSize(102, 126).scaled(140, 210, Qt::KeepAspectRatio));
    expectText(p[7], {"999840197901090017", 153, 271, NUMBER, 19, 63, 3.0});
    EXPECT_EQ(decodedPicture(result.base64).size(), TEMPLATE_SIZE);
}

TEST(ForeignNewFront, LongEnglishName_IsPaintedInTwoChunks)
{
    auto record = foreignNewCard();
    record.szEnglishName = std::string(26, 'A');
    const Result result = foreignNewFront(record);
    expectText(result.painted[0], {std::string(25, 'A'), 47, 74, BODY, 14, 50, 1.0});
    expectText(result.painted[1], {"A", 47, 92, BODY, 14, 50, 1.0});
}

TEST(ForeignNewFront, SexNationalityAndValidity_FollowTheSharedRules)
{
    auto record = foreignNewCard();
    record.szSex = "未说明";
    record.szNationality = "USA";
    record.szValidStart = "2023";
    record.szValidEnd = "长期";
    const Result result = foreignNewFront(record);
    EXPECT_EQ(result.painted[2].text, "未说明");
    EXPECT_EQ(result.painted[4].text, "美国 / USA");
    EXPECT_EQ(result.painted[5].text, "2023.  . - 长期");
}

TEST(ForeignFronts, WhiteOfThePhoto_LetsTheCardShowThrough)
{
    auto record = foreignNewCard();
    const QImage with = decodedPicture(foreignNewFront(record).base64);
    std::fill(std::begin(record.byPhoto), std::end(record.byPhoto), static_cast<unsigned char>(0));
    const QImage without = decodedPicture(foreignNewFront(record).base64);
    const QColor a = with.pixelColor(315 + 8, 58 + 8);
    const QColor b = without.pixelColor(315 + 8, 58 + 8);
    EXPECT_NEAR(a.red(), b.red(), 6);
    EXPECT_NEAR(a.green(), b.green(), 6);
    EXPECT_NEAR(a.blue(), b.blue(), 6);
}

TEST(ForeignBacks, BareTemplate_IsReturnedWithoutARecord)
{
    for (const QString &base64 : {MakeCardImg::makeIDCardF2017BackBase64(nullptr),
                                  MakeCardImg::makeIDCardFNewBackBase64(nullptr)})
        EXPECT_EQ(decodedPicture(base64).size(), TEMPLATE_SIZE);
}

TEST(ForeignBacks, Record_IsNeitherPaintedNorChanged)
{
    const PaintingRecorder recorder;
    auto record = foreign2017Card();
    EXPECT_EQ(MakeCardImg::makeIDCardF2017BackBase64(&record),
              MakeCardImg::makeIDCardF2017BackBase64(nullptr));
    EXPECT_TRUE(recorder.painted().empty());
}

TEST(AllKinds, SameRecord_GivesTheSamePictureEveryTime)
{
    EXPECT_EQ(residentFront(residentCard()).base64, residentFront(residentCard()).base64);
    EXPECT_EQ(hmtFront(hmtPermit()).base64, hmtFront(hmtPermit()).base64);
}

TEST(AllKinds, BothPictures_AreMadeTheFrontFirst)
{
    _tagIDCARD_INFO_ALL_CN record = residentCard();
    std::string front;
    std::string back;
    const PaintingRecorder recorder;
    makeImages(record, front, back);
    ASSERT_EQ(recorder.painted().size(), 11U);
    EXPECT_EQ(recorder.painted().front().text, record.szName);
    EXPECT_EQ(recorder.painted()[9].text, record.szDept);
}
