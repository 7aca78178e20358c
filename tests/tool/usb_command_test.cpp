// "idcard-reader usb": the built program, the real libusb and a simulated reader on an emulated
// bus.

#include <csignal>

#include <gmock/gmock.h>

#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>

#include "tests/card/expected_json.h"
#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"
#include "tests/usb/fault_cases.h"
#include "tests/usb/reader_on_bus.h"

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace
{

const QString DEVICE = QStringLiteral("1209:0001");

class Usb : public FolderTest, public usb_test::ReaderOnBus
{
protected:
    /** The other device is of another vendor with the same number of its product. */
    Usb() : ReaderOnBus({0x1210, 0x0001}) {}

    void TearDown() override { expectAllGivenBack(); }

    ProcessInput onBus() { return {bus().childEnvironment()}; }

    ProcessResult usb(const QStringList &more = {})
    {
        return runTool(QStringList{"usb", "--device", DEVICE, "--simulator-photos"} + more,
                       onBus());
    }
};

class UsbKind : public Usb, public testing::WithParamInterface<const char *>
{
};

TEST_P(UsbKind, JsonHoldsTheDescribedCard)
{
    const QString name = QLatin1String(GetParam());
    plugIn(name);
    const ProcessResult run = usb({"--json"});
    expectEnd(run, 0);
    EXPECT_EQ(QJsonDocument(parsedObject(run.standardOutput)).toJson().toStdString(),
              QJsonDocument(expectedOfRecord(builtInCard(name), "usb")).toJson().toStdString());
}

TEST_P(UsbKind, VerboseShowsTheExchangesAndNothingOfWhatTheCardHolds)
{
    const QString name = QLatin1String(GetParam());
    plugIn(name);
    const ProcessResult run = usb({"--verbose"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.error(), AllOf(HasSubstr("open usb device success!"),
                                   HasSubstr("fetch data success"), HasSubstr("with the code 0")));
    expectNothingOf(builtInCard(name), run.standardError);
}

INSTANTIATE_TEST_SUITE_P(Kinds, UsbKind,
                         testing::Values("resident", "resident-one-fingerprint",
                                         "resident-compressed-photo", "hmt-taiwan", "hmt-long-term",
                                         "foreign-2017-longest-name", "foreign-new",
                                         "foreign-new-unknown-nationality"));

class UsbRoadOfRead : public Usb
{
protected:
    ProcessResult read(const QStringList &more = {})
    {
        return runTool(QStringList{"read", "--road", "usb", "--simulator-photos"} + more, onBus());
    }

    /** A device of other ids with the pipes of a reader. */
    void plugInAnotherReader() { bus().add(otherDevice()); }
};

TEST_F(UsbRoadOfRead, TextAndJsonAreThoseOfUsb)
{
    plugIn("resident");
    for (const QStringList &form :
         {QStringList{}, QStringList{"--json"}, QStringList{"--json", "--inline", "all"}}) {
        const ProcessResult run = read(form);
        expectEnd(run, 0);
        EXPECT_EQ(run.output(), usb(form).output());
    }
}

TEST_F(UsbRoadOfRead, FilesAreThoseOfUsb)
{
    plugIn("resident");
    expectEnd(read({"--out", path("read")}), 0);
    expectEnd(usb({"--out", path("usb")}), 0);
    EXPECT_EQ(folderState(path("read")), folderState(path("usb")));
}

TEST_F(UsbRoadOfRead, FailureIsThatOfUsb)
{
    plugIn("resident", "claimed-elsewhere");
    const ProcessResult run = read({"--json"});
    EXPECT_EQ(run.exitStatus, 3);
    const ProcessResult same = usb({"--json"});
    EXPECT_EQ(run.output(), same.output());
    EXPECT_EQ(run.error(), same.error());
}

TEST_F(UsbRoadOfRead, NeedsNoDisplayEvenWhereOneIsNamed)
{
    plugIn("resident");
    ProcessInput input = onBus();
    input.environment.insert("QT_QPA_PLATFORM", "no-such-platform");
    EXPECT_EQ(runTool({"read", "--road", "usb", "--simulator-photos"}, input).exitStatus, 0);
}

TEST_F(UsbRoadOfRead, OnlyReaderNeedsNoName)
{
    otherDevice().isReader = false;
    bus().add(otherDevice());
    plugIn("resident");
    expectEnd(read(), 0);
    expectEnd(runTool({"usb", "--simulator-photos"}, onBus()), 0);
}

TEST_F(UsbRoadOfRead, WithoutAReaderAndWithoutAName_IsTheErrorForAMissingReader)
{
    otherDevice().isReader = false;
    bus().add(otherDevice());
    for (const char *command : {"read", "usb"}) {
        QStringList arguments{command, "--json"};
        if (arguments.first() == "read")
            arguments << "--road"
                      << "usb";
        const ProcessResult run = runTool(arguments, onBus());
        expectEnd(run, 3, "Code: -7 (USB_READER_NOT_FOUND)");
        EXPECT_EQ(errorNameIn(run.standardOutput), "USB_READER_NOT_FOUND");
    }
    EXPECT_EQ(bus().holdings().timesOpened, 0);
}

TEST_F(UsbRoadOfRead, SeveralReadersWithoutAName_AreListedAndNoneIsOpened)
{
    plugInAnotherReader();
    plugIn("resident");
    const ProcessResult run = read({"--json"});
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_THAT(QString::fromUtf8(run.standardError).simplified().toStdString(),
                AllOf(HasSubstr("1209:0001 at " + node(reader()).toStdString()),
                      HasSubstr("1210:0001 at " + node(otherDevice()).toStdString()),
                      HasSubstr("--device")));
    EXPECT_EQ(errorNameIn(run.standardOutput), "TOOL_SEVERAL_READERS");
    EXPECT_EQ(runTool({"usb"}, onBus()).error(), run.error());
    EXPECT_EQ(bus().holdings().timesOpened, 0);
}

TEST_F(UsbRoadOfRead, DeviceThatADriverHolds_IsNotOpenedUnlessItIsNamed)
{
    plugInAnotherReader();
    bindDriver(otherDevice(), "usb-storage");
    plugIn("resident");
    expectEnd(read(), 0);
    EXPECT_EQ(bus().calls(otherDevice()), QStringList());
    bindDriver(reader(), "makers_driver");
    EXPECT_EQ(read().exitStatus, 3);
    expectEnd(read({"--device", DEVICE}), 0);
}

TEST_F(UsbRoadOfRead, NameDecidesAmongSeveralReaders)
{
    plugInAnotherReader();
    plugIn("resident");
    expectEnd(read({"--device", DEVICE}), 0);
}

TEST_F(Usb, RecordWithAWrongChecksum_IsReportedAndTheCardNotedAsOdd)
{
    plugIn("resident", "read-answer-corrupted=17");
    const QStringList more{"--device", DEVICE, "--simulator-photos", "--json"};
    for (const QStringList &command : {QStringList{"usb"}, QStringList{"read", "--road", "usb"}}) {
        const ProcessResult run = runTool(command + more, onBus());
        EXPECT_EQ(run.exitStatus, 0);
        EXPECT_THAT(run.error(),
                    HasSubstr("The reader's answer is an odd record: at offset 2320 (checksum)"));
        EXPECT_TRUE(parsedObject(run.standardOutput)["notes"].toArray().contains("odd-record"));
    }
}

TEST_F(Usb, TableShowsTheCard)
{
    plugIn("resident");
    const simulator::CardDescription card = builtInCard("resident");
    EXPECT_THAT(usb().output(),
                AllOf(HasSubstr("Kind               Resident identity card\n"),
                      HasSubstr(card.name.toStdString()), HasSubstr(card.idNumber.toStdString()),
                      HasSubstr("\nFingerprints       2\n"), Not(HasSubstr("picture "))));
}

TEST_F(Usb, FilesAreThoseThatDecodeWritesAndOnlyTheirOwnersToRead)
{
    plugIn("resident");
    expectEnd(usb({"--out", out()}), 0);
    EXPECT_THAT(namesIn(out()), ElementsAre("card.json", "fingerprints.dat", "photo.bmp"));
    EXPECT_EQ(modeOf(out()), 0700);
    for (const char *name : {"/card.json", "/fingerprints.dat", "/photo.bmp"})
        EXPECT_EQ(modeOf(out() + name), 0600) << name;
    EXPECT_EQ(parsedObject(readFile(out() + "/card.json"))["road"].toString(), "usb");
}

TEST_F(Usb, RawFileIsTheFrameAsItCameAndDecodesToTheSameCard)
{
    plugIn("hmt-macao");
    const QString raw = path("raw/card.rec");
    const QByteArray printed = usb({"--json", "--raw", raw}).standardOutput;
    EXPECT_EQ(readFile(raw), recordOf("hmt-macao"));
    EXPECT_EQ(modeOf(raw), 0600);
    QJsonObject decoded =
        parsedObject(runTool({"decode", raw, "--json", "--simulator-photos"}).standardOutput);
    decoded["road"] = "usb";
    EXPECT_EQ(parsedObject(printed), decoded);
}

TEST_F(Usb, RawFileIsNotOverwrittenAndTheReaderNotTouchedThen)
{
    plugIn("resident");
    writeFile(path("card.rec"), "mine");
    expectEnd(usb({"--raw", path("card.rec")}), 7, "already holds card.rec");
    EXPECT_EQ(readFile(path("card.rec")), "mine");
    EXPECT_EQ(bus().holdings().timesOpened, 0);
}

TEST_F(Usb, ForceReplacesTheRawFile)
{
    plugIn("resident");
    writeFile(path("card.rec"), "old");
    EXPECT_EQ(usb({"--raw", path("card.rec"), "--force"}).exitStatus, 0);
    EXPECT_EQ(readFile(path("card.rec")).size(), 2321);
    EXPECT_EQ(modeOf(path("card.rec")), 0600);
}

TEST_F(Usb, RawFileThatCannotBeWrittenIsReportedAndTheCardStillPrinted)
{
    plugIn("resident");
    writeFile(path("file"), "in the way");
    const ProcessResult run = usb({"--json", "--raw", path("file") + "/below/card.rec"});
    EXPECT_EQ(run.exitStatus, 7);
    EXPECT_EQ(parsedObject(run.standardOutput)["idNumber"].toString(),
              builtInCard("resident").idNumber);
}

TEST_F(Usb, PhotoThatCannotBeDecodedIsReportedAndTheRestDelivered)
{
    plugIn("resident", "photo-undecodable");
    const ProcessResult run = usb({"--json", "--out", out(), "--raw", path("card.rec")});
    expectEnd(run, 6, "The photo of the card could not be decoded.");
    EXPECT_THAT(namesIn(out()), ElementsAre("card.json", "fingerprints.dat"));
    EXPECT_EQ(parsedObject(run.standardOutput)["idNumber"].toString(),
              builtInCard("resident").idNumber);
    EXPECT_TRUE(QFile::exists(path("card.rec")));
}

TEST_F(Usb, PhotoNotDecodedAndFilesNotWritten_AreBothReportedAndTheFilesDecideTheStatus)
{
    plugIn("resident", "photo-undecodable");
    writeFile(path("file"), "in the way");
    const ProcessResult run = usb({"--json", "--out", path("file") + "/below"});
    EXPECT_EQ(run.exitStatus, 7);
    EXPECT_THAT(run.error(),
                AllOf(HasSubstr("could not be made"), HasSubstr("could not be decoded")));
    EXPECT_EQ(parsedObject(run.standardOutput)["photo"].toObject()["file"], QJsonValue());
}

TEST_F(Usb, CardThatComesLaterIsReadByANewLook)
{
    plugIn("resident", "no-card=2");
    EXPECT_EQ(usb({"--wait", "30"}).exitStatus, 0);
    EXPECT_EQ(bus().holdings().timesOpened, 3);
}

TEST_F(Usb, CardThatGaveNoDataIsLookedForAgain)
{
    plugIn("resident", "transient-failures=1");
    EXPECT_EQ(usb({"--wait", "30"}).exitStatus, 0);
    EXPECT_EQ(bus().holdings().timesOpened, 2);
}

TEST_F(Usb, WaitForACardEndsWhenItsTimeIsOver)
{
    plugIn("");
    QElapsedTimer time;
    time.start();
    const ProcessResult run = usb({"--wait", "1"});
    expectEnd(run, 4, "Code: -10 (USB_READER_LOOKUP_MISMATCH)");
    EXPECT_GE(time.elapsed(), 1000);
}

TEST_F(Usb, OtherIdsAreFoundInEitherCase)
{
    simulator::VirtualReader other({}, {0xABCD, 0x12EF});
    bus().add(other);
    for (const char *device : {"abcd:12ef", "ABCD:12EF"}) {
        EXPECT_THAT(runTool({"usb", "--device", device}, onBus()).error(), HasSubstr("Code: -10"));
    }
}

std::vector<usb_test::Failure> failuresWithoutPermission()
{
    std::vector<usb_test::Failure> failures = usb_test::failures();
    failures.erase(std::remove_if(failures.begin(), failures.end(),
                                  [](const auto &failure) { return failure.code == -6; }),
                   failures.end());
    return failures;
}

class UsbFailure : public Usb, public testing::WithParamInterface<usb_test::Failure>
{
};

TEST_P(UsbFailure, IsExplainedWithItsCodeAndEndsWithItsStatus)
{
    bus().add(otherDevice());
    plugIn("resident", GetParam().fault);
    const ProcessResult run = usb({"--out", out(), "--raw", path("card.rec")});
    EXPECT_TRUE(run.finished);
    EXPECT_EQ(run.exitStatus, GetParam().exitStatus);
    EXPECT_THAT(run.output(), IsEmpty());
    EXPECT_THAT(run.error(),
                AllOf(HasSubstr("Code: " + GetParam().codeText()), HasSubstr(GetParam().summary),
                      HasSubstr("Cause:"), HasSubstr("What to do:"), HasSubstr("1209:0001")));
    EXPECT_FALSE(QDir(out()).exists());
    EXPECT_FALSE(QFile::exists(path("card.rec")));
}

INSTANTIATE_TEST_SUITE_P(Faults, UsbFailure, testing::ValuesIn(failuresWithoutPermission()));

TEST_F(Usb, MissingPermissionNamesTheNodeTheProgramAndTheGroup)
{
    if (!qEnvironmentVariableIsEmpty("IDCARD_TEST_EMULATOR"))
        GTEST_SKIP() << "the emulator cannot start a program as another user";
    plugIn("resident", "permission-denied");
    const ProcessResult run = runToolAsOrdinaryUser({"usb", "--device", DEVICE}, onBus());
    EXPECT_EQ(run.exitStatus, 3);
    EXPECT_THAT(run.error(),
                AllOf(HasSubstr("Code: -6 (USB_READER_NO_PERMISSION)"),
                      HasSubstr("Device: 1209:0001 at " + node(reader()).toStdString()),
                      HasSubstr("\"idcard-reader-access\" as root"),
                      HasSubstr("idcard-reader. A user")));
}

TEST_F(Usb, ListShowsTheReaderAndWhetherItMayBeOpened)
{
    if (!qEnvironmentVariableIsEmpty("IDCARD_TEST_EMULATOR"))
        GTEST_SKIP() << "the emulator cannot start a program as another user";
    plugIn("resident", "permission-denied");
    for (const QFileDevice::Permissions forOthers :
         {QFileDevice::Permissions(), QFileDevice::Permissions(QFileDevice::ReadOther)}) {
        ASSERT_TRUE(QFile::setPermissions(bus().folder() + node(reader()),
                                          QFileDevice::ReadOwner | forOthers));
        const ProcessResult run = runToolAsOrdinaryUser({"usb", "--list", "--json"}, onBus());
        EXPECT_EQ(run.exitStatus, 0) << run.error();
        const QJsonArray devices = QJsonDocument::fromJson(run.standardOutput).array();
        ASSERT_EQ(devices.size(), 1);
        EXPECT_FALSE(devices.first().toObject()["mayOpen"].toBool(true)) << int(forOthers);
    }
}

TEST_F(Usb, ListShowsWhatThereIsWithoutOpeningIt)
{
    otherDevice().isReader = false;
    bus().add(otherDevice());
    plugIn("");
    const QString system = systemFolder(otherDevice());
    writeFile(system + "manufacturer", "Maker\n");
    writeFile(system + "product", "Key board\n");
    const auto row = [this](const simulator::UsbDevice &device, const QString &ids, bool hasPipes,
                            const QJsonValue &manufacturer, const QJsonValue &product) {
        return QJsonObject{{"device", ids},
                           {"bus", bus().address(device).bus},
                           {"address", bus().address(device).device},
                           {"node", node(device)},
                           {"mayOpen", true},
                           {"class", "vendor-specific"},
                           {"manufacturer", manufacturer},
                           {"product", product},
                           {"hasReaderPipes", hasPipes}};
    };
    const QJsonArray expected{row(otherDevice(), "1210:0001", false, "Maker", "Key board"),
                              row(reader(), DEVICE, true, {}, {})};

    const ProcessResult run = runTool({"usb", "--list", "--json"}, onBus());
    expectEnd(run, 0);
    EXPECT_EQ(run.output(), QJsonDocument(expected).toJson().toStdString());
    EXPECT_EQ(bus().holdings().timesOpened, 0);

    const std::string table = runTool({"usb", "--list"}, onBus()).output();
    EXPECT_THAT(table, AllOf(HasSubstr("DEVICE "), HasSubstr("\n1209:0001  /dev/bus/usb/"),
                             HasSubstr("Maker Key board (vendor-specific)\n")));
}

TEST_F(Usb, EmptyListSaysWhatToLookAtAndIsNoFailure)
{
    const ProcessResult run = runTool({"usb", "--list", "--json"}, onBus());
    expectEnd(run, 0, "There is no USB device here");
    EXPECT_EQ(QJsonDocument::fromJson(run.standardOutput), QJsonDocument(QJsonArray()));
}

TEST_F(Usb, ReaderThatNeverTakesACommandIsLeftSoonAfterASignal)
{
    plugIn("resident", "lookup-command-missing");
    leaveItToTheSystem();
    RunningTool tool({"usb", "--device", DEVICE, "--verbose"}, onBus());
    EXPECT_TRUE(tool.waitForError("open usb device success!"));
    const ProcessResult run = tool.endedBy(SIGTERM);
    expectEnd(run, 5, "was broken off");
}

} // namespace
