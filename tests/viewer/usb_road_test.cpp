// The road over USB, with a simulated reader on an emulated bus, which the real libusb reads.

#include <csignal>

#include <gmock/gmock.h>

#include <QElapsedTimer>

#include <QLabel>
#include <unistd.h>

#include <libusb.h>

#include "apps/card/usb_catalogue.h"
#include "simulator/card/raw_record.h"
#include "tests/support/process.h"
#include "tests/tool/tool_runner.h"
#include "tests/usb/fault_cases.h"
#include "tests/usb/libusb_failures.h"
#include "tests/usb/reader_on_bus.h"
#include "tests/viewer/viewer_test.h"

using namespace viewer_test;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

constexpr UsbIds DEVICE = {0x1209, 0x0001};

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
    EXPECT_EQ(headline(), "The card was read.");
    EXPECT_EQ(field("Name"), card.name.isEmpty() ? card.englishName : card.name);
    EXPECT_EQ(find("photo")->accessibleDescription().toStdString(),
              "The picture is shown in its true size.");
    EXPECT_EQ(find("front")->accessibleDescription().toStdString(), "This road gives no picture.");
}

INSTANTIATE_TEST_SUITE_P(Kinds, EveryKind,
                         testing::Values("resident", "hmt-taiwan", "foreign-2017", "foreign-new"));

TEST_F(UsbRoad, PhotoWithoutADecoder_IsReportedBesideTheCard)
{
    if (!UNLOADS_LIBRARIES)
        GTEST_SKIP() << "a library that the sanitizers watch stays in the process";
    plugIn("resident");
    openOnUsb(false);
    read();
    expectMessage(Kind::WARNING, "The photo of the card could not be decoded.");
    EXPECT_EQ(find("photo")->accessibleDescription().toStdString(),
              "The reader delivered the photo in the card's compressed form, not as a picture");
    EXPECT_EQ(find<QLabel>("photo")->text(), find("photo")->accessibleName()) << "there is no room";
    EXPECT_EQ(field("Name"), builtInCard("resident").name);
    check("simulatorPhotos", true);
    read();
    EXPECT_EQ(headline(), "The card was read.");
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
        EXPECT_TRUE(waitForHeadline("The card's text could not be decoded."));
        EXPECT_THAT(details(), HasSubstr("must be 0, 1, 2 or 9"));
        expectMessage(Kind::FAILURE);
        close();
    }
}

class EveryFault : public UsbRoad, public testing::WithParamInterface<usb_test::Failure>
{
};

TEST_P(EveryFault, IsReportedWithCauseRemedyAndDevice)
{
    const usb_test::Failure &failure = GetParam();
    const QString fault = QLatin1String(failure.fault);
    plugIn("resident", fault);
    std::unique_ptr<usb_test::OrdinaryUser> user;
    if (fault == QLatin1String("permission-denied"))
        user = std::make_unique<usb_test::OrdinaryUser>();
    openOnUsb();
    read();
    const app::ResultEntry known = *app::findUsbResult(failure.code);
    const app::ResultEntry entry =
        fault.startsWith("unplugged-") ? app::unpluggedResult(known) : known;
    EXPECT_EQ(headline(), entry.summary);
    EXPECT_THAT(headline(), HasSubstr(failure.summary));
    EXPECT_THAT(details(), AllOf(HasSubstr(failure.codeText()), HasSubstr("Device: 1209:0001"),
                                 HasSubstr(entry.cause), HasSubstr(entry.remedy)));
    EXPECT_EQ(model("history")->rowCount(), 0);
    // Whether a node may be opened is asked for the real user, and root may open every one.
    const bool isShut = fault.startsWith("open-fails") ||
                        (fault.startsWith("permission-denied") && ::getuid() != 0);
    EXPECT_EQ(find<QComboBox>("device")->currentText().endsWith(" - not open to you"), isShut);
}

INSTANTIATE_TEST_SUITE_P(Faults, EveryFault, testing::ValuesIn(usb_test::failures()));

TEST_F(UsbRoad, Devices_AreListedAgainOnRefreshAndTheReaderIsFound)
{
    open();
    choose("road", "USB");
    EXPECT_EQ(find<QComboBox>("device")->currentText().toStdString(), "no USB device");
    plugIn("resident");
    click("refresh");
    EXPECT_TRUE(find<QComboBox>("device")->currentText().startsWith("1209:0001"));
    read();
    EXPECT_EQ(field("Name"), builtInCard("resident").name);
}

TEST_F(UsbRoad, OfTwoDevices_TheReaderIsFoundAndAnotherChoiceStaysWhenTheyAreListedAgain)
{
    const auto chosen = [&] { return find<QComboBox>("device")->currentText().toStdString(); };
    otherDevice().isReader = false;
    bus().add(otherDevice());
    plugIn("resident");
    open();
    choose("road", "USB");
    EXPECT_THAT(chosen(), testing::StartsWith("1209:0001 "));
    choose("device", "046d:c31c");
    click("refresh");
    EXPECT_THAT(chosen(), testing::StartsWith("046d:c31c "));
    EXPECT_EQ(find<QComboBox>("device")->count(), 2);
    bus().change([&] { otherDevice().unplug(); });
    click("refresh");
    EXPECT_EQ(chosen(), "046d:c31c - not plugged in");
    read();
    EXPECT_EQ(headline(), "There is no such reader.");
    choose("device", "1209:0001");
    expectMessage(Kind::NOTE, "Lay a card on the reader and press Read.");
}

