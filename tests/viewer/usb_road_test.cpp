// The road over USB, with a simulated reader on an emulated bus, which the real libusb reads.

#include <csignal>

#include <gmock/gmock.h>

#include <unistd.h>

#include "apps/results/usb_catalogue.h"
#include "simulator/card/raw_record.h"
#include "tests/support/files.h"
#include "tests/support/process.h"
#include "tests/tool/tool_runner.h"
#include "tests/usb/fault_cases.h"
#include "tests/usb/reader_on_bus.h"
#include "tests/viewer/viewer_test.h"

using namespace viewer_test;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

constexpr UsbIds DEVICE = {0x1209, 0x0001};
const QString LAY_A_CARD = QStringLiteral("Lay a card on the reader; it is read automatically.");

class UsbRoad : public ViewerTest, public usb_test::ReaderOnBus
{
protected:
    void TearDown() override
    {
        ViewerTest::TearDown();
        expectAllGivenBack();
    }

    void openOnUsb(bool simulatorPhotos = true, bool isAutomatic = false)
    {
        viewer::ViewerOptions options;
        options.device = DEVICE;
        options.simulatorPhotos = simulatorPhotos;
        options.isAutomatic = isAutomatic;
        open(options);
    }

    /** The window watches the bus by a program that is halted meanwhile. */
    void changeBeneathChild(const std::function<void()> &change)
    {
        ASSERT_TRUE(waitFor([] { return children().size() == 1; }));
        changeBeneath(children()[0], change);
    }

    bool waitUntilReaderIsUsed()
    {
        return waitFor([this] { return bus().holdings().openNodes > 0; });
    }
};

class EveryKind : public UsbRoad, public testing::WithParamInterface<const char *>
{
};

TEST_P(EveryKind, IsReadWithItsPhotoAndWithoutPictures)
{
    const QString name = QLatin1String(GetParam());
    const simulator::CardDescription card = builtInCard(name);
    plugIn(name);
    openOnUsb();
    read();
    EXPECT_NE(state().kind, Kind::FAILED);
    EXPECT_EQ(field("Name"), card.name.isEmpty() ? card.englishName : card.name);
    EXPECT_FALSE(find<viewer::PictureView>("photo")->visibleFile().isNull());
    EXPECT_EQ(find("front")->accessibleDescription().toStdString(),
              "This way of reading gives no picture.");
}

INSTANTIATE_TEST_SUITE_P(Kinds, EveryKind,
                         testing::Values("resident", "hmt-taiwan", "foreign-2017", "foreign-new"));

class SavedCard : public UsbRoad, public testing::WithParamInterface<const char *>
{
};

TEST_P(SavedCard, IsByteForByteWhatTheToolSaves)
{
    plugIn(QLatin1String(GetParam()));
    rememberFolder();
    openOnUsb();
    read();
    click("save");
    const ProcessResult run = runReader({"read", "--road", "usb", "--device", "1209:0001",
                                         "--simulator-photos", "--out", path("tool")});
    EXPECT_EQ(run.exitStatus, 0) << run.error();
    EXPECT_EQ(folderState(path("kept/0001")), folderState(path("tool")));
    EXPECT_GE(namesIn(path("tool")).size(), 2U);
}

INSTANTIATE_TEST_SUITE_P(Kinds, SavedCard,
                         testing::Values("resident", "resident-longest-texts", "hmt-taiwan",
                                         "foreign-2017", "foreign-new"));

TEST_F(UsbRoad, PhotoWithoutADecoder_IsReportedBesideTheCard)
{
    plugIn("resident");
    openOnUsb(false);
    read();
    expectState(Kind::ATTENTION, "The photo of the card could not be decoded.");
    EXPECT_EQ(find("photo")->accessibleDescription().toStdString(),
              "The reader delivered the photo in the card's compressed form, not as a picture");
    EXPECT_EQ(field("Name"), builtInCard("resident").name);
    EXPECT_TRUE(find("save")->isEnabled());
}

