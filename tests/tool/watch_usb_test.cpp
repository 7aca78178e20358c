// "idcard-reader watch --road usb": the built program, the real libusb and a simulated reader on an
// emulated bus.

#include <csignal>

#include <gmock/gmock.h>

#include <QJsonArray>
#include <QThread>

#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"
#include "tests/usb/reader_on_bus.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

const QString DEVICE = QStringLiteral("1209:0001");

class WatchUsb : public FolderTest, public usb_test::ReaderOnBus
{
protected:
    WatchUsb() : ReaderOnBus({0x1210, 0x0001}) {}

    void TearDown() override { expectAllGivenBack(); }

    ProcessInput onBus() { return {bus().childEnvironment()}; }

    static QStringList watch(const QStringList &more = {})
    {
        return QStringList{"watch", "--road", "usb", "--simulator-photos", "--interval", "10"} +
               more;
    }

    void unplugFrom(const RunningTool &tool)
    {
        changeBeneath(tool, [this] { reader().unplug(); });
    }

    void plugInAgainTo(const RunningTool &tool)
    {
        changeBeneath(tool, [this] { reader().plugIn(); });
    }

    /** On the bus, where it can be plugged in. */
    void holdAnotherReady()
    {
        otherDevice().unplug();
        bus().add(otherDevice());
    }

    void plugInAnotherTo(const RunningTool &tool)
    {
        changeBeneath(tool, [this] { otherDevice().plugIn(); });
    }

    static std::string nameIn(const QByteArray &line)
    {
        return parsedObject(line)["name"].toString().toStdString();
    }
};

TEST_F(WatchUsb, LineHoldsTheSameAsReadPrints)
{
    plugIn("resident");
    const ProcessResult run = runTool(watch({"--count", "1"}), onBus());
    expectEnd(run, 0);
    EXPECT_EQ(run.standardOutput.count('\n'), 1);
    EXPECT_EQ(
        parsedObject(run.standardOutput),
        parsedObject(runTool({"usb", "--json", "--simulator-photos", "--device", DEVICE}, onBus())
                         .standardOutput));
}

TEST_F(WatchUsb, CardThatStaysIsPrintedOnceAndTheSignalEndsItWell)
{
    plugIn("resident");
    RunningTool tool(watch(), onBus());
    EXPECT_FALSE(tool.nextLine().isEmpty());
    QThread::msleep(300); // many looks
    const ProcessResult run = tool.endedBy(SIGTERM);
    expectEnd(run, 0);
    EXPECT_THAT(run.output(), IsEmpty());
}

TEST_F(WatchUsb, ReaderThatIsMissingIsReportedOnceAndItsCardPrintedWhenItComes)
{
    plugIn("resident");
    for (const QStringList &device : {QStringList{}, QStringList{"--device", DEVICE}}) {
        bus().change([this] { reader().unplug(); });
        RunningTool tool(watch({"--json"}) + device, onBus());
        EXPECT_TRUE(tool.waitForError("Watching goes on until the reader is there."));
        EXPECT_THAT(tool.nextLine().toStdString(), HasSubstr("USB_READER_NOT_FOUND"));
        QThread::msleep(100); // many looks
        plugInAgainTo(tool);
        EXPECT_EQ(nameIn(tool.nextLine()), builtInCard("resident").name.toStdString());
        const ProcessResult run = tool.endedBy(SIGTERM);
        EXPECT_EQ(run.exitStatus, 0);
        EXPECT_EQ(run.standardError.count("Code: "), 1) << run.error();
    }
}

TEST_F(WatchUsb, ReaderThatGoesAndComesIsReportedOnceAndItsCardIsTheSame)
{
    plugIn("resident");
    RunningTool tool(watch(), onBus());
    EXPECT_FALSE(tool.nextLine().isEmpty());
    unplugFrom(tool);
    EXPECT_TRUE(tool.waitForError("Watching goes on"));
    QThread::msleep(100);
    plugInAgainTo(tool);
    QThread::msleep(100);
    lay("hmt-macao");
    EXPECT_EQ(nameIn(tool.nextLine()), builtInCard("hmt-macao").name.toStdString());
    const ProcessResult run = tool.endedBy(SIGTERM);
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.output(), IsEmpty());
    EXPECT_EQ(run.standardError.count("Code: "), 1) << run.error();
}

TEST_F(WatchUsb, ReaderThatGoesDuringAReadingIsReportedAsUnplugged)
{
    plugIn("resident", "unplugged-during=4");
    RunningTool tool(watch(), onBus());
    EXPECT_TRUE(tool.waitForError("Watching goes on"));
    const ProcessResult run = tool.endedBy(SIGTERM);
    expectEnd(run, 0, "The reader was unplugged while it was used.");
    EXPECT_EQ(run.standardError.count("Code: "), 1) << run.error();
}

