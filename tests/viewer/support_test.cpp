// What stands beside the window in apps/: the models of its tables, and the size of a millimetre.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <QImage>

#include "apps/card_view/card_table.h"
#include "apps/card_view/true_size.h"
#include "apps/viewer/history_csv.h"
#include "tests/card/card_samples.h"
#include "tests/tool/tool_runner.h"

using namespace app;
using testing::Contains;
using testing::Not;

namespace
{

const QString COVER = QString(8, QChar(0x2022));

CardPointer residentCard()
{
    return std::make_shared<const Card>(samples::residentCardWithEverything());
}

QString text(const QStandardItemModel &model, int row, int column)
{
    return model.index(row, column).data().toString();
}

/** A column of a table, from above. */
std::vector<std::string> column(const QStandardItemModel &model, int number)
{
    std::vector<std::string> texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts.push_back(text(model, row, number).toStdString());
    return texts;
}

TEST(CardTable, WithoutACard_IsEmpty)
{
    CardTable table;
    table.setCard(residentCard());
    EXPECT_EQ(table.rowCount(), 11);
    table.setCard(nullptr);
    EXPECT_EQ(table.rowCount(), 0);
}

TEST(CardTable, Photo_HasNoRowBecauseItIsSeen)
{
    CardTable table;
    table.setCard(residentCard());
    EXPECT_THAT(column(table, 0), testing::AllOf(Contains("Fingerprints"), Not(Contains("Photo"))));
}

TEST(CardTable, ToolTip_SaysWhatTheCellDoesCoveredOrNot)
{
    CardTable table;
    CardHistory history;
    table.setCard(residentCard());
    history.add(residentCard(), QDateTime::currentDateTime());
    for (const bool isCovered : {false, true, false}) {
        table.setCovered(isCovered);
        history.setCovered(isCovered);
        for (int row = 0; row < table.rowCount(); ++row)
            EXPECT_EQ(table.index(row, 1).data(Qt::ToolTipRole), table.index(row, 1).data());
        for (const int column : {CardHistory::NAME, CardHistory::NUMBER}) {
            const QModelIndex cell = history.index(0, column);
            EXPECT_EQ(cell.data(Qt::ToolTipRole), cell.data());
            EXPECT_EQ(text(history, 0, column) == COVER, isCovered);
        }
    }
}

TEST(CardTable, CoveredBeforeACardComes_HasDotsForNameNumberBirthAndAddressAlone)
{
    CardTable table;
    table.setCovered(true);
    table.setCard(residentCard());
    for (int row = 0; row < table.rowCount(); ++row) {
        const QString label = text(table, row, 0);
        const bool isPersonal = QStringList({"Name", "Date of birth", "Address"}).contains(label) ||
                                label.endsWith("number");
        EXPECT_EQ(text(table, row, 1) == COVER, isPersonal) << label.toStdString();
    }
    table.setCovered(false);
    EXPECT_THAT(column(table, 1), Not(Contains(COVER.toStdString())));
}

TEST(CardTable, TextThatTheDecoderCut_IsWholeForOtherProgramsUnlessCovered)
{
    CardTable table;
    const auto card = std::make_shared<const Card>(samples::cardWithCutTexts());
    table.setCard(card);
    const QString address = builtInCard("resident-longest-texts").address;
    const std::vector<std::string> labels = column(table, 0);
    const int row =
        static_cast<int>(std::find(labels.begin(), labels.end(), "Address") - labels.begin());
    EXPECT_NE(text(table, row, 1), address);
    EXPECT_EQ(table.wholeContent(row), address);
    table.setCovered(true);
    EXPECT_EQ(table.wholeContent(row), COVER);
}

TEST(HistoryCsv, TextThatTheDecoderCut_IsWholeInIt)
{
    const auto card = std::make_shared<const Card>(samples::cardWithCutTexts());
    const QString table =
        QString::fromUtf8(viewer::historyCsv({{card, QDateTime::currentDateTime()}}));
    const simulator::CardDescription described = builtInCard("resident-longest-texts");
    for (const QString &whole : {described.name, described.address, described.issuingAuthority})
        EXPECT_TRUE(table.contains('"' + whole + '"')) << whole.toStdString();
}

TEST(HistoryCsv, FieldThatSaysNothing_IsEmpty)
{
    auto records = samples::filledRecords();
    records->cn.szAddress.clear();
    const auto card = std::make_shared<const Card>(IDCARD_KIND_CN, *records);
    EXPECT_FALSE(viewer::historyCsv({{card, QDateTime::currentDateTime()}}).contains("\"-\""));
}

TEST(CardHistory, NewestCard_IsAbove)
{
    CardHistory history;
    const CardPointer first = residentCard();
    const auto second = std::make_shared<const Card>(samples::cardOf(IDCARD_KIND_HMT));
    const QDateTime time = QDateTime::currentDateTime();
    history.add(first, time);
    history.add(second, time.addSecs(5));
    EXPECT_EQ(history.card(0), second);
    EXPECT_EQ(history.card(1), first);
}

TEST(CardHistory, TimeOfAnotherDay_HasItsDate)
{
    CardHistory history;
    history.add(residentCard(), QDateTime(QDate(2026, 5, 18), QTime(23, 59, 5)));
    history.add(residentCard(), QDateTime(QDate::currentDate(), QTime(0, 1)));
    EXPECT_THAT(column(history, CardHistory::TIME),
                testing::ElementsAre("00:01:00", "2026-05-18 23:59:05"));
}

TEST(CardHistory, ThatIsFull_ForgetsTheOldestCard)
{
    CardHistory history;
    std::weak_ptr<const Card> first;
    for (int i = 0; i <= CardHistory::MOST_CARDS; ++i) {
        const CardPointer card = residentCard();
        if (i == 0)
            first = card;
        history.add(card, QDateTime::currentDateTime());
    }
    EXPECT_EQ(history.rowCount(), CardHistory::MOST_CARDS);
    EXPECT_TRUE(first.expired());
}

TEST(ScreenScale, ResolutionThatCannotBe_GivesWayToThatOfFontsAndIsReported)
{
    EXPECT_TRUE(screenScale(ScreenResolution{96, 96, 96, 1}).isTrue);
    EXPECT_TRUE(screenScale(ScreenResolution{109, 110, 96, 1}).isTrue);
    EXPECT_TRUE(screenScale(ScreenResolution{24, 24, 96, 2}).isTrue); // 48 of its own pixels
    EXPECT_TRUE(screenScale(ScreenResolution{30, 30, 96, 1}).isTrue);
    EXPECT_TRUE(screenScale(ScreenResolution{800, 800, 96, 1}).isTrue);
    EXPECT_TRUE(screenScale(ScreenResolution{118, 125, 96, 1}).isTrue); // 22 x 13 cm
    for (const auto &[x, y] :
         {std::pair(0., 0.), std::pair(10., 10.), std::pair(96., 300.), std::pair(5000., 5000.),
          std::pair(96., 107.), std::pair(29.9, 29.9), std::pair(801., 801.), std::pair(-96., -96.),
          std::pair(qInf(), qInf()), std::pair(qQNaN(), qQNaN())}) {
        const auto scale = screenScale(ScreenResolution{x, y, 96, 1});
        EXPECT_FALSE(scale.isTrue) << x << " x " << y;
        EXPECT_DOUBLE_EQ(scale.xPerMm, 96 / 25.4) << x << " x " << y;
    }
}

// A desktop has it where the program is installed, and nowhere else.
TEST(ProgramIcon, WithoutAnInstallation_IsInTheProgram)
{
    const QImage icon(QStringLiteral(":/viewer/idcard-viewer.png"));
    EXPECT_EQ(icon.size(), QSize(128, 128));
    EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0) << "its corners are round";
    EXPECT_EQ(icon.pixelColor(64, 64).alpha(), 255);
}

} // namespace
