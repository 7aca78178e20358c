// "idcard-reader doctor": the built program on machines with one fault each.

#include <memory>

#include <gmock/gmock.h>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLibraryInfo>

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "simulator/virtual_reader.h"
#include "tests/support/running_process.h"
#include "tests/tool/folder_state.h"
#include "tests/tool/tool_runner.h"
#include "tests/usb/emulated_bus.h"

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace
{

using Variables = QMap<QString, QString>;

/** All reports in JSON that the tests of this program saw. */
QTemporaryDir &samples()
{
    static QTemporaryDir folder;
    return folder;
}

QString builtLibrary(const char *fault)
{
    return QDir(IDCARD_BUILD_LIB_DIR)
        .filePath(QStringLiteral("libidcard_maker_%1.so").arg(QLatin1String(fault)));
}

/** Whether the kernel can keep a process from writing files; emulators of processors cannot. */
bool canForbidWriting()
{
    return syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) > 0;
}

bool isEmulated()
{
    return !qEnvironmentVariableIsEmpty("IDCARD_TEST_EMULATOR");
}

class Doctor : public testing::Test
{
protected:
    void SetUp() override { set("LD_LIBRARY_PATH", m_installed.variables({})["LD_LIBRARY_PATH"]); }

    void set(const char *name, const QString &value) { m_variables[QLatin1String(name)] = value; }
    QString path(const QString &name) const { return m_base.filePath(name); }

    /** Puts a file under the name of the maker's library, in the place of the one that is there. */
    void install(const QByteArray &content)
    {
        QDir().mkpath(path("vendor"));
        QFile::remove(path("vendor/" IDCARD_VENDOR_READER_LIBRARY));
        writeFile(path("vendor/" IDCARD_VENDOR_READER_LIBRARY), content);
        set("LD_LIBRARY_PATH", path("vendor") + ':' + m_installed.variables({})["LD_LIBRARY_PATH"]);
    }

    /** Behind what is preloaded already: a sanitizer wants to be the first of all. */
    void preload(const char *name)
    {
        QStringList all = {QDir(IDCARD_BUILD_LIB_DIR).filePath(QLatin1String(name))};
        if (!qEnvironmentVariableIsEmpty("LD_PRELOAD"))
            all.prepend(qEnvironmentVariable("LD_PRELOAD"));
        set("LD_PRELOAD", all.join(':'));
    }

    void runFrom(const QString &program) { m_program = program; }

    ProcessResult run(const QStringList &arguments) const
    {
        ProcessInput input;
        input.environment = m_variables;
        return m_program.isEmpty()
                   ? runTool(QStringList{"doctor"} + arguments, input)
                   : runProcess(m_program, QStringList{"doctor"} + arguments, input);
    }

    /** The report of a run in JSON, which is kept for the test of the schema. */
    static QJsonObject reportOf(const ProcessResult &run)
    {
        static int count = 0;
        EXPECT_TRUE(run.finished) << run.standardError.toStdString();
        writeFile(samples().filePath(QStringLiteral("%1.json").arg(++count)), run.standardOutput);
        return parsedObject(run.standardOutput);
    }

    static QJsonObject findingIn(const QJsonObject &report, const char *check)
    {
        for (const auto &value : report["findings"].toArray()) {
            if (value.toObject()["check"].toString() == QLatin1String(check))
                return value.toObject();
        }
        ADD_FAILURE() << "no finding of " << check;
        return {};
    }

