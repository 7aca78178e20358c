// Cards that are read in the window, and what the window says when one is not.

#include <algorithm>
#include <set>

#include <gmock/gmock.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>

#include "simulator/card/card_library.h"
#include "simulator/card/faults.h"
#include "tests/support/files.h"
#include "tests/support/test_name.h"
#include "tests/tool/tool_runner.h"
#include "tests/viewer/viewer_test.h"

using namespace viewer_test;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

using Reading = ViewerTest;

std::vector<std::string> cardNames()
{
    std::vector<std::string> names;
    for (const QString &name : simulator::builtInCardNames())
        names.push_back(name.toStdString());
    return names;
}

class EveryCard : public Reading, public testing::WithParamInterface<std::string>
{
};

TEST_P(EveryCard, IsReadAndShownAsDescribed)
{
    const QString cardName = QString::fromStdString(GetParam());
    const simulator::CardDescription card = builtInCard(cardName);
    openWithCard(cardName);
    read();
    const bool isForeign = card.kind == simulator::CardKind::FOREIGN2017 ||
                           card.kind == simulator::CardKind::FOREIGN_NEW;
    const QString holder = isForeign ? card.englishName : card.name;
    EXPECT_EQ(text("name"), holder);
    EXPECT_EQ(text("number"), card.idNumber);
    EXPECT_EQ(field("Name"), holder);
    EXPECT_EQ(field(isForeign ? "Card number" : "Identity number"), card.idNumber);
    EXPECT_TRUE(rows("history").value(0).startsWith(
        QStringList({holder, card.idNumber, field("Kind"), QString()}).join('\t')));

    const ProcessResult saved = runReader({"read", "--simulate", cardName, "--out", path("tool")});
    EXPECT_EQ(saved.exitStatus, 0);
    constexpr double ALIKE = 12; // of 255, for two ways of scaling
    for (const auto &[name, file] :
         {std::pair("photo", "tool/photo.bmp"), std::pair("front", "tool/front.jpg"),
          std::pair("back", "tool/back.jpg")}) {
        auto *const view = find<viewer::PictureView>(name);
        if (QFile::exists(path(file))) {
            const QImage shown = view->grab(view->pictureRect()).toImage();
            const QImage expected =
                QImage(path(file))
                    .scaled(shown.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            EXPECT_LT(difference(shown, expected), ALIKE) << name;
        } else {
            EXPECT_NE(view->accessibleDescription(), QString()) << name;
            EXPECT_EQ(view->toolTip(), view->accessibleDescription());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(BuiltIn, EveryCard, testing::ValuesIn(cardNames()), testNameOf);

struct FaultOutcome {
    const char *fault;
    viewer::StateKind kind;
    const char *headline;
    const char *code = ""; ///< with its name; of a failure
};

std::ostream &operator<<(std::ostream &stream, const FaultOutcome &outcome)
{
    return stream << outcome.fault;
}

using Kind = viewer::StateKind;

const std::vector<FaultOutcome> FAULTS = {
    {"open-fails=7", Kind::FAILED, "The reader could not be opened.",
     "-5 (IDCARD_RESULT_PORT_NOT_OPEN)"},
    {"open-fails-every=1", Kind::FAILED, "The reader could not be opened.",
     "-5 (IDCARD_RESULT_PORT_NOT_OPEN)"},
    {"no-card", Kind::FAILED, "No card was found on the reader.", "-24 (IDCARD_RESULT_NO_CARD)"},
    {"transient-failures=2", Kind::READ, "The card was read."},
    {"read-fails=7", Kind::FAILED, "The call succeeded, but nothing was read.",
     "0 (IDCARD_RESULT_OK)"},
    {"delay-ms=20", Kind::READ, "The card was read."},
    {"photo-undecodable", Kind::FAILED, "The photo of the card could not be decoded.",
     "-26 (IDCARD_RESULT_PHOTO_NOT_DECODED)"},
    {"photo-length=77", Kind::ATTENTION, "The photo of the card could not be decoded.",
     "-26 (IDCARD_RESULT_PHOTO_NOT_DECODED)"},
    {"unknown-kind", Kind::FAILED, "The call succeeded, but nothing was read.",
     "0 (IDCARD_RESULT_OK)"},
    {"card-removed", Kind::FAILED, "The call succeeded, but nothing was read.",
     "0 (IDCARD_RESULT_OK)"},
};

class EveryFault : public Reading, public testing::WithParamInterface<FaultOutcome>
{
};

TEST_P(EveryFault, IsReportedWithWhatToDoAndCauseAndCodeUnderDetails)
{
    const FaultOutcome &outcome = GetParam();
    openWithCard("resident-compressed-photo", outcome.fault);
    read();
    expectState(outcome.kind, outcome.headline);
    const bool isRead = outcome.kind != Kind::FAILED;
    EXPECT_EQ(model("history")->rowCount(), isRead ? 1 : 0);
    EXPECT_EQ(text("name"), isRead ? builtInCard("resident-compressed-photo").name : QString());
    if (*outcome.code == '\0') {
        EXPECT_THAT(details(), IsEmpty());
        return;
    }
    if (!isRead)
        expectNobody();
    EXPECT_THAT(line(), testing::Not(IsEmpty()));
    EXPECT_THAT(details(), testing::MatchesRegex("Cause: .+\nCode: .+"));
    EXPECT_THAT(details(), HasSubstr(std::string("Code: ") + outcome.code));
    click("details");
    auto *const box = dialog<QMessageBox>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text().toStdString(), headline());
    EXPECT_EQ(box->informativeText().toStdString(), line() + "\n\n" + details());
}

INSTANTIATE_TEST_SUITE_P(Simulator, EveryFault, testing::ValuesIn(FAULTS));

TEST(FaultOutcomes, AreThoseOfEveryFault)
{
    for (const simulator::FaultRule &rule :
         simulator::faultRules(simulator::Road::MAKERS_LIBRARY)) {
        const auto isOfRule = [&](const FaultOutcome &outcome) {
            return QString(outcome.fault).section('=', 0, 0) == QLatin1String(rule.name);
        };
        EXPECT_TRUE(std::any_of(FAULTS.begin(), FAULTS.end(), isOfRule)) << rule.name;
    }
}

TEST_F(Reading, FaultThatTheSimulatorRefuses_IsReportedWithItsReason)
{
    openWithCard("resident", "no-such-fault");
    read();
    expectState(Kind::FAILED);
    EXPECT_THAT(line() + details(), HasSubstr("no-such-fault"));
}

TEST_F(Reading, CardPutOnAndTakenOff_IsReadAndNotFound)
{
    openWithSimulator();
    putCard("hmt-macao");
    expectState(Kind::WAITING, "A card lies on the simulator.", "Press Read.");
    read();
    EXPECT_EQ(field("Name"), builtInCard("hmt-macao").name);
    click("takeCard");
    expectState(Kind::WAITING, "No card lies on the simulator.");
    read();
    expectState(Kind::FAILED, "No card was found on the reader.");
}

TEST_F(Reading, CardOfAFile_IsReadByItsPath)
{
    openWithSimulator();
    click("cardFile");
    answerFileDialog(describedResident());
    EXPECT_EQ(find<QComboBox>("card")->currentText().toStdString(), "card-1.json");
    click("putCard");
    read();
    EXPECT_EQ(field("Name").toStdString(), "测试");
}

TEST_F(Reading, SpaceFromButtonTableAndHistoryAndF5_Read)
{
    openWithCard("resident");
    EXPECT_TRUE(waitFor([&] { return QApplication::focusWidget() == find("read"); }));
    int cards = 0;
    for (const char *name : {"read", "fields", "history"}) {
        find(name)->setFocus();
        press(name, Qt::Key_Space);
        EXPECT_TRUE(waitForCards(++cards)) << name;
    }
    QTest::keyClick(&window(), Qt::Key_F5);
    EXPECT_TRUE(waitForCards(++cards));
}

TEST_F(Reading, SpaceAgainAndAgain_ReadsEachTimeWhateverHadTheFocusOrWasClicked)
{
    rememberFolder();
    openWithCard("resident");
    EXPECT_TRUE(waitFor([&] { return QApplication::focusWidget() == find("read"); }));
    int cards = 0;
    const auto pressSpace = [&](const char *where) {
        for (int times = 0; times < 2; ++times) { // as the keyboard does, to what has the focus
            QTest::keyClick(window().windowHandle(), Qt::Key_Space);
            EXPECT_TRUE(waitForCards(++cards)) << where;
        }
    };
    pressSpace("at the start");
    for (const char *name : {"read", "fields", "save", "print"}) {
        find(name)->setFocus();
        QTest::keyClick(&window(), Qt::Key_F5);
        EXPECT_TRUE(waitForCards(++cards)) << name;
        pressSpace(name);
    }
    for (const char *name : {"cover", "automatic", "save"}) {
        click(name);
        pressSpace(name);
    }
    EXPECT_THAT(namesIn(path("kept")), testing::ElementsAre("0001"));
    EXPECT_EQ(find<QLineEdit>("search")->text(), "");
}

TEST_F(Reading, ReadPressedOnceMoreWhileItReads_ReadsOnce)
{
    openWithCard("resident", "delay-ms=300");
    click("read");
    expectState(Kind::READING, "Reading…");
    EXPECT_FALSE(find("read")->isEnabled());
    trigger("Read");
    press("history", Qt::Key_Space);
    EXPECT_TRUE(waitForCards(1));
    QTest::qWait(600);
    EXPECT_EQ(model("history")->rowCount(), 1);
    EXPECT_TRUE(find("read")->isEnabled());
}

TEST_F(Reading, WhatIsDoneWhileItReads_IsSaidBesideTheReadingWhichCanBeCancelled)
{
    rememberFolder();
    openWithCard("resident");
    read();
    find<QAbstractButton>("exportHistory")->click();
    putCard("resident", "delay-ms=60000");
    click("read");
    expectState(Kind::READING, "Reading…", "Leave the card on the reader.");
    const std::pair<std::function<void()>, const char *> deeds[] = {
        {[this] { answerFileDialog(path("kept/cards.csv")); }, "The history was exported to"},
        {[this] { find<QTableView>("history")->selectRow(0); }, "An earlier card is shown."},
        {[this] { trigger("Copy the name"); }, "Copied: Name"},
        {[this] { trigger("Save"); }, "The card was saved in"},
        {[this] { putCard("hmt-macao"); }, "A card lies on the simulator. Press Read."},
        {[this] { click("takeCard"); }, "No card lies on the simulator."},
        {[this] { trigger("Clear the history"); }, "The cards of this run are forgotten."},
    };
    for (const auto &[deed, words] : deeds) {
        deed();
        expectState(Kind::READING, "Reading…", words);
        EXPECT_THAT(line(), testing::StartsWith("Leave the card on the reader."));
    }
    click("cancel");
    expectState(Kind::WAITING, "Reading was given up.");
}

// A read that is tried for ever: the window was held by it until it was ended by force.
class NeverEnding : public Reading
{
protected:
    void begin()
    {
        openWithCard("resident", "transient-failures=1000000");
        click("read");
        EXPECT_TRUE(waitFor([] { return !children().empty(); }));
        QTest::qWait(300); // it has found the card and tries to read it
    }

    /** The child goes, and the next card is read. */
    void expectOver()
    {
        QElapsedTimer time;
        time.start();
        expectState(Kind::WAITING, "Reading was given up.",
                    "Lay a card on the reader and press Read.");
        EXPECT_TRUE(waitFor([] { return children().empty(); }, 3000)) << time.elapsed() << " ms";
        expectNobody();
        EXPECT_EQ(model("history")->rowCount(), 0);
        readNext("resident");
        expectState(Kind::READ, "The card was read.");
    }
};

TEST_F(NeverEnding, Read_IsCancelledByEscape)
{
    begin();
    QTest::keyClick(&window(), Qt::Key_Escape);
    expectOver();
}

TEST_F(NeverEnding, Read_LeavesTheWindowUsable)
{
    begin();
    QElapsedTimer sinceTick;
    qint64 longestPause = 0;
    QTimer ticks;
    QObject::connect(&ticks, &QTimer::timeout,
                     [&] { longestPause = std::max(longestPause, sinceTick.restart()); });
    sinceTick.start();
    ticks.start(10);
    check("cover", true);
    QTest::keyClick(&window(), Qt::Key_F9);
    window().resize(window().size() + QSize(40, 20));
    QTest::qWait(1000);
    EXPECT_LT(longestPause, 500);
    click("cancel");
    expectOver();
}

TEST_F(Reading, WithoutAReading_NothingCanBeCancelled)
{
    openWithCard("resident");
    EXPECT_FALSE(action("Give up reading")->isEnabled());
    read();
    EXPECT_FALSE(action("Give up reading")->isEnabled());
}

TEST_F(Reading, CardsOfTheSimulatorByThemselves_AreReadOnceEach)
{
    openWithSimulator();
    check("automatic", true);
    expectState(Kind::WAITING, "Lay a card on the reader; it is read automatically.");
    putCard("resident");
    EXPECT_TRUE(waitForCards(1));
    QTest::qWait(1000);
    EXPECT_EQ(model("history")->rowCount(), 1) << "the card still lies there";
    expectState(Kind::READ, "The card was read.");
    putCard("foreign-new");
    EXPECT_TRUE(waitForCards(2));
    click("takeCard");
    expectState(Kind::WAITING, "Lay a card on the reader; it is read automatically.");
    check("automatic", false);
    putCard("resident");
    QTest::qWait(700);
    EXPECT_EQ(model("history")->rowCount(), 2);
}

TEST_F(Reading, CardPutOnTheSimulatorWhileAnotherIsReadByItself_IsReadAfterwards)
{
    openWithSimulator();
    check("automatic", true);
    putCard("resident", "delay-ms=1000");
    EXPECT_TRUE(waitFor([] { return !children().empty(); }));
    putCard("hmt-macao");
    expectState(Kind::READING, "Reading…");
    EXPECT_TRUE(waitForCards(2));
    EXPECT_EQ(text("name"), builtInCard("hmt-macao").name);
    QTest::qWait(1000);
    EXPECT_EQ(model("history")->rowCount(), 2);
}

TEST_F(Reading, CardTakenOffTheSimulatorWhileItIsReadByItself_IsThePreviousOneAtOnce)
{
    openWithSimulator();
    check("automatic", true);
    putCard("resident", "delay-ms=1000");
    EXPECT_TRUE(waitFor([] { return !children().empty(); }));
    click("takeCard");
    expectState(Kind::READING, "Reading…");
    EXPECT_TRUE(waitForCards(1));
    expectState(Kind::WAITING, "Lay a card on the reader; it is read automatically.");
    expectNobody();
}

TEST_F(Reading, FailureWhileItReadsByItself_StaysUntilACardIsRead)
{
    openWithCard("resident", "open-fails=7");
    check("automatic", true);
    EXPECT_TRUE(waitForHeadline("The reader could not be opened."));
    QTest::qWait(500);
    expectState(Kind::FAILED, "The reader could not be opened.");
    putCard("resident");
    EXPECT_TRUE(waitForHeadline("The card was read."));
}

TEST_F(Reading, NothingThatIsPersonal_IsInTheArgumentsOfTheProgramThatReads)
{
    // Others on the machine see them.
    openWithCard("resident", "delay-ms=500");
    click("read");
    ASSERT_TRUE(waitFor([] { return !children().empty(); }));
    const QByteArray line = readFile(QStringLiteral("/proc/%1/cmdline").arg(children()[0]));
    expectNothingOf(builtInCard("resident"), line);
    EXPECT_TRUE(waitForCards(1));
}

class Attention : public Reading
{
protected:
    void readResident(const QMap<QString, QString> &facts = {})
    {
        openWithCard(describedResident(facts));
        read();
    }

    void expectAttention(const char *words)
    {
        expectState(Kind::ATTENTION, "The card was read; look at it closely.", words);
        EXPECT_THAT(text("notes").toStdString(), HasSubstr(words));
        EXPECT_TRUE(find("notes")->isVisible());
        EXPECT_TRUE(find("save")->isEnabled()) << "the clerk decides";
        const QColor ground = find("notes")->palette().color(QPalette::Window);
        EXPECT_EQ(ground, viewer::stateColour(Kind::ATTENTION));
    }
};

TEST_F(Attention, ExpiredCard_StandsOutInWordsAndColour)
{
    readResident({{"validTo", "20210101"}});
    expectAttention("expired");
}

/** A resident's number of somebody born that day, with the check digit of the national standard. */
QString numberOf(const QDate &birth)
{
    const QString number = "110101" + birth.toString("yyyyMMdd") + "003";
    int sum = 0;
    for (int i = 0; i < number.size(); ++i)
        sum += number[i].digitValue() * ((1 << (17 - i)) % 11);
    return number + QStringLiteral("10X98765432").at(sum % 11);
}

TEST_F(Attention, Minor_StandsOutInWordsAndColour)
{
    const QDate birth = QDate::currentDate().addYears(-10);
    readResident({{"birthDate", birth.toString("yyyyMMdd")}, {"idNumber", numberOf(birth)}});
    expectAttention("The holder is a minor, 10 years old.");
    EXPECT_EQ(text("notes").count('\n'), 0) << text("notes").toStdString();
}

TEST_F(Attention, WrongCheckDigit_StandsOutInWordsAndColour)
{
    readResident({{"idNumber", "110101199003070039"}});
    expectAttention("check digit");
}

TEST_F(Attention, CardWithNothingToLookAt_HasNoNotes)
{
    readResident();
    expectState(Kind::READ, "The card was read.");
    EXPECT_FALSE(find("notes")->isVisible());
}

using Diagnosis = Reading;

TEST_F(Diagnosis, OfAFailure_IsTheDoctorsReport)
{
    openWithCard("resident", "open-fails=7");
    read();
    click("diagnose");
    auto *const report = window().findChild<QPlainTextEdit *>("report");
    ASSERT_NE(report, nullptr);
    EXPECT_EQ(report->toPlainText().toStdString(), "Looking at the machine…");
    EXPECT_TRUE(waitFor([&] { return report->toPlainText().count('\n') > 5; }, 60000));
    // A finding of every matter, as the program says them, but for what changes from run to run.
    const QString expected = QString::fromUtf8(runReader({"doctor"}).standardOutput);
    EXPECT_EQ(report->toPlainText().section('\n', 0, 0), expected.section('\n', 0, 0));
    EXPECT_EQ(report->toPlainText().count('\n'), expected.count('\n'));
    auto *const asked = dialog();
    EXPECT_TRUE(asked != nullptr && asked->windowTitle() == "Diagnosis");
}

TEST_F(Diagnosis, WindowClosedMeanwhile_LeavesNoProgramBehind)
{
    open();
    QTest::keyClick(&window(), Qt::Key_D, Qt::ControlModifier);
    EXPECT_TRUE(waitFor([] { return !children().empty(); }));
    close();
    EXPECT_THAT(children(), IsEmpty());
}

TEST_F(Reading, WithoutAReader_NoDeviceIsSpokenOfThatNobodyChose)
{
    rememberRoad(app::ReaderRoad::USB);
    open();
    read();
    expectState(Kind::FAILED);
    const std::string all = everyText().toStdString() + headline() + line() + details();
    EXPECT_THAT(all, testing::Not(HasSubstr("0000:0000")));
    EXPECT_THAT(all, testing::Not(HasSubstr("--device")));
}

} // namespace
