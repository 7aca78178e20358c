#include <algorithm>

#include <gmock/gmock.h>

#include <QJsonDocument>
#include <QRegularExpression>

#include "apps/card/card_output.h"
#include "tests/card/card_samples.h"
#include "tests/tool/tool_runner.h"

using namespace app;

namespace
{

QJsonValue inJson(const Card &card, const std::optional<QString> &folder, const char *part,
                  const char *key)
{
    return toJson(card, folder).value(QLatin1String(part)).toObject().value(QLatin1String(key));
}

TEST(CardJsonFiles, FileThatTheCardDoesNotHaveIsNotNamed)
{
    const Card card = samples::residentCard();
    EXPECT_TRUE(inJson(card, QStringLiteral("out"), "photo", "file").isNull());
    EXPECT_TRUE(inJson(card, QStringLiteral("out"), "fingerprints", "file").isNull());
}

TEST(CardJsonPhoto, FormatReportsWhatTheReaderDelivered)
{
    EXPECT_EQ(inJson(samples::residentCardWithEverything(), {}, "photo", "format").toString(),
              "bmp");
    auto records = samples::filledRecords();
    records->cn.byPhoto[3] = 9;
    EXPECT_EQ(inJson(Card(IDCARD_KIND_CN, *records), {}, "photo", "format").toString(),
              "compressed");
    records = samples::filledRecords();
    records->cn.byPhoto[2000] = 9;
    EXPECT_EQ(inJson(Card(IDCARD_KIND_CN, *records), {}, "photo", "format").toString(), "unknown");
}

TEST(CardJsonFingerprints, UnknownAmountIsNull)
{
    const Card card(IDCARD_KIND_CN, *std::make_unique<CardRecords>());
    EXPECT_TRUE(inJson(card, {}, "fingerprints", "count").isNull());
    EXPECT_TRUE(toJson(card, {}).value("fingerprints").toObject().contains("count"));
}

TEST(Json, TextOfAnyCharacters_ComesBackAsItIsAndALineIsOne)
{
    auto records = samples::filledRecords();
    for (const char *const text :
         {"one\ntwo\r\nthree", "two  blanks", " \ttab", R"("quotes" and \u0041 \)",
          "a\x01z\x1b[31m", "\xE2\x80\xA8line \t\xC2\xA0\xE3\x80\x80",
          "\xF0\xA0\xAE\xB7 \xF0\x9F\x98\x80", R"({"a": [1,  2]})"}) {
        records->cn.szName = text;
        records->cn.szAddress = text;
        const QJsonObject card = toJson(Card(IDCARD_KIND_CN, *records), {});
        const QByteArray line = jsonLine(card);
        EXPECT_EQ(line.indexOf('\n'), line.size() - 1);
        for (const QByteArray &json : {line, indentedJson(card)})
            EXPECT_EQ(QJsonDocument::fromJson(json).object(), card) << json.toStdString();
        const QRegularExpression padding("\\s+$", QRegularExpression::UseUnicodePropertiesOption);
        EXPECT_EQ(card["name"].toString(), QString::fromUtf8(text).remove(padding)) << text;
    }
}

TEST(CardTable, ResidentCardIsLaidOutForPeople)
{
    EXPECT_EQ(toTable(samples::residentCard(), std::nullopt).toStdString(),
              "Kind               Resident identity card\n"
              "Name               王小明\n"
              "Sex                男\n"
              "Ethnic group       汉\n"
              "Date of birth      1990-01-02\n"
              "Address            示例省示例市示例路1号\n"
              "Identity number    000000199001020017\n"
              "Issuing authority  示例市公安局\n"
              "Valid from         2015-02-03\n"
              "Valid to           长期\n"
              "Photo              none\n"
              "Fingerprints       none\n"
              "Note               The check digit of the number is wrong.\n");
}

TEST(CardTable, SavedFilesAreListed)
{
    const QString table = toTable(samples::residentCardWithEverything(), QStringLiteral("visitor"));
    EXPECT_TRUE(table.endsWith(QStringLiteral("Fingerprints       2\n"
                                              "Note               The check digit of the number "
                                              "is wrong.\n"
                                              "Saved as           visitor/card.json\n"
                                              "                   visitor/photo.bmp\n"
                                              "                   visitor/fingerprints.dat\n"
                                              "                   visitor/front.jpg\n"
                                              "                   visitor/back.jpg\n")))
        << table.toStdString();
}

TEST(CardTable, IncompleteDatesAreShownAsTheyAre)
{
    auto records = samples::filledRecords();
    records->cn.szBirthMonth = "";
    records->cn.szBirthDay = "";
    records->cn.szValidStart = "201502";
    const QString table = toTable(Card(IDCARD_KIND_CN, *records), std::nullopt);
    EXPECT_TRUE(table.contains(QStringLiteral("Date of birth      1990\n")));
    EXPECT_TRUE(table.contains(QStringLiteral("Valid from         201502\n")));
}

TEST(CardTable, FieldCannotSteerTheTerminal)
{
    auto records = samples::filledRecords();
    records->cn.szName = "\x1b[31mred\r\nSex  forged";
    const QString table = toTable(Card(IDCARD_KIND_CN, *records), std::nullopt);
    EXPECT_FALSE(table.contains(QChar(0x1B)));
    EXPECT_EQ(table.count(QLatin1Char('\n')), 13); // with a note
}

TEST(CardTable, EveryFieldThatTheRoadDeliversIsShown)
{
    for (const unsigned int kind : {0U, 1U, 2U, 3U}) {
        const Card card = samples::cardOf(kind);
        const QString table = toTable(card, std::nullopt);
        for (const CardField &field : card.fields()) {
            EXPECT_EQ(table.contains(QString::fromUtf8(field.label)), !field.content.isEmpty())
                << field.key;
        }
    }
}

/** The labels of a card's rows of this sort. */
std::vector<std::string> labelsOf(const Card &card, CardRow::Sort sort)
{
    std::vector<std::string> labels;
    for (const CardRow &row : cardRows(card)) {
        if (row.sort == sort)
            labels.push_back(row.label.toStdString());
    }
    return labels;
}

TEST(CardRows, NamesNumbersBirthAndAddressOfEveryKindArePersonal)
{
    using testing::ElementsAre;
    const auto personal = [](unsigned int kind) {
        return labelsOf(samples::cardOf(kind), CardRow::Sort::PERSONAL);
    };
    EXPECT_THAT(personal(IDCARD_KIND_CN),
                ElementsAre("Name", "Date of birth", "Address", "Identity number"));
    EXPECT_THAT(personal(IDCARD_KIND_HMT), ElementsAre("Name", "Date of birth", "Address",
                                                       "Identity number", "Travel permit number"));
    for (const unsigned int foreign : {IDCARD_KIND_FOREIGN_2017, IDCARD_KIND_FOREIGN_NEW})
        EXPECT_THAT(personal(foreign),
                    ElementsAre("Name", "Chinese name", "Date of birth", "Card number"));
}

TEST(CardRows, PhotoHasARowOfItsOwnSortAndFingerprintsAppearWhereTheKindHasThem)
{
    for (const unsigned int kind : {0U, 1U, 2U, 3U}) {
        const Card card = samples::cardOf(kind);
        EXPECT_THAT(labelsOf(card, CardRow::Sort::PHOTO), testing::ElementsAre("Photo"));
        const auto plain = labelsOf(card, CardRow::Sort::PLAIN);
        EXPECT_EQ(std::count(plain.begin(), plain.end(), "Fingerprints"),
                  kind == IDCARD_KIND_CN ? 1 : 0);
    }
}

TEST(CardRows, FieldThatSaysNothingIsEmptyAndShownAsAHyphen)
{
    auto records = samples::filledRecords();
    records->foreign2017.szChineseName = " ";
    const Card card(IDCARD_KIND_FOREIGN_2017, *records);
    const QVector<CardRow> rows = cardRows(card);
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [](const CardRow &each) { return each.label == "Chinese name"; });
    ASSERT_NE(row, rows.end());
    EXPECT_EQ(row->content, "");
    EXPECT_EQ(row->whole, "");
    EXPECT_EQ(shownContent(*row), "-");
    EXPECT_TRUE(toTable(card, std::nullopt).contains(QRegularExpression("Chinese name +-\n")));
}