TEST_F(UsbRoad, TextThatWasCut_StandsOutAndIsNotSaidWhileCovered)
{
    plugIn("resident-longest-texts");
    openOnUsb();
    read();
    expectState(Kind::ATTENTION, "The card was read; look at it closely.");
    EXPECT_THAT(text("notes").toStdString(), HasSubstr("cut"));
    check("cover", true);
    EXPECT_EQ(text("notes"), "A text is cut.");
}

TEST_F(UsbRoad, RecordWithAWrongChecksum_StandsOut)
{
    plugIn("resident", "read-answer-corrupted=17");
    openOnUsb();
    read();
    expectState(Kind::ATTENTION, "The card was read; look at it closely.");
    EXPECT_THAT(text("notes").toStdString(), HasSubstr("What was read may be wrong"));
}

TEST_F(UsbRoad, TextThatCannotBeDecoded_IsReportedAlsoWhenCardsAreReadByThemselves)
{
    QByteArray record = simulator::readAnswer(builtInCard("foreign-2017"), {});
    record[16 + 120] = '5'; // the sex
    plugIn("foreign-2017", "read-answer-replaced=" + QLatin1String(record.toHex()));
    for (const bool isAutomatic : {false, true}) {
        openOnUsb(true, isAutomatic);
        if (!isAutomatic)
            read();
        EXPECT_TRUE(waitForState(Kind::FAILED));
        EXPECT_THAT(details(), HasSubstr("must be 0, 1, 2 or 9"));
        expectState(Kind::FAILED);
        close();
    }
}

class EveryFault : public UsbRoad, public testing::WithParamInterface<usb_test::Failure>
{
};

TEST_P(EveryFault, IsReportedWithWhatToDoAndCauseAndCode)
{
    const usb_test::Failure &failure = GetParam();
    const QString fault = QLatin1String(failure.fault);
    if (fault.startsWith("permission-denied") && ::getuid() == 0)
        GTEST_SKIP() << "nothing is denied to root";
    plugIn("resident", fault);
    openOnUsb();
    read();
    expectState(Kind::FAILED);
    EXPECT_THAT(headline(), HasSubstr(failure.summary));
    EXPECT_THAT(line(), testing::Not(IsEmpty()));
    EXPECT_THAT(details(), AllOf(testing::StartsWith("Cause: "), HasSubstr(failure.codeText())));
    EXPECT_EQ(model("history")->rowCount(), 0);
    expectNobody();
}

INSTANTIATE_TEST_SUITE_P(Faults, EveryFault, testing::ValuesIn(usb_test::failures()));

class ReaderOfTheSettings : public UsbRoad
{
protected:
    QComboBox *openDevices()
    {
        trigger("Settings…");
        choose(find<QComboBox>("road"), "Over USB");
        return find<QComboBox>("device");
    }

    void acceptAndRead()
    {
        dialog()->accept();
        EXPECT_TRUE(waitForNoDialog());
        read();
    }
};

TEST_F(ReaderOfTheSettings, PluggedInLater_IsListedOnRefreshAndCanBeChosen)
{
    open();
    QComboBox *const devices = openDevices();
    EXPECT_EQ(devices->count(), 1);
    EXPECT_EQ(devices->currentText(), "The only one that is plugged in");
    plugIn("resident");
    click("refresh");
    choose(devices, "1209:0001 ");
    acceptAndRead();
    EXPECT_EQ(field("Name"), builtInCard("resident").name);
}

TEST_F(ReaderOfTheSettings, OnlyOneThatIsPluggedIn_IsReadWithoutBeingChosen)
{
    plugIn("resident");
    open();
    openDevices();
    acceptAndRead();
    EXPECT_EQ(field("Name"), builtInCard("resident").name);
}

TEST_F(ReaderOfTheSettings, UnpluggedWhileItIsChosen_StaysChosen)
{
    otherDevice().isReader = false;
    bus().add(otherDevice());
    plugIn("resident");
    open();
    QComboBox *const devices = openDevices();
    choose(devices, "046d:c31c");
    click("refresh");
    EXPECT_TRUE(devices->currentText().startsWith("046d:c31c "));
    EXPECT_EQ(devices->count(), 3);
    bus().change([&] { otherDevice().unplug(); });
    click("refresh");
    EXPECT_EQ(devices->currentText(), "046d:c31c - not plugged in");
    acceptAndRead();
    EXPECT_EQ(headline(), "There is no such reader.");
}

