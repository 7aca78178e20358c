// The makers of the four kinds: every call that reaches the painter, in order, against the layout.

#include "api/image_output.h"
#include "render/card_fonts.h"
#include "render/makecardimg.h"
#include "render/tools.h"
#include "tests/render/card_sides.h"
#include "tests/render/sample_photo.h"
#include "tests/support/gui_environment.h"

#include <gmock/gmock.h>

#include <QFont>
#include <QGuiApplication>

namespace
{

std::string ideographs(int count)
{
    return QString(count, QChar(0x4e2d)).toStdString();
}

using Cn = _tagIDCARD_INFO_ALL_CN;
using Hmt = _tagIDCARD_INFO_ALL_HMT;
using Foreign2017 = _tagIDCARD_INFO_ALL_FOREIGN_2017;
using ForeignNew = _tagIDCARD_INFO_ALL_FOREIGN_NEW;

/** The record with another text. */
template <typename Record>
Record with(Record record, std::string Record::*field, const std::string &text)
{
    record.*field = text;
    return record;
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
    putSamplePhoto(record.byPhoto);
    const PaintingRecorder recorder;
    const QString base64 = maker(&record);
    return {recorder.painted(), base64};
}

Result residentFront(const Cn &r)
{
    return make(MakeCardImg::makeIDCardCNFrontBase64, r);
}
Result residentBack(const Cn &r)
{
    return make(MakeCardImg::makeIDCardCNBackBase64, r);
}
Result hmtFront(const Hmt &r)
{
    return make(MakeCardImg::makeIDCardHmtFrontBase64, r);
}
Result hmtBack(const Hmt &r)
{
    return make(MakeCardImg::makeIDCardHmtBackBase64, r);
}
Result foreign2017Front(const Foreign2017 &r)
{
    return make(MakeCardImg::makeIDCardF2017FrontBase64, r);
}
Result foreignNewFront(const ForeignNew &r)
{
    return make(MakeCardImg::makeIDCardFNewFrontBase64, r);
}

/** An application's default font while it lives. */
class DefaultFont
{
public:
    explicit DefaultFont(const QFont &font) { QGuiApplication::setFont(font); }
    ~DefaultFont() { QGuiApplication::setFont(m_before); }
    DefaultFont(const DefaultFont &) = delete;
    DefaultFont &operator=(const DefaultFont &) = delete;

private:
    const QFont m_before = QGuiApplication::font();
};

/** Default fonts as desktops and font dialogs give them. */
std::vector<QFont> fontsWithFaceOrFamilies()
{
    std::vector<QFont> fonts;
    for (const char *const face : {"Regular", "Bold"}) {
        fonts.emplace_back();
        fonts.back().setStyleName(QString::fromLatin1(face));
    }
#if QT_VERSION >= QT_VERSION_CHECK(5, 13, 0)
    fonts.emplace_back();
    fonts.back().setFamilies({QStringLiteral("DejaVu Serif"), QStringLiteral("DejaVu Sans Mono")});
#endif
    return fonts;
}

using testing::ElementsAre;

} // namespace

TEST(EverySide, Items_ArePaintedInOrderAtTheirPlaces)
{
    for (const CardSide &side : cardSides()) {
        SCOPED_TRACE(side.name);
        const PaintingRecorder recorder;
        EXPECT_EQ(decodedPicture(side.make(samplePhoto())).size(), side.size);
        std::vector<Painted> painted = recorder.painted();
        ASSERT_EQ(painted.size(), side.texts.size() + (side.photo ? 1 : 0));
        for (const Painted &one : painted)
            EXPECT_EQ(one.canvas, side.size);
        if (side.photo) {
            const auto photo = painted.end() - 2;
            expectPhoto(*photo, side.photo->box.x(), side.photo->box.y(),
                        side.photo->fitted(QSize(102, 126)));
            painted.erase(photo);
        }
        for (std::size_t i = 0; i < painted.size(); ++i)
            expectText(painted[i], side.texts[i]);
    }
    if (expectedDpi() == 96.0) {
        EXPECT_EQ(cardSides().front().size, QSize(325, 205));
    }
}

TEST(EverySide, FaceAndFamiliesOfTheDefaultFont_ChangeNoPicture)
{
    std::vector<QString> plain;
    for (const CardSide &side : cardSides())
        plain.push_back(side.make(samplePhoto()));
    for (const QFont &font : fontsWithFaceOrFamilies()) {
        const DefaultFont chosen(font);
        for (std::size_t i = 0; i < plain.size(); ++i) {
            const CardSide &side = cardSides()[i];
            EXPECT_TRUE(side.make(samplePhoto()) == plain[i])
                << side.name << " with " << font.toString().toStdString();
        }
    }
}