    /**
     * Runs the program twice: its JSON has this finding, its text this part behind the title, and
     * the exit status is that of the level. Returns the finding.
     */
    QJsonObject expectFinding(const char *check, const char *level, const char *part,
                              const QStringList &arguments)
    {
        const int status = QLatin1String(level) == QLatin1String("failure") ? 10 : 9;
        const ProcessResult json = run(arguments + QStringList{"--json"});
        EXPECT_EQ(json.exitStatus, status) << json.standardError.toStdString();
        const QJsonObject report = reportOf(json);
        EXPECT_EQ(report["result"].toString(), level);
        const QJsonObject finding = findingIn(report, check);
        EXPECT_EQ(finding["level"].toString(), level);
        EXPECT_THAT(finding["text"].toString().toStdString(), HasSubstr(part));
        EXPECT_THAT(finding["remedy"].toString().toStdString(), Not(IsEmpty()));

        if (isEmulated())
            return finding; // the text differs by no processor, and a run takes ten times as long
        const ProcessResult text = run(arguments);
        EXPECT_EQ(text.exitStatus, status);
        EXPECT_THAT(text.standardError.toStdString(), IsEmpty());
        const QString flat = QString::fromUtf8(text.standardOutput).simplified();
        const QString marker = status == 10 ? "FAILURE" : "warning";
        EXPECT_THAT(flat.toStdString(), HasSubstr(part));
        EXPECT_THAT(flat.toStdString(), HasSubstr(marker.toStdString()));
        return finding;
    }

    QJsonObject expectFault(const char *check, const char *level, const char *part)
    {
        return expectFinding(check, level, part, {"--road", "library"});
    }

    Variables &variables() { return m_variables; }

private:
    QTemporaryDir m_base;
    InstalledReader m_installed;
    Variables m_variables;
    QString m_program;
};

TEST_F(Doctor, MachineInOrderIsFine)
{
    const ProcessResult text = run({"--road", "library"});
    EXPECT_EQ(text.exitStatus, 0);
    EXPECT_THAT(text.standardError.toStdString(), IsEmpty());
    EXPECT_THAT(text.standardOutput.toStdString(), EndsWith("\n\nAll is fine: 10 checks.\n"));
    const ProcessResult json = run({"--road", "library", "--json"});
    EXPECT_EQ(json.exitStatus, 0);
    const QJsonObject report = reportOf(json);
    EXPECT_EQ(report["result"].toString(), "ok");
    const QJsonObject resolution = findingIn(report, "resolution")["facts"].toObject();
    EXPECT_NEAR(resolution["dpiX"].toDouble(), 100, 1e-6);
    EXPECT_NEAR(resolution["cardWidth"].toDouble(), 85.6 / 25.4 * 100, 1e-6);
    const QJsonObject font = findingIn(report, "number-font")["facts"].toObject();
    EXPECT_EQ(font["got"].toString(), "Noto Sans Mono CJK SC");
    EXPECT_EQ(font["faces"].toArray(), QJsonArray{"Noto Sans Mono CJK SC Bold"});
}

TEST_F(Doctor, LinesFitATerminalButForCommandsAndPaths)
{
    set("LC_ALL", "xx_YY.UTF-8");
    const ProcessResult text = run({});
    for (const QByteArray &line : text.standardOutput.split('\n')) {
        if (!line.contains('/') && !line.startsWith("ln ")) {
            EXPECT_LE(QString::fromUtf8(line).size(), 79) << line.toStdString();
        }
    }
}

TEST_F(Doctor, VerboseShowsWhatLibrariesPrintAndItIsNeverInTheReport)
{
    install(readFile(builtLibrary("WRITES")));
    const ProcessResult quiet = run({"--road", "library"});
    EXPECT_THAT(quiet.standardError.toStdString(), IsEmpty());
    const ProcessResult verbose = run({"--road", "library", "--verbose"});
    EXPECT_THAT(verbose.standardError.toStdString(), testing::StartsWith("noise\nnoise\n"));
    EXPECT_EQ(verbose.standardOutput.toStdString(), quiet.standardOutput.toStdString());
    EXPECT_EQ(verbose.exitStatus, 0);
}

TEST_F(Doctor, OtherVersionsAreTold)
{
    preload("libidcard_other_versions.so");
    const QJsonObject qt = expectFault(
        "qt-version", "failure", "5.9.5, built with " QT_VERSION_STR ": they do not go together");
    EXPECT_EQ(qt["facts"].toObject()["running"].toString(), "5.9.5");
    const QJsonObject report = reportOf(run({"--road", "library", "--json"}));
    const QJsonObject library = findingIn(report, "library-version");
    EXPECT_EQ(library["level"].toString(), "warning");
    EXPECT_EQ(library["facts"].toObject()["library"].toString(), "version:0.9.0");
}