TEST_F(ReaderOfTheSettings, ThatMayNotBeOpened_SaysSo)
{
    plugIn("resident", "open-fails=1");
    open();
    EXPECT_THAT(openDevices()->itemText(1).toStdString(), testing::EndsWith(" - not open to you"));
}

TEST_F(UsbRoad, SeveralReadersAndNoneChosen_IsReportedAndNoneIsOpened)
{
    bus().add(otherDevice());
    plugIn("resident");
    rememberRoad(app::ReaderRoad::USB);
    open();
    read();
    expectState(Kind::FAILED);
    EXPECT_THAT(headline() + line() + details(),
                AllOf(HasSubstr("1209:0001"), HasSubstr("046d:c31c")));
    EXPECT_EQ(bus().holdings().timesOpened, 0);
}

class Automatic : public UsbRoad
{
protected:
    /** Opens the window with a reader on which this card lies. */
    void readFirst(const QString &card)
    {
        plugIn(card);
        openOnUsb(true, true);
        EXPECT_TRUE(waitForCards(1));
    }
};

TEST_F(Automatic, EachNewCard_IsReadOnceAndNobodyIsThereOnceItIsTakenOff)
{
    readFirst("resident");
    expectState(Kind::READ, "The card was read.");
    QTest::qWait(1200); // many looks
    EXPECT_EQ(model("history")->rowCount(), 1);
    EXPECT_TRUE(find("save")->isEnabled());
    takeOff();
    EXPECT_TRUE(waitForHeadline(LAY_A_CARD));
    expectNobody();
    EXPECT_TRUE(text("caption").startsWith("Previous card, "));
    lay("foreign-new");
    EXPECT_TRUE(waitForCards(2));
    EXPECT_EQ(field("Name"), builtInCard("foreign-new").englishName);
}

TEST_F(Automatic, OneCardDirectlyAfterTheOther_IsReadWithoutBeingTakenForTheFirst)
{
    readFirst("resident");
    lay("hmt-macao");
    EXPECT_TRUE(waitForCards(2));
    EXPECT_EQ(text("name"), builtInCard("hmt-macao").name);
    EXPECT_TRUE(find("save")->isEnabled());
}

TEST_F(Automatic, CardThatIsReadOnceMoreByHand_IsInTheHistoryOnceForEach)
{
    readFirst("resident");
    click("read");
    EXPECT_TRUE(waitForCards(2));
    QTest::qWait(4000); // longer than a watch needs to know that the card is the same
    EXPECT_EQ(model("history")->rowCount(), 2);
    expectState(Kind::READ, "The card was read.");
    EXPECT_TRUE(find("save")->isEnabled());
    takeOff();
    EXPECT_TRUE(waitForHeadline(LAY_A_CARD));
    expectNobody();
}

TEST_F(Automatic, CardWhoseReadByHandIsCancelled_IsShownAgain)
{
    readFirst("resident");
    click("read");
    click("cancel");
    EXPECT_TRUE(waitForCards(2));
    EXPECT_EQ(text("name"), "林晓雨");
}

TEST_F(Automatic, CardTakenOffWhileItIsReadByHand_IsKnownToBeOff)
{
    readFirst("resident");
    click("read");
    EXPECT_TRUE(waitForCards(2));
    takeOff();
    EXPECT_TRUE(waitFor([this] { return !find("save")->isEnabled(); }, 8000));
    expectNobody();
    lay("resident");
    EXPECT_TRUE(waitForCards(3));
}

TEST_F(Automatic, ReaderUnpluggedAndPluggedIn_IsReportedAndReadingGoesOn)
{
    readFirst("resident");
    changeBeneathChild([this] { reader().unplug(); });
    EXPECT_TRUE(waitForHeadline("The reader was unplugged."));
    expectState(Kind::ATTENTION);
    expectNobody();
    takeOff();
    changeBeneathChild([this] { reader().plugIn(); });
    EXPECT_TRUE(waitForHeadline(LAY_A_CARD));
    lay("hmt-macao");
    EXPECT_TRUE(waitForCards(2));
    EXPECT_EQ(text("name"), builtInCard("hmt-macao").name);
}

