// "idcard-reader doctor" with a reader on the emulated bus, and what all its reports have in
// common.

#include <fcntl.h>
#include <unistd.h>

#include "tests/doctor/doctor_runner.h"
#include "tests/usb/reader_on_bus.h"

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

/** With a reader on the emulated bus. */
class DoctorOnTheBus : public Doctor, public usb_test::ReaderOnBus
{
protected:
    void SetUp() override
    {
        Doctor::SetUp();
        const Variables onBus = bus().childEnvironment();
        for (auto it = onBus.cbegin(); it != onBus.cend(); ++it)
            variables()[it.key()] = it.value();
    }

    void TearDown() override
    {
        EXPECT_EQ(bus().holdings().timesOpened, 0);
        EXPECT_EQ(bus().calls(reader()), QStringList());
    }

    void plugIn(const QString &faults = {}) { ReaderOnBus::plugIn({}, faults); }
    QString node() { return ReaderOnBus::node(reader()); }

    ProcessResult runAsOrdinaryUser(const QStringList &arguments)
    {
        return runToolAsOrdinaryUser(QStringList{"doctor"} + arguments, {variables()});
    }
};

TEST_F(DoctorOnTheBus, EmptyBusIsAFailure)
{
    expectFinding("usb-reader", "failure", "No device on the USB bus could be a reader",
                  {"--road", "usb"});
    plugIn();
}

TEST_F(DoctorOnTheBus, OtherDevicesThanTheOneAskedForAreAFailure)
{
    plugIn();
    expectFinding("usb-reader", "failure", "1209:00ab is not on the USB bus; 1 other devices",
                  {"--road", "usb", "--device", "1209:00AB"});
}

TEST_F(DoctorOnTheBus, ReaderIsFoundByItsPipesAndNotOpened)
{
    plugIn();
    for (const QStringList &arguments : {QStringList{}, QStringList{"--device", "1209:0001"}}) {
        const QJsonObject report =
            reportOf(run(QStringList{"--json", "--road", "usb"} + arguments));
        const QJsonObject reader = findingIn(report, "usb-reader");
        EXPECT_EQ(reader["level"].toString(), "ok");
        EXPECT_THAT(textOf(reader), HasSubstr(node().toStdString()));
        EXPECT_EQ(findingIn(report, "usb-permission")["level"].toString(), "ok");
        EXPECT_EQ(findingIn(report, "usb-driver")["level"].toString(), "ok");
        EXPECT_EQ(findingIn(report, "usb-holder")["level"].toString(), "ok");
    }
}

TEST_F(DoctorOnTheBus, RuleThatIsNotInstalledIsReported)
{
    plugIn();
    const QJsonObject finding = findingIn(reportOf(run({"--json", "--road", "usb"})), "usb-rule");
    const bool isInstalled = !finding["text"].toString().contains("is in none of udev's folders");
    EXPECT_EQ(finding["level"].toString(), isInstalled ? "ok" : "warning");
}

TEST_F(DoctorOnTheBus, NodeThatThisUserMayNotOpenIsAFailure)
{
    plugIn("permission-denied");
    if (isEmulated())
        GTEST_SKIP() << "the emulator cannot start a program as another user";
    const ProcessResult json = runAsOrdinaryUser({"--json", "--road", "usb"});
    EXPECT_EQ(json.exitStatus, 10);
    const QJsonObject report = reportOf(json);
    const QJsonObject finding = findingIn(report, "usb-permission");
    EXPECT_EQ(finding["level"].toString(), "failure");
    EXPECT_THAT(textOf(finding), HasSubstr("mode 0000"));
    const QJsonObject group = findingIn(report, "usb-group");
    EXPECT_EQ(group["level"].toString(), "failure");
    const ProcessResult text = runAsOrdinaryUser({"--road", "usb"});
    EXPECT_EQ(text.exitStatus, 10);
    EXPECT_THAT(QString::fromUtf8(text.standardOutput).simplified().toStdString(),
                AllOf(HasSubstr("FAILURE Permission This user may not open " +
                                node().toStdString() + ": mode 0000"),
                      ContainsRegex("as root: \\S*/idcard-reader-access --device 1209:0001 ")));
}