TEST_F(Doctor, MissingLocaleIsAWarning)
{
    set("LC_ALL", "xx_YY.UTF-8");
    expectFault("locale", "warning", "This system has no locale \"xx_YY.UTF-8\"");
}

TEST_F(Doctor, LocaleWithoutUtf8IsAWarning)
{
    set("LC_ALL", "C");
    expectFault("locale", "warning", "\"C\" has the encoding ANSI_X3.4-1968, not UTF-8");
}

TEST_F(Doctor, MakersLibraryThatIsNowhereIsAFailure)
{
    set("LD_LIBRARY_PATH", path("nothing"));
    const QJsonObject finding = expectFault("reader-library", "failure", "is not here; looked in");
    EXPECT_EQ(finding["facts"].toObject()["problem"].toString(), "not-found");
    EXPECT_TRUE(finding["facts"].toObject()["places"].toArray().contains(path("nothing")));
    const QJsonObject report = reportOf(run({"--road", "library", "--json"}));
    EXPECT_EQ(findingIn(report, "photo-decoder")["level"].toString(), "warning");
}

TEST_F(Doctor, MakersLibraryForAnotherProcessorIsAFailure)
{
    QByteArray content = readFile(builtLibrary("WRITES"));
    content[18] = '\xf3'; // EM_RISCV
    content[19] = '\0';
    install(content);
    // Where it does not go the loader goes on, and finds the one that is installed.
    EXPECT_EQ(run({"--road", "library"}).exitStatus, 0);
    set("LD_LIBRARY_PATH", path("vendor"));
    const QJsonObject finding =
        expectFault("reader-library", "failure", "is for another processor: RISC-V");
    EXPECT_EQ(finding["facts"].toObject()["problem"].toString(), "other-machine");
}

TEST_F(Doctor, MakersLibraryThatIsCutOffIsAFailure)
{
    install(readFile(builtLibrary("WRITES")).left(5000));
    const QJsonObject finding =
        expectFault("reader-library", "failure", "is cut off: 5000 bytes are less than");
    EXPECT_EQ(finding["facts"].toObject()["problem"].toString(), "truncated");
}

TEST_F(Doctor, MakersLibraryWithoutAFunctionIsAFailure)
{
    install(readFile(builtLibrary("LACKS_FUNCTIONS")));
    const QJsonObject finding =
        expectFault("reader-library", "failure",
                    "has no function KVO_FindIDCard, KVO_ReadIDCard, KVO_ClosePort");
    EXPECT_EQ(finding["facts"].toObject()["problem"].toString(), "missing-function");
}

TEST_F(Doctor, MakersLibraryWithoutALibraryThatItNeedsIsAFailure)
{
    install(readFile(builtLibrary("NEEDS_ANOTHER")));
    const QJsonObject finding =
        expectFault("reader-library", "failure", "needs libidcard_maker_needed.so, which is not");
    EXPECT_EQ(finding["facts"].toObject()["problem"].toString(), "missing-dependency");
}

TEST_F(Doctor, MakersLibraryThatCrashesIsAFailureAndLeavesNoCoreFile)
{
    install(readFile(builtLibrary("CRASHES")));
    const QJsonObject finding = expectFault("reader-library", "failure", "crashes (signal 6");
    EXPECT_EQ(finding["facts"].toObject()["problem"].toString(), "crash");

    rlimit limit{};
    getrlimit(RLIMIT_CORE, &limit);
    const rlimit all{limit.rlim_max, limit.rlim_max};
    setrlimit(RLIMIT_CORE, &all);
    QDir().mkpath(path("here"));
    ProcessInput input;
    input.environment = variables();
    input.workingDirectory = path("here");
    EXPECT_EQ(runTool({"doctor", "--road", "library"}, input).exitStatus, 10);
    EXPECT_THAT(namesIn(path("here")), IsEmpty());
    setrlimit(RLIMIT_CORE, &limit);
}