TEST_F(Automatic, WithoutAReader_IsReportedOnceAndReadsOnceItIsPluggedIn)
{
    prepare("resident", {});
    reader().unplug();
    bus().add(reader());
    openOnUsb(true, true);
    EXPECT_TRUE(waitForState(Kind::FAILED));
    EXPECT_THAT(details(), HasSubstr("USB_READER_NOT_FOUND"));
    changeBeneathChild([this] { reader().plugIn(); });
    EXPECT_TRUE(waitForCards(1));
    expectState(Kind::READ, "The card was read.");
}

TEST_F(Automatic, WithoutAReader_IsNotReportedAnyLongerOnceItIsPluggedInWithoutACard)
{
    reader().unplug();
    bus().add(reader());
    openOnUsb(true, true);
    EXPECT_TRUE(waitForState(Kind::FAILED));
    changeBeneathChild([this] { reader().plugIn(); });
    EXPECT_TRUE(waitForHeadline(LAY_A_CARD));
    expectState(Kind::WAITING);
}

TEST_F(Automatic, ReaderPluggedInWhileAnEarlierCardIsShown_LeavesWhatIsSaidOfIt)
{
    readFirst("resident");
    takeOff();
    EXPECT_TRUE(waitForHeadline(LAY_A_CARD));
    changeBeneathChild([this] { reader().unplug(); });
    EXPECT_TRUE(waitForHeadline("The reader was unplugged."));
    find<QTableView>("history")->selectRow(0);
    changeBeneathChild([this] { reader().plugIn(); });
    EXPECT_TRUE(waitUntilReaderIsUsed());
    QTest::qWait(1500); // some looks
    expectState(Kind::ATTENTION, "An earlier card is shown.");
    EXPECT_TRUE(find("save")->isEnabled());
}

// The second failure was taken for the first, and the guest before stayed as if he were there.
TEST_F(Automatic, CardThatFailsLikeTheOneBefore_HidesTheEarlierCardThatIsShown)
{
    readFirst("resident");
    takeOff();
    EXPECT_TRUE(waitForHeadline(LAY_A_CARD));
    const auto layOneThatFails = [this] {
        lay("hmt-macao", "read-answer-cut=8");
        return waitForState(Kind::FAILED);
    };
    EXPECT_TRUE(layOneThatFails());
    for (int times = 0; times < 2; ++times) {
        takeOff();
        QTest::qWait(1500); // some looks, of which none is reported
        find<QTableView>("history")->selectRow(0);
        expectState(Kind::ATTENTION, "An earlier card is shown.");
        EXPECT_TRUE(layOneThatFails());
        expectNobody();
    }
}

TEST_F(Automatic, FailedReading_IsReportedAndTheNextCardRead)
{
    plugIn("resident", "read-answer-cut=8");
    openOnUsb(true, true);
    EXPECT_TRUE(waitForState(Kind::FAILED));
    EXPECT_THAT(details(), HasSubstr("USB_READER_DATA_LENGTH_INVALID"));
    lay("resident");
    EXPECT_TRUE(waitForCards(1));
    expectState(Kind::READ, "The card was read.");
}

TEST_F(Automatic, SwitchedOff_WatchesNoLonger)
{
    plugIn("");
    openOnUsb(true, true);
    EXPECT_TRUE(waitFor([] { return children().size() == 1; }));
    QTest::qWait(300);
    check("automatic", false);
    EXPECT_TRUE(waitFor([] { return children().empty(); }, 4000));
    expectState(Kind::WAITING, "Lay a card on the reader and press Read.");
    lay("resident");
    QTest::qWait(500);
    EXPECT_EQ(model("history")->rowCount(), 0);
}

TEST_F(Automatic, SameCardOnAnotherReader_IsReadAsNew)
{
    QString problem;
    ASSERT_TRUE(otherDevice().slot().putCard("resident", simulator::PutAs::DESCRIBED, &problem));
    bus().add(otherDevice());
    readFirst("resident");
    changeSettings([](viewer::SettingsDialog *dialog) {
        choose(dialog->findChild<QComboBox *>("road"), "Over USB");
        choose(dialog->findChild<QComboBox *>("device"), "046d:c31c");
    });
    EXPECT_TRUE(waitForCards(2));
}