TEST_F(UsbRoad, DevicesThatCannotBeListed_AreReportedWithCauseAndRemedy)
{
    usb_test::LibusbFailures failures;
    failures.deviceList = LIBUSB_ERROR_NO_MEM;
    usb_test::setLibusbFailures(failures);
    open();
    choose("road", "USB");
    usb_test::setLibusbFailures({});
    expectMessage(Kind::FAILURE, "The USB devices could not be listed.");
}

TEST_F(UsbRoad, WhileItReads_TheWindowStaysUsable)
{
    plugIn("resident", "read-answer-delayed=400");
    openOnUsb();
    click("read");
    EXPECT_EQ(headline(), "Reading…");
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { ++ticks; });
    timer.start(10);
    check("cover", true);
    click("read"); // which does not read again
    EXPECT_TRUE(waitForHeadline("The card was read."));
    EXPECT_GE(ticks, 10);
    QTest::qWait(500);
    EXPECT_EQ(model("history")->rowCount(), 1);
    EXPECT_EQ(bus().holdings().timesOpened, 1);
}

TEST_F(UsbRoad, RoadChangedWhileItReads_DropsWhatStillComes)
{
    plugIn("resident", "read-answer-delayed=300");
    openOnUsb();
    click("read");
    choose("road", "Simulator");
    choose("card", "hmt-macao");
    click("putCard");
    click("read");
    EXPECT_TRUE(waitFor([&] { return model("history")->rowCount() == 1; }));
    EXPECT_EQ(field("Name"), builtInCard("hmt-macao").name);
}

TEST_F(UsbRoad, EachNewCardByItself_IsReadOnce)
{
    plugIn("resident");
    openOnUsb(true, true);
    EXPECT_TRUE(waitFor([&] { return model("history")->rowCount() == 1; }));
    bus().change([&] { reader().slot().takeCard(); });
    EXPECT_TRUE(waitForHeadline("Lay a card on the reader; it is read automatically."));
    bus().change([&] { prepare("foreign-new", {}); });
    EXPECT_TRUE(waitFor([&] { return model("history")->rowCount() == 2; }));
    EXPECT_EQ(field("Name"), builtInCard("foreign-new").englishName);
}

TEST_F(UsbRoad, SameCardOnAnotherReader_IsReadAsNewByItself)
{
    QString problem;
    ASSERT_TRUE(otherDevice().slot().putCard("resident", simulator::PutAs::DESCRIBED, &problem));
    bus().add(otherDevice());
    plugIn("resident");
    openOnUsb(true, true);
    EXPECT_TRUE(waitFor([&] { return model("history")->rowCount() == 1; }));
    choose("device", "046d:c31c");
    EXPECT_TRUE(waitFor([&] { return model("history")->rowCount() == 2; }));
}

TEST_F(UsbRoad, RoadChangedWhileALookThatNobodyWaitsForGoesOn_ReadsNothingByTheNewRoad)
{
    plugIn("resident", "lookup-answer-delayed=300");
    openOnUsb(true, true);
    EXPECT_TRUE(waitFor([this] { return bus().holdings().openNodes > 0; }));
    check("automatic", false);
    find<QComboBox>("road")->setCurrentIndex(2);
    click("putCard");
    EXPECT_TRUE(waitFor([this] { return bus().holdings().openNodes == 0; }));
    QTest::qWait(300);
    EXPECT_EQ(model("history")->rowCount(), 0);
    EXPECT_EQ(headline(), "A card lies on the simulator.");
}

TEST_F(UsbRoad, WindowClosedWhileAReadHangs_EndsWithTheReadAndGivesAllBack)
{
    plugIn("resident", "read-answer-delayed=800");
    openOnUsb();
    click("read");
    EXPECT_TRUE(waitFor([this] { return bus().holdings().openNodes > 0; }));
    EXPECT_FALSE(window().endsWithin(0));
    EXPECT_TRUE(window().close());
    EXPECT_FALSE(window().isVisible());
    EXPECT_TRUE(window().endsWithin(10000));
    close();
    openOnUsb();
    click("read");
    EXPECT_TRUE(waitFor([this] { return bus().holdings().openNodes > 0; }));
    close(); // waits
    EXPECT_EQ(bus().holdings().openNodes, 0);
}

TEST_F(UsbRoad, CardOfTheSimulator_IsOffWhenTheRoadComesBackThoughItsPhotosWereDecodedMeanwhile)
{
    openOnUsb(true);
    choose("road", "Simulator");
    click("putCard");
    choose("road", "USB");
    choose("road", "Simulator");
    read();
    EXPECT_EQ(headline(), "No card was found on the reader.");
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
    for (const char *option : {"--simulate", "--fault", "--usb", "--simulator-photos", "--auto",
                               "--cover", "--help", "--version"})
        EXPECT_THAT(result.output(), HasSubstr(option));
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
    viewer.signal(SIGTERM);
    const ProcessResult result = viewer.result();
    EXPECT_TRUE(result.finished);
    expectEnd(result, 0);
    EXPECT_THAT(result.output(), IsEmpty());
}

TEST_F(Program, SignalWhileAReadNeverEnds_EndsItAllTheSame)
{
    leaveItToTheSystem();
    plugIn("resident", "lookup-command-missing");
    RunningProcess viewer("idcard-viewer", {"--usb", "1209:0001", "--auto"}, input());
    EXPECT_TRUE(waitFor([&] { return bus().holdings().openNodes > 0; }));
    viewer.signal(SIGTERM);
    const ProcessResult result = viewer.result();
    EXPECT_TRUE(result.finished);
    expectEnd(result, 5, "idcard-viewer: The reading in progress was broken off.");
}

} // namespace