TEST_F(Doctor, FunctionsThatAreInTheProcessAreTakenFromThere)
{
    set("LD_LIBRARY_PATH", path("nothing"));
    preload("libidcard_simulator.so");
    const QJsonObject report = reportOf(run({"--road", "library", "--json"}));
    for (const char *check : {"reader-library", "photo-decoder"}) {
        const QJsonObject finding = findingIn(report, check);
        EXPECT_EQ(finding["level"].toString(), "ok");
        EXPECT_TRUE(finding["facts"].toObject()["isInProcess"].toBool());
        EXPECT_THAT(finding["text"].toString().toStdString(), EndsWith("/libidcard_simulator.so"));
    }
}

TEST_F(Doctor, DisplayThatIsNotThereIsAFailureAndTheRestIsLookedAt)
{
    set("QT_QPA_PLATFORM", "xcb");
    expectFault("screen", "failure",
                "Qt does not come up with the platform \"xcb\": could not connect to display");
    const QJsonObject report = reportOf(run({"--road", "library", "--json"}));
    EXPECT_EQ(report["counts"].toObject()["failure"].toInt(), 1);
    EXPECT_EQ(report["findings"].toArray().size(), 9) << "no resolution without a screen";
}

TEST_F(Doctor, PlatformThatQtDoesNotHaveIsAFailure)
{
    set("QT_QPA_PLATFORM", "no-such-platform");
    expectFault("screen", "failure", "Could not find the Qt platform plugin \"no-such-platform\"");
}

TEST_F(Doctor, OffscreenForWantOfADisplayIsAWarning)
{
    set("QT_QPA_PLATFORM", QString());
    const QJsonObject finding = expectFault("screen", "warning", "There is no display.");
    EXPECT_EQ(finding["facts"].toObject()["platform"].toString(), "offscreen");
}

TEST_F(Doctor, UnbelievableResolutionIsAFailure)
{
    set("QT_QPA_PLATFORM", "vnc:size=800x600:mmsize=1x1:port=0");
    const QJsonObject finding =
        expectFault("resolution", "failure", "The screen claims 20320 x 15240 dpi (1 x 1 mm)");
    EXPECT_NEAR(finding["facts"].toObject()["cardWidth"].toDouble(), 68480, 1e-6);
}

TEST_F(Doctor, UnusualAndUnequalResolutionsAreWarnings)
{
    set("QT_QPA_PLATFORM", "vnc:size=800x600:mmsize=400x300:port=0");
    expectFault("resolution", "warning", "The screen claims 50.8 dpi (400 x 300 mm), which is");
    set("QT_QPA_PLATFORM", "vnc:size=800x600:mmsize=200x120:port=0");
    expectFault("resolution", "warning", "different resolutions across and down, 101.6 x 127 dpi");
}

/** The program in a folder of its own, whose Qt plug-ins are those of that folder. */
class DoctorWithOwnPlugins : public Doctor
{
protected:
    void SetUp() override
    {
        Doctor::SetUp();
        QDir().mkpath(path("bin"));
        QDir().mkpath(path("plugins"));
        ASSERT_TRUE(QFile::copy(QDir(IDCARD_BUILD_BIN_DIR).filePath("idcard-reader"),
                                path("bin/idcard-reader")));
        writeFile(path("bin/qt.conf"), "[Paths]\nPlugins=" + path("plugins").toLocal8Bit() + '\n');
        runFrom(path("bin/idcard-reader"));
    }

    void takePlatforms() const
    {
        const QString plugins = QLibraryInfo::location(QLibraryInfo::PluginsPath);
        ASSERT_TRUE(QFile::link(plugins + "/platforms", path("plugins/platforms")));
    }
};

TEST_F(DoctorWithOwnPlugins, MissingJpegPluginIsAFailure)
{
    takePlatforms();
    const QJsonObject finding = expectFault("jpeg", "failure", "Qt has no JPEG plug-in");
    EXPECT_TRUE(finding["facts"].toObject()["pluginFolders"].toArray().contains(path("plugins")));
}