TEST(CardRows, TextThatTheDecoderCutIsAlsoThereWhole)
{
    const simulator::CardDescription described = builtInCard("resident-longest-texts");
    const Card card = samples::cardWithCutTexts();
    QStringList cut;
    for (const CardRow &row : cardRows(card)) {
        if (row.whole != row.content) {
            cut << row.whole;
            EXPECT_TRUE(row.whole.startsWith(row.content)) << row.label.toStdString();
        }
    }
    EXPECT_EQ(cut, QStringList({described.name, described.address, described.issuingAuthority}));
    EXPECT_EQ(holderName(card), described.name);
}

TEST(HolderNumber, IsThatOfTheDocument)
{
    for (const unsigned int kind : {0U, 1U, 2U, 3U}) {
        const Card card = samples::cardOf(kind);
        const QString number = holderNumber(card);
        EXPECT_FALSE(number.isEmpty());
        EXPECT_EQ(toJson(card, std::nullopt)["idNumber"].toString(), number);
    }
}

TEST(HolderName, IsTheFirstNameThatIsNotBlank)
{
    EXPECT_EQ(holderName(samples::residentCard()).toStdString(), "王小明");
    EXPECT_EQ(holderName(samples::cardOf(IDCARD_KIND_FOREIGN_2017)).toStdString(), "DOE, JANE");
    auto records = samples::filledRecords();
    records->foreign2017.szEnglishName = "  ";
    EXPECT_EQ(holderName(Card(IDCARD_KIND_FOREIGN_2017, *records)).toStdString(), "简多");
    records->foreign2017.szChineseName.clear();
    EXPECT_TRUE(holderName(Card(IDCARD_KIND_FOREIGN_2017, *records)).isEmpty());
}

TEST(MissingPhotoNote, IsThatOfACompressedPhotoAlone)
{
    EXPECT_TRUE(missingPhotoNote(samples::residentCardWithEverything()).isEmpty());
    auto records = samples::filledRecords();
    records->cn.byPhoto[0] = 9;
    EXPECT_TRUE(
        missingPhotoNote(Card(IDCARD_KIND_CN, *records)).contains(QStringLiteral("compressed")));
}

TEST(MissingPictureNote, NumberOfAPermitIsTheReasonForItsBackOnly)
{
    for (const CardSide side : {CardSide::FRONT, CardSide::BACK})
        EXPECT_TRUE(missingPictureNote(samples::residentCardWithEverything(), side).isEmpty());
    const Card permit(IDCARD_KIND_HMT, *samples::filledRecords(), {"front", {}});
    EXPECT_TRUE(missingPictureNote(permit, CardSide::BACK).contains(QStringLiteral("81, 82, 83")));

    const Card unpainted = samples::cardOf(IDCARD_KIND_HMT);
    const Card resident(IDCARD_KIND_CN, *samples::filledRecords(), {"front", {}});
    for (const QString &note : {missingPictureNote(unpainted, CardSide::FRONT),
                                missingPictureNote(unpainted, CardSide::BACK),
                                missingPictureNote(resident, CardSide::BACK)})
        EXPECT_TRUE(note.endsWith(QStringLiteral("the library painted none")))
            << note.toStdString();
}

} // namespace