// A reader that does not take what is sent to it.
TEST_F(UsbRoad, ReadThatHangs_IsCancelled)
{
    leaveItToTheSystem();
    plugIn("resident", "lookup-command-missing");
    openOnUsb();
    click("read");
    EXPECT_TRUE(waitUntilReaderIsUsed());
    click("cancel");
    expectState(Kind::WAITING, "Reading was given up.");
    EXPECT_TRUE(waitFor([] { return children().empty(); }, 3500));
    EXPECT_TRUE(find("read")->isEnabled());
}

TEST_F(UsbRoad, WindowClosedWhileAReadHangs_LeavesNoChildAndGivesAllBack)
{
    plugIn("resident", "read-answer-delayed=800");
    for (const bool isAutomatic : {false, true}) {
        openOnUsb(true, isAutomatic);
        if (!isAutomatic)
            click("read");
        EXPECT_TRUE(waitUntilReaderIsUsed());
        close();
        EXPECT_THAT(children(), IsEmpty());
        EXPECT_TRUE(waitFor([this] { return bus().holdings().openNodes == 0; }));
    }
}

class Program : public UsbRoad
{
protected:
    ProcessInput input() { return {bus().childEnvironment()}; }
    static ProcessResult run(const QStringList &arguments)
    {
        return runProcess("idcard-viewer", arguments);
    }
};

TEST_F(Program, Help_ListsEveryOptionAndNothingOnStandardError)
{
    const ProcessResult result = run({"--help"});
    expectEnd(result, 0);
    for (const char *option : {"--simulate", "--fault", "--usb", "--simulator-photos", "--road",
                               "--auto", "--cover", "--help", "--version"})
        EXPECT_THAT(result.output(), HasSubstr(option));
    for (const char *status : {"\n  0  ", "\n  1  ", "\n  2  "})
        EXPECT_THAT(result.output(), HasSubstr(status));
}

TEST_F(Program, HelpInChinese_BreaksNoWordThatIsTyped)
{
    const std::string help =
        runProcess("idcard-viewer", {"--help"}, {{{"LC_ALL", "zh_CN.UTF-8"}, {"LANGUAGE", ""}}})
            .output();
    for (const char *word :
         {"1209:0001", "configured", "idcard-reader cards", "library", "read-fails=3", "service"})
        EXPECT_THAT(help, HasSubstr(word));
}

TEST_F(Program, HelpThatCannotBeWritten_IsReportedAndEndsWithStatus1)
{
    if (!qEnvironmentVariableIsEmpty("IDCARD_TEST_EMULATOR"))
        GTEST_SKIP() << "a shell cannot start what the emulator runs";
    expectEnd(
        runProcess("/bin/sh", {"-c", IDCARD_BUILD_BIN_DIR "/idcard-viewer --help > /dev/full"}), 1,
        "idcard-viewer: Standard output could not be written");
}

TEST_F(Program, Help_IsInTheFirstLanguageOfTheUserOrEnglish)
{
    const struct {
        const char *locale;
        const char *languages;
        bool isChinese;
    } users[] = {{"zh_CN.UTF-8", "", true},
                 {"en_US.UTF-8", "", false},
                 {"en_US.UTF-8", "zh_CN:en", true},
                 {"zh_CN.UTF-8", "en_US:zh_CN", false},
                 {"fr_FR.UTF-8", "fr", false}};
    for (const auto &user : users) {
        const ProcessInput input{{{"LC_ALL", user.locale}, {"LANGUAGE", user.languages}}};
        const QString help =
            QString::fromUtf8(runProcess("idcard-viewer", {"--help"}, input).standardOutput);
        EXPECT_EQ(help.contains(QStringLiteral("遮盖持证人")), user.isChinese)
            << user.locale << ' ' << user.languages;
        EXPECT_EQ(help.contains("Read each new card."), !user.isChinese);
    }
}

TEST_F(Program, Version_IsTheProgramsAndTheLibrarys)
{
    EXPECT_THAT(run({"--version"}).output(),
                testing::MatchesRegex("idcard-viewer [0-9.]+\nlibrary version:[0-9.]+\n"));
}