TEST_F(DoctorWithOwnPlugins, BrokenJpegPluginIsAFailure)
{
    takePlatforms();
    QDir().mkpath(path("plugins/imageformats"));
    writeFile(path("plugins/imageformats/libqjpeg.so"), QByteArray(5000, 'x'));
    const QJsonObject finding = expectFault("jpeg", "failure", "Qt's JPEG plug-in does not work");
    EXPECT_EQ(finding["facts"].toObject()["file"].toString(),
              path("plugins/imageformats/libqjpeg.so"));
}

TEST_F(DoctorWithOwnPlugins, QtWithoutAnyPlatformFailsInEverythingThatItPaints)
{
    const QJsonObject report = reportOf(run({"--road", "library", "--json"}));
    for (const char *check : {"screen", "jpeg", "text-font", "number-font"}) {
        EXPECT_EQ(findingIn(report, check)["level"].toString(), "failure") << check;
    }
}

TEST_F(Doctor, NoChineseFontIsAFailure)
{
    writeFile(path("fonts.conf"),
              "<fontconfig><dir>" + path("none").toUtf8() + "</dir></fontconfig>");
    set("FONTCONFIG_FILE", path("fonts.conf"));
    const QJsonObject finding =
        expectFault("text-font", "failure", "no font here has the Chinese characters");
    EXPECT_FALSE(finding["facts"].toObject()["hasChinese"].toBool(true));
}

TEST_F(Doctor, FontWithoutTheStandInFileIsAWarning)
{
    writeFile(path("fonts.conf"),
              "<fontconfig><dir>/usr/share/fonts/opentype/noto</dir><selectfont><rejectfont>"
              "<glob>*</glob></rejectfont><acceptfont>"
              "<glob>*/NotoSansCJK-Regular.ttc</glob></acceptfont></selectfont>"
              "<match target=\"pattern\"><edit name=\"family\" mode=\"assign_replace\" "
              "binding=\"strong\"><string>Noto Sans CJK JP</string></edit></match></fontconfig>");
    set("FONTCONFIG_FILE", path("fonts.conf"));
    const QJsonObject finding = expectFault("number-font", "warning", "no stand-in is named");
    EXPECT_FALSE(finding["facts"].toObject()["isStandIn"].toBool(true));
    EXPECT_TRUE(finding["facts"].toObject()["hasChinese"].toBool());
}

/** With a reader on the emulated bus. */
class DoctorOnTheBus : public Doctor
{
protected:
    void SetUp() override
    {
        Doctor::SetUp();
        const Variables bus = m_bus.childEnvironment();
        for (auto it = bus.cbegin(); it != bus.cend(); ++it)
            variables()[it.key()] = it.value();
    }

    void TearDown() override
    {
        EXPECT_EQ(m_bus.holdings().timesOpened, m_timesOpened);
        EXPECT_EQ(m_bus.calls(m_reader), QStringList());
    }

    void plugIn(const QString &faults = {})
    {
        QString problem;
        ASSERT_TRUE(m_reader.slot().setFaults(faults, &problem)) << problem.toStdString();
        m_bus.add(m_reader);
    }

    QString node() const
    {
        const auto address = m_bus.address(m_reader);
        return QStringLiteral("/dev/bus/usb/%1/%2")
            .arg(address.bus, 3, 10, QLatin1Char('0'))
            .arg(address.device, 3, 10, QLatin1Char('0'));
    }

    /** Binds a driver to the reader's interface 0, as the kernel shows it. */
    void bind(const QString &driver) const
    {
        const auto address = m_bus.address(m_reader);
        const QString name = QStringLiteral("%1-%2").arg(address.bus).arg(address.device);
        const QString interface =
            QStringLiteral("%1/sys/bus/usb/devices/%2/%2:1.0").arg(m_bus.folder(), name);
        ASSERT_TRUE(QDir().mkpath(interface));
        ASSERT_TRUE(QFile::link("../../../../../bus/usb/drivers/" + driver, interface + "/driver"));
    }