TEST(EverySide, StretchOfTheDefaultFont_IsPaintedAndMeasured)
{
    const auto widthOfTwelve = [] {
        return Tools::getTextPixelWidth(bodyFamily(), 9, QStringLiteral("12"));
    };
    const QString plain = cardSides().front().make(samplePhoto());
    const double plainWidth = widthOfTwelve();
    QFont stretched;
    stretched.setStretch(QFont::UltraExpanded);
    const DefaultFont chosen(stretched);
    EXPECT_FALSE(cardSides().front().make(samplePhoto()) == plain);
    EXPECT_GT(widthOfTwelve(), plainWidth);
}

TEST(ResidentFront, NameOfTwoCharacters_IsSpread)
{
    const Cn record = with(residentCard(), &Cn::szName, " 王五\t");
    EXPECT_EQ(residentFront(record).texts().front(), "王   五");
    EXPECT_EQ(hmtFront(with(permit(), &Hmt::szName, "王五 ")).texts().front(), "王   五");
}

TEST(ResidentFront, NameOfAnotherLength_IsOnlyTrimmed)
{
    for (const std::string name : {"王", "欧阳修", "阿迪力江", ""}) {
        const Cn record = with(residentCard(), &Cn::szName, "\t " + name + "  ");
        EXPECT_EQ(residentFront(record).texts().front(), name);
    }
}

TEST(ResidentFront, MonthAndDay_LoseALeadingZero)
{
    const auto expect = [](const char *month, const char *shownMonth, const char *day,
                           const char *shownDay) {
        auto record = residentCard();
        record.szBirthMonth = month;
        record.szBirthDay = day;
        const Result result = residentFront(record);
        expectText(result.painted[4], endingAt(shownMonth, 33.0, 23.8));
        expectText(result.painted[5], endingAt(shownDay, 41.0, 23.8));
    };
    expect(" 01 ", "1", "05", "5");
    expect("10", "10", "00", "0");
}

TEST(ResidentFront, AddressOfThirtyCharacters_StaysLargeAndALongerOneBecomesSmall)
{
    for (const auto &[characters, pt] : {std::pair(30, 9), std::pair(31, 8)}) {
        const Result result =
            residentFront(with(residentCard(), &Cn::szAddress, ideographs(characters)));
        for (int line = 0; line < 3; ++line) {
            const int length = line < 2 ? 11 : characters - 22;
            ExpectedText expected = belowTop(ideographs(length), 17.0, 28.0, pt);
            expected.y += line * (height(pt) + pixelsPerMm());
            expectText(result.painted[static_cast<std::size_t>(6 + line)], expected);
        }
    }
}

TEST(ResidentFront, AddressOfElevenCharacters_HasAnEmptySecondLine)
{
    EXPECT_THAT(residentFront(with(residentCard(), &Cn::szAddress, ideographs(11))).texts(),
                ElementsAre("林晓雨", "女", "汉", "1990", "12", "31", ideographs(11), "", "(photo)",
                            "990000199012314281"));
}

TEST(ResidentFront, Texts_AreNotTrimmedAndEndAtAZero)
{
    EXPECT_EQ(residentFront(with(residentCard(), &Cn::szAddress, " 云溪市 ")).painted[6].text,
              " 云溪市 ");
    EXPECT_EQ(
        residentFront(with(residentCard(), &Cn::szSex, std::string("男\0女", 7))).painted[1].text,
        "男");
}

TEST(ResidentBack, Validity_KeepsALongTermAndPadsShortDatesWithSpaces)
{
    const struct {
        const char *start, *end, *painted;
    } cases[] = {{"20200115", "长期", "2020.01.15 - 长期"},
                 {"20200115", " 长期  ", "2020.01.15 -  长期  "},
                 {"", "2040", "    .  . - 2040.  ."}};
    for (const auto &c : cases) {
        auto record = residentCard();
        record.szValidStart = c.start;
        record.szValidEnd = c.end;
        EXPECT_EQ(residentBack(record).texts().back(), c.painted);
    }
}

TEST(HmtFront, MonthAndDayWithoutZero_MoveToTheRight)
{
    auto record = permit();
    record.szBirthMonth = "07";
    record.szBirthDay = "09";
    const Result result = hmtFront(record);
    expectText(result.painted[3], {"7", 174, 136, BODY, 16});
    expectText(result.painted[4], {"9", 216, 136, BODY, 16});
}

TEST(HmtBack, Macao_HasTheBackOfHongKongAndTaiwanItsOwn)
{
    const QImage hongKong = decodedPicture(hmtBack(permit()).base64);
    const auto backOf = [](const char *number) {
        return decodedPicture(hmtBack(with(permit(), &Hmt::szID, number)).base64);
    };
    EXPECT_EQ(backOf("829999198511250010"), hongKong);
    EXPECT_NE(backOf("83").copy(0, 0, 494, 150), hongKong.copy(0, 0, 494, 150));
    EXPECT_EQ(hmtBack(with(permit(), &Hmt::szValidEnd, "长期")).painted[1].text,
              "2020.01.15 - 长期");
}