TEST_F(Program, WrongOptions_AreReportedWithTheValueAndEndWithStatus2)
{
    for (const QStringList &arguments :
         {QStringList{"--nonsense"}, QStringList{"stray"}, QStringList{"--usb", "12:1"},
          QStringList{"--usb", "1209:0001", "--simulate", "resident"}, QStringList{"--fault", "x"},
          QStringList{"--simulator-photos"}, QStringList{"--simulate", ""},
          QStringList{"--usb", ""}, QStringList{"--road", "sideways"}, QStringList{"--road", ""},
          QStringList{"--road", "usb", "--simulate", "resident"},
          QStringList{"--road", "usb", "--usb", "1209:0001"},
          QStringList{"--simulate", "resident", "--fault", ""},
          QStringList{"--simulate", "resident", "--fault", "earthquake"}}) {
        const ProcessResult result = run(arguments);
        EXPECT_EQ(result.exitStatus, 2) << arguments.join(' ').toStdString();
        EXPECT_THAT(result.error(),
                    AllOf(testing::StartsWith("idcard-viewer: "), HasSubstr("--help")));
        EXPECT_THAT(result.output(), IsEmpty());
    }
}

TEST_F(Program, FaultOfTheReaderOnUsb_IsRefusedForTheSimulatorWithTheRoadThatHasIt)
{
    const ProcessResult result = run({"--simulate", "resident", "--fault", "unplugged"});
    expectEnd(result, 2, "no fault \"unplugged\"; only the reader on USB has it");
}

TEST_F(Program, OptionThatIsAlmostOne_IsReportedAsItWasTypedWithTheOneThatWasMeant)
{
    EXPECT_THAT(run({"--simulat", "resident"}).error(),
                HasSubstr("idcard-viewer has no option --simulat; did you mean --simulate?"));
    EXPECT_THAT(run({"-x"}).error(), HasSubstr("has no option -x.\n"));
}

TEST_F(Program, SignalAfterACardWasRead_EndsItAndNothingWasPrinted)
{
    plugIn("resident");
    RunningProcess viewer("idcard-viewer", {"--usb", "1209:0001", "--simulator-photos", "--auto"},
                          input());
    EXPECT_TRUE(waitFor([&] { return bus().holdings().timesOpened > 0; }));
    EXPECT_TRUE(waitFor([&] { return bus().holdings().openNodes == 0; }));
    EXPECT_FALSE(QFile::exists(settingsFile()));
    viewer.signal(SIGTERM);
    const ProcessResult result = viewer.result();
    EXPECT_TRUE(result.finished);
    expectEnd(result, 0);
    EXPECT_THAT(result.output(), IsEmpty());
    EXPECT_TRUE(readFile(settingsFile()).contains("geometry=")) << "as when a user closes it";
}

TEST_F(Program, SignalWhileAReadNeverEnds_EndsItAllTheSame)
{
    leaveItToTheSystem();
    plugIn("resident", "lookup-command-missing");
    RunningProcess viewer("idcard-viewer", {"--usb", "1209:0001", "--auto"}, input());
    EXPECT_TRUE(waitUntilReaderIsUsed());
    const std::vector<pid_t> readers = children(viewer.id());
    ASSERT_EQ(readers.size(), 1U);
    viewer.signal(SIGTERM);
    const ProcessResult result = viewer.result();
    EXPECT_TRUE(result.finished);
    expectEnd(result, 0);
    EXPECT_NE(::kill(readers[0], 0), 0);
}

TEST_F(Program, KilledWhileItReads_TakesTheProgramThatReadsAlong)
{
    leaveItToTheSystem();
    plugIn("resident", "lookup-command-missing");
    RunningProcess viewer("idcard-viewer", {"--usb", "1209:0001", "--auto"}, input());
    EXPECT_TRUE(waitUntilReaderIsUsed());
    const std::vector<pid_t> readers = children(viewer.id());
    ASSERT_EQ(readers.size(), 1U);
    viewer.signal(SIGKILL);
    viewer.result();
    EXPECT_TRUE(waitFor([&] { return ::kill(readers[0], 0) != 0; }, 5000));
}

} // namespace