    ProcessResult runAsOrdinaryUser(const QStringList &arguments)
    {
        QStringList command = usb_test::ordinaryUserCommand();
        command << QDir(IDCARD_BUILD_BIN_DIR).filePath("idcard-reader") << "doctor" << arguments;
        ProcessInput input;
        input.environment = variables();
        input.emulated = false;
        return runProcess(command.first(), command.mid(1), input);
    }

    usb_test::EmulatedBus &bus() { return m_bus; }

private:
    simulator::VirtualReader m_reader;
    usb_test::EmulatedBus m_bus;
    int m_timesOpened = 0;
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
    const QJsonObject finding =
        expectFinding("usb-reader", "failure", "1209:00ab is not on the USB bus; 1 other devices",
                      {"--road", "usb", "--device", "1209:00AB"});
    EXPECT_EQ(finding["facts"].toObject()["device"].toString(), "1209:00ab");
}

TEST_F(DoctorOnTheBus, ReaderIsFoundByItsPipesAndNotOpened)
{
    plugIn();
    for (const QStringList &arguments : {QStringList{}, QStringList{"--device", "1209:0001"}}) {
        const QJsonObject report =
            reportOf(run(QStringList{"--json", "--road", "usb"} + arguments));
        EXPECT_EQ(findingIn(report, "usb-reader")["level"].toString(), "ok");
        EXPECT_EQ(findingIn(report, "usb-reader")["facts"].toObject()["node"].toString(), node());
        EXPECT_EQ(findingIn(report, "usb-permission")["level"].toString(), "ok");
        EXPECT_EQ(findingIn(report, "usb-driver")["level"].toString(), "ok");
        EXPECT_EQ(findingIn(report, "usb-holder")["level"].toString(), "ok");
    }
}

TEST_F(DoctorOnTheBus, RuleThatIsNotInstalledIsTold)
{
    plugIn();
    const QJsonObject finding = findingIn(reportOf(run({"--json", "--road", "usb"})), "usb-rule");
    const bool isInstalled = !finding["facts"].toObject()["file"].isNull();
    EXPECT_EQ(finding["level"].toString(), isInstalled ? "ok" : "warning");
}

TEST_F(DoctorOnTheBus, NodeThatThisUserMayNotOpenIsAFailure)
{
    if (isEmulated())
        GTEST_SKIP() << "the emulator cannot start a program as another user";
    plugIn("permission-denied");
    const ProcessResult json = runAsOrdinaryUser({"--json", "--road", "usb"});
    EXPECT_EQ(json.exitStatus, 10);
    const QJsonObject report = reportOf(json);
    const QJsonObject finding = findingIn(report, "usb-permission");
    EXPECT_EQ(finding["level"].toString(), "failure");
    EXPECT_EQ(finding["facts"].toObject()["mode"].toString(), "0000");
    const QJsonObject group = findingIn(report, "usb-group");
    EXPECT_EQ(group["level"].toString(), "failure");
    const ProcessResult text = runAsOrdinaryUser({"--road", "usb"});
    EXPECT_EQ(text.exitStatus, 10);
    EXPECT_THAT(QString::fromUtf8(text.standardOutput).simplified().toStdString(),
                AllOf(HasSubstr("FAILURE Permission This user may not open " +
                                node().toStdString() + ": mode 0000"),
                      HasSubstr("-> Install the rule file 69-idcard-reader.rules")));
}

TEST_F(DoctorOnTheBus, DriverThatIsBoundIsAWarning)
{
    plugIn();
    bind("usbserial_generic");
    const QJsonObject finding = findingIn(reportOf(run({"--json", "--road", "usb"})), "usb-driver");
    EXPECT_EQ(finding["level"].toString(), "warning");
    EXPECT_EQ(finding["facts"].toObject()["driver"].toString(), "usbserial_generic");
    EXPECT_THAT(QString::fromUtf8(run({"--road", "usb"}).standardOutput).toStdString(),
                HasSubstr("warning  Kernel driver    \"usbserial_generic\" is bound"));
}