TEST_F(WatchUsb, AnotherReaderTakesThePlaceOfTheOnlyOne)
{
    plugIn("resident");
    holdAnotherReady();
    RunningTool tool(watch(), onBus());
    EXPECT_FALSE(tool.nextLine().isEmpty());
    unplugFrom(tool);
    EXPECT_TRUE(tool.waitForError("Watching goes on"));
    QString problem;
    ASSERT_TRUE(otherDevice().slot().putCard("hmt-macao", simulator::PutAs::DESCRIBED, &problem));
    plugInAnotherTo(tool);
    EXPECT_EQ(nameIn(tool.nextLine()), builtInCard("hmt-macao").name.toStdString());
    const ProcessResult run = tool.endedBy(SIGTERM);
    EXPECT_EQ(run.exitStatus, 0) << run.error();
}

TEST_F(WatchUsb, SeveralReadersInThePlaceOfTheOnlyOneAreReportedOnceUntilOneIsLeft)
{
    plugIn("resident");
    holdAnotherReady();
    RunningTool tool(watch({"--events"}), onBus());
    EXPECT_FALSE(tool.nextLine().isEmpty());
    EXPECT_FALSE(tool.nextLine().isEmpty());
    unplugFrom(tool);
    EXPECT_EQ(parsedObject(tool.nextLine())["event"], "reader-removed");
    changeBeneath(tool, [this] {
        otherDevice().plugIn();
        reader().plugIn();
    });
    EXPECT_EQ(errorNameIn(tool.nextLine()), "TOOL_SEVERAL_READERS");
    QThread::msleep(100); // many looks
    changeBeneath(tool, [this] { otherDevice().unplug(); });
    EXPECT_EQ(parsedObject(tool.nextLine())["event"], "reader-added");
    const ProcessResult run = tool.endedBy(SIGTERM);
    EXPECT_EQ(run.exitStatus, 0) << run.error();
}

TEST_F(WatchUsb, ReaderThatAnotherProgramHoldsIsThereAndItsFailureReportedOnce)
{
    plugIn("resident", "claimed-elsewhere");
    RunningTool tool(watch({"--events"}), onBus());
    EXPECT_EQ(parsedObject(tool.nextLine())["event"], "reader-added");
    EXPECT_EQ(errorNameIn(tool.nextLine()), "USB_READER_CLAIM_FAILED");
    QThread::msleep(100); // many looks
    const ProcessResult run = tool.endedBy(SIGTERM);
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.output(), IsEmpty());
}

TEST_F(WatchUsb, DeviceThatADriverTakesAfterTheFirstLook_DoesNotHoldTheWatch)
{
    QString problem;
    ASSERT_TRUE(otherDevice().slot().setFaults("claimed-elsewhere", &problem));
    bus().add(otherDevice());
    reader().unplug();
    plugIn("resident");
    RunningTool tool(watch({"--events"}), onBus());
    EXPECT_EQ(parsedObject(tool.nextLine())["event"], "reader-added");
    EXPECT_EQ(parsedObject(tool.nextLine())["error"].toObject()["name"], "USB_READER_CLAIM_FAILED");
    bindDriver(otherDevice(), "usb-storage");
    plugInAgainTo(tool);
    QJsonObject read;
    do {
        read = parsedObject(tool.nextLine());
    } while (read["event"] == "reader-removed" || read["event"] == "reader-added");
    EXPECT_EQ(read["card"].toObject()["name"].toString(), builtInCard("resident").name);
    const ProcessResult run = tool.endedBy(SIGTERM);
    EXPECT_EQ(run.exitStatus, 0) << run.error();
}

TEST_F(WatchUsb, SeveralReadersToBeginWithAreRefusedAndNoneIsOpened)
{
    bus().add(otherDevice());
    plugIn("resident");
    const ProcessResult run = runTool(watch({"--json"}), onBus());
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_EQ(errorNameIn(run.standardOutput), "TOOL_SEVERAL_READERS");
    EXPECT_THAT(run.error(), AllOf(HasSubstr("1209:0001"), HasSubstr("1210:0001")));
    EXPECT_EQ(bus().holdings().timesOpened, 0);
}

TEST_F(WatchUsb, SecondReaderDoesNotDisturbTheOneInUse)
{
    plugIn("resident");
    holdAnotherReady();
    RunningTool tool(watch(), onBus());
    EXPECT_FALSE(tool.nextLine().isEmpty());
    plugInAnotherTo(tool);
    lay("hmt-macao");
    EXPECT_EQ(nameIn(tool.nextLine()), builtInCard("hmt-macao").name.toStdString());
    const ProcessResult run = tool.endedBy(SIGTERM);
    expectEnd(run, 0);
}