TEST(HmtBack, OtherPrefix_GivesNoPicture)
{
    for (const char *number : {"", "8", "11", "84", " 81", "8 1", "18"}) {
        EXPECT_FALSE(hmtFront(with(permit(), &Hmt::szID, number)).base64.isEmpty()) << number;
        const Result result = hmtBack(with(permit(), &Hmt::szID, number));
        EXPECT_EQ(result.base64, QString()) << number;
        EXPECT_TRUE(result.painted.empty()) << number;
    }
}

TEST(ForeignFronts, LongEnglishName_IsPaintedInChunksOfTwentyFive)
{
    const std::string name = std::string(25, 'A') + std::string(25, 'B') + std::string(10, 'C');
    const Result old = foreign2017Front(with(foreign2017Card(), &Foreign2017::szEnglishName, name));
    expectText(old.painted[0], {std::string(25, 'A'), 48, 51, BODY, 14, 50, 1.0});
    expectText(old.painted[1], {std::string(25, 'B'), 48, 69, BODY, 14, 50, 1.0});
    expectText(old.painted[2], {std::string(10, 'C'), 48, 87, BODY, 14, 50, 1.0});
    EXPECT_EQ(old.painted[3].text, "白英格");
    const Result now =
        foreignNewFront(with(foreignNewCard(), &ForeignNew::szEnglishName, std::string(26, 'A')));
    expectText(now.painted[0], {std::string(25, 'A'), 47, 74, BODY, 14, 50, 1.0});
    expectText(now.painted[1], {"A", 47, 92, BODY, 14, 50, 1.0});
    const Result none = foreign2017Front(with(foreign2017Card(), &Foreign2017::szEnglishName, ""));
    expectText(none.painted[0], {"", 48, 51, BODY, 14, 50, 1.0});
    EXPECT_EQ(none.painted.size(), 9U);
}

TEST(ForeignFronts, Texts_FollowTheirRules)
{
    const struct {
        std::string Foreign2017::*field;
        const char *text;
        std::size_t at; ///< which text
        const char *painted;
    } cases[] = {{&Foreign2017::szSex, "女", 2, "女 / F"},
                 {&Foreign2017::szSex, "男", 2, "男 / M"},
                 {&Foreign2017::szSex, "男  ", 2, "男 / M"},
                 {&Foreign2017::szSex, "男女", 2, "女 / F"},
                 {&Foreign2017::szSex, "未知", 2, "未知"},
                 {&Foreign2017::szSex, "", 2, ""},
                 {&Foreign2017::szSex, "X ", 2, "X "},
                 {&Foreign2017::szBirthYear, "", 3, ".06.05"},
                 {&Foreign2017::szBirthMonth, "", 3, "1984..05"},
                 {&Foreign2017::szBirthDay, "", 3, "1984.06."},
                 {&Foreign2017::szNationality, "SWE", 4, "瑞典 / SWE"},
                 {&Foreign2017::szNationality, "", 4, " / "},
                 {&Foreign2017::szValidEnd, "长期", 5, "2018.04.20 - 长期"},
                 {&Foreign2017::szReserved, "", 6, ""}};
    for (const auto &c : cases)
        EXPECT_EQ(foreign2017Front(with(foreign2017Card(), c.field, c.text)).painted[c.at].text,
                  c.painted);

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

TEST(ForeignBacks, BareTemplate_IsReturnedWithOrWithoutARecord)
{
    const PaintingRecorder recorder;
    auto old = foreign2017Card();
    auto now = foreignNewCard();
    const QString oldBack = MakeCardImg::makeIDCardF2017BackBase64(nullptr);
    const QString newBack = MakeCardImg::makeIDCardFNewBackBase64(nullptr);
    for (const QString &base64 : {oldBack, newBack})
        EXPECT_EQ(decodedPicture(base64).size(), QSize(494, 312));
    EXPECT_EQ(MakeCardImg::makeIDCardF2017BackBase64(&old), oldBack);
    EXPECT_EQ(MakeCardImg::makeIDCardFNewBackBase64(&now), newBack);
    EXPECT_TRUE(recorder.painted().empty());
}

TEST(AllKinds, BothPictures_AreMadeTheFrontFirst)
{
    Cn record = residentCard();
    putSamplePhoto(record.byPhoto);
    std::string front;
    std::string back;
    const PaintingRecorder recorder;
    makeImages(record, front, back);
    ASSERT_EQ(recorder.painted().size(), 11U);
    EXPECT_EQ(recorder.painted().front().text, record.szName);
    EXPECT_EQ(recorder.painted()[9].text, record.szDept);
}