TEST_F(DoctorOnTheBus, DeviceThatADriverHoldsIsNoReader)
{
    plugIn();
    bindDriver(reader(), "usb-storage");
    expectFinding("usb-reader", "failure", "could be a reader; 1 other devices", {"--road", "usb"});
}

TEST_F(DoctorOnTheBus, DriverThatIsBoundToTheReaderAskedForIsAWarning)
{
    plugIn();
    bindDriver(reader(), "usbserial_generic");
    const QStringList arguments{"--road", "usb", "--device", "1209:0001"};
    const QJsonObject report = reportOf(run(QStringList{"--json"} + arguments));
    EXPECT_EQ(findingIn(report, "usb-driver")["level"].toString(), "warning");
    EXPECT_THAT(QString::fromUtf8(run(arguments).standardOutput).toStdString(),
                HasSubstr("warning  Kernel driver    \"usbserial_generic\" is bound"));
}

TEST_F(DoctorOnTheBus, ProgramThatHasTheNodeOpenIsAWarning)
{
    plugIn();
    const int descriptor = open((bus().folder() + node()).toLocal8Bit().constData(), O_RDONLY);
    ASSERT_GE(descriptor, 0);
    expectFinding("usb-holder", "warning", "(process " + std::to_string(getpid()) + ')',
                  {"--road", "usb"});
    close(descriptor);
}

TEST_F(DoctorOnTheBus, ProgramThatHoldsTheReaderIsAFailure)
{
    plugIn();
    bindDriver(reader(), "usbfs");
    expectFinding("usb-holder", "failure", "The reader is held by a program that this user cannot",
                  {"--road", "usb"});
}

TEST_F(DoctorOnTheBus, NothingOnTheMachineIsChanged)
{
    plugIn();
    for (const char *folder : {"home", "cache", "run", "work"})
        QDir().mkpath(path(folder));
    set("HOME", path("home"));
    set("XDG_CACHE_HOME", path("cache"));
    set("XDG_RUNTIME_DIR", path("run"));
    QFile::setPermissions(path("run"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    set("TMPDIR", path("work"));
    // Fontconfig would keep what it found out about these fonts.
    writeFile(path("fonts.conf"),
              "<fontconfig><dir>/usr/share/fonts/opentype/noto</dir><cachedir>" +
                  path("cache").toUtf8() + "</cachedir></fontconfig>");
    set("FONTCONFIG_FILE", path("fonts.conf"));
    runIn(path("work"));
    const auto before = folderState(path("."));
    for (const QStringList &arguments : {QStringList{}, QStringList{"--json", "--verbose"}}) {
        const ProcessResult result = run(arguments);
        EXPECT_TRUE(result.finished);
        EXPECT_GE(result.exitStatus, 9);
    }
    EXPECT_EQ(folderState(path(".")), before);
    for (const char *folder : {"home", "cache", "run", "work"})
        EXPECT_THAT(namesIn(path(folder)), IsEmpty()) << folder;
    EXPECT_EQ(modeOf(path("run")), 0700);
    EXPECT_THAT(bus().leftOvers(), IsEmpty());
}

/** Behind all others, since tests run in the order in which they stand. */
TEST(DoctorsSchema, FitsEveryReportOfTheseTests)
{
    const auto count = QDir(samples().path()).entryList(QDir::Files).size();
    if (count == 0)
        GTEST_SKIP() << "no other test ran";
    ProcessInput input;
    input.environment = {{"LD_PRELOAD", QString()}, {"UMOCKDEV_DIR", QString()}};
    const ProcessResult run =
        runProcess("/usr/bin/python3",
                   {QStringLiteral(IDCARD_SOURCE_DIR "/tests/doctor/check_doctor_schema.py"),
                    QStringLiteral(IDCARD_SOURCE_DIR "/docs/doctor.schema.json"), samples().path()},
                   input);
    EXPECT_EQ(run.exitStatus, 0) << run.error();
    EXPECT_EQ(run.output(), std::to_string(count) + " reports checked\n");
}

} // namespace