TEST_F(DoctorOnTheBus, ProgramThatHasTheNodeOpenIsAWarning)
{
    plugIn();
    const int descriptor = open((bus().folder() + node()).toLocal8Bit().constData(), O_RDONLY);
    ASSERT_GE(descriptor, 0);
    const QJsonObject finding = findingIn(reportOf(run({"--json", "--road", "usb"})), "usb-holder");
    close(descriptor);
    EXPECT_EQ(finding["level"].toString(), "warning");
    const QJsonArray processes = finding["facts"].toObject()["processes"].toArray();
    ASSERT_EQ(processes.size(), 1);
    EXPECT_EQ(processes.first().toObject()["process"].toInt(), getpid());
}

TEST_F(DoctorOnTheBus, ProgramThatHoldsTheReaderIsAFailure)
{
    plugIn();
    bind("usbfs");
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
    const QStringList road = canForbidWriting() ? QStringList() : QStringList{"--road", "usb"};
    const auto before = folderState(path("."));
    for (const QStringList &arguments : {QStringList{}, QStringList{"--json", "--verbose"}}) {
        ProcessInput input;
        input.environment = variables();
        input.workingDirectory = path("work");
        const ProcessResult result = runTool(QStringList{"doctor"} + road + arguments, input);
        EXPECT_TRUE(result.finished);
        EXPECT_GE(result.exitStatus, 9);
    }
    EXPECT_EQ(folderState(path(".")), before);
    EXPECT_EQ(modeOf(path("run")), 0700);
    EXPECT_THAT(bus().leftOvers(), IsEmpty());
}

/** The program on a machine whose maker's library hangs: it begins with the first test. */
class HangingRun : public testing::Environment
{
public:
    void SetUp() override
    {
        m_folder = std::make_unique<QTemporaryDir>();
        writeFile(m_folder->filePath(IDCARD_VENDOR_READER_LIBRARY),
                  readFile(builtLibrary("HANGS")));
        ProcessInput input;
        input.environment[QStringLiteral("LD_LIBRARY_PATH")] = m_folder->path();
        m_process = std::make_unique<RunningProcess>(
            QStringLiteral("idcard-reader"), QStringList{"doctor", "--road", "library"}, input);
    }
    void TearDown() override
    {
        m_process.reset();
        m_folder.reset();
    }
    ProcessResult result() { return m_process->result(); }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<RunningProcess> m_process;
};

// NOLINTNEXTLINE(cppcoreguidelines-owning-memory): GoogleTest takes it
auto *const hangingRun =
    static_cast<HangingRun *>(testing::AddGlobalTestEnvironment(new HangingRun));

TEST(DoctorOfAHangingLibrary, TellsThatItHangs)
{
    const ProcessResult run = hangingRun->result();
    ASSERT_TRUE(run.finished);
    EXPECT_EQ(run.exitStatus, 10);
    const QString text = QString::fromUtf8(run.standardOutput).simplified();
    EXPECT_THAT(text.toStdString(),
                AllOf(HasSubstr("FAILURE Maker's library Loading /"),
                      HasSubstr("/" IDCARD_VENDOR_READER_LIBRARY
                                " hangs, and with it every program that reads -> End other")));
}

/** Behind all others, since tests run in the order in which they stand. */
TEST(DoctorsSchema, FitsEveryReportOfTheseTests)
{
    const auto count = QDir(samples().path()).entryList(QDir::Files).size();
    if (count == 0)
        GTEST_SKIP() << "no other test ran";
    ProcessInput input;
    input.emulated = false;
    input.environment = {{"LD_PRELOAD", QString()}, {"UMOCKDEV_DIR", QString()}};
    const ProcessResult run =
        runProcess("/usr/bin/python3",
                   {QStringLiteral(IDCARD_SOURCE_DIR "/tests/tool/check_doctor_schema.py"),
                    QStringLiteral(IDCARD_SOURCE_DIR "/docs/doctor.schema.json"), samples().path()},
                   input);
    EXPECT_EQ(run.exitStatus, 0) << run.standardError.toStdString();
    EXPECT_EQ(run.standardOutput.toStdString(), std::to_string(count) + " reports checked\n");
}

} // namespace