TEST_F(WatchUsb, CardWhoseTextIsNotDecodedIsReportedOnce)
{
    plugIn("foreign-2017", "unknown-kind");
    RunningTool tool(watch({"--json"}), onBus());
    EXPECT_FALSE(tool.nextLine().isEmpty());
    QThread::msleep(100);
    const ProcessResult run = tool.endedBy(SIGTERM);
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.output(), IsEmpty());
}

TEST_F(WatchUsb, RecordWithAWrongChecksumIsReportedOnceAndTheCardNotedAsOdd)
{
    plugIn("resident", "read-answer-corrupted=17");
    RunningTool tool(watch(), onBus());
    EXPECT_TRUE(parsedObject(tool.nextLine())["notes"].toArray().contains("odd-record"));
    QThread::msleep(100); // many looks
    const ProcessResult run = tool.endedBy(SIGTERM);
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.standardError.count("The reader's answer is an odd record: at offset 2320"), 1)
        << run.error();
}

TEST_F(WatchUsb, PhotoThatNeedsTheSimulatorSaysSo)
{
    plugIn("resident");
    const ProcessResult run =
        runTool({"watch", "--road", "usb", "--count", "1", "--json"}, onBus());
    expectEnd(run, 0, "needs --simulator-photos");
    EXPECT_EQ(errorNameIn(run.standardOutput), "IDCARD_RESULT_PHOTO_NOT_DECODED");
}

TEST_F(WatchUsb, PhotoWithoutADecoderIsExplainedAsByUsb)
{
    plugIn("resident");
    const ProcessResult usb = runTool({"usb"}, onBus());
    EXPECT_EQ(usb.exitStatus, 6);
    EXPECT_EQ(runTool({"watch", "--road", "usb", "--count", "1"}, onBus()).error(), usb.error());
}

TEST_F(WatchUsb, EventsSayWhenReaderAndCardsComeAndGo)
{
    plugIn("resident");
    RunningTool tool(watch({"--events"}), onBus());
    const auto expectEvent = [&tool](const char *event) {
        const QJsonObject line = parsedObject(tool.nextLine());
        EXPECT_EQ(line["event"].toString().toStdString(), event);
        return line;
    };
    expectEvent("reader-added");
    const QJsonObject read = expectEvent("card-read");
    EXPECT_EQ(read["card"].toObject()["name"].toString(), builtInCard("resident").name);
    lay("hmt-macao");
    expectEvent("card-removed");
    EXPECT_EQ(expectEvent("card-read")["card"].toObject()["kind"], "hmt");
    unplugFrom(tool);
    expectEvent("reader-removed");
    takeOff();
    plugInAgainTo(tool);
    expectEvent("reader-added");
    expectEvent("card-removed");
    lay("resident", "read-answer-cut=8");
    const QJsonObject error = expectEvent("read-failed")["error"].toObject();
    EXPECT_EQ(error["name"], "USB_READER_DATA_LENGTH_INVALID");
    setFaults({});
    expectEvent("card-read");
    setFaults("read-answer-cut=8");
    expectEvent("read-failed");
    setFaults({});
    expectEvent("card-read");
    const ProcessResult run = tool.endedBy(SIGTERM);
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.output(), IsEmpty());
}

TEST_F(WatchUsb, CardThatGivesNoDataOnceIsNotReadASecondTimeAndIsRemovedWhenItGivesNoMore)
{
    plugIn("resident");
    RunningTool tool(watch({"--events"}), onBus());
    EXPECT_EQ(parsedObject(tool.nextLine())["event"], "reader-added");
    EXPECT_EQ(parsedObject(tool.nextLine())["event"], "card-read");
    setFaults("transient-failures=1");
    QThread::msleep(200); // many looks
    setFaults("read-fails=0");
    EXPECT_EQ(parsedObject(tool.nextLine())["event"], "card-removed");
    setFaults({});
    EXPECT_EQ(parsedObject(tool.nextLine())["event"], "card-read");
    const ProcessResult run = tool.endedBy(SIGTERM);
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.output(), IsEmpty());
    EXPECT_THAT(run.error(), IsEmpty());
}

TEST_F(WatchUsb, ReadingThatTakesTooLongEndsItWithAnEvent)
{
    plugIn("resident", "delay-ms=4000");
    const ProcessResult run = runTool(watch({"--events", "--timeout", "1"}), onBus());
    leaveItToTheSystem();
    EXPECT_EQ(run.exitStatus, 11);
    EXPECT_EQ(errorNameIn(run.standardOutput), "TOOL_READ_TIMED_OUT");
}

} // namespace
