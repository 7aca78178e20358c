// idcard-reader as a process: standard output, display, the simulator's library.

#include <csignal>

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/build_programs.h"
#include "tests/support/cancelled_thread.h"
#include "tests/support/files.h"
#include "tests/support/ignored_signal.h"
#include "tests/tool/tool_runner.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace
{

const QStringList READ_RESIDENT{"read", "--simulate", "resident"};

TEST(StandardOutput, HoldsNothingOfWhatTheLibraryPrintsWhenTheReaderDoesNotOpen)
{
    const ProcessResult run = runTool(READ_RESIDENT + QStringList{"--fault", "open-fails=3"});
    EXPECT_THAT(run.output(), IsEmpty());
    EXPECT_THAT(run.error(), Not(HasSubstr("打开读卡器失败")));
}

TEST(StandardOutput, IsTheSameAfterTransientFailures)
{
    const ProcessResult run =
        runTool(READ_RESIDENT + QStringList{"--fault", "transient-failures=3"});
    EXPECT_EQ(run.standardOutput, runTool(READ_RESIDENT).standardOutput);
    EXPECT_THAT(run.error(), IsEmpty());
}

TEST(StandardOutput, VerboseShowsWhatTheLibraryPrintsOnStandardError)
{
    const ProcessResult run =
        runTool(READ_RESIDENT + QStringList{"--fault", "transient-failures=3", "--verbose"});
    EXPECT_EQ(run.standardOutput, runTool(READ_RESIDENT).standardOutput);
    EXPECT_EQ(run.standardError.count("card reading fail!"), 3);
}

TEST(StandardOutput, VerboseShowsQtsWarningOfEveryPaintedTextOnce)
{
    const ProcessResult run = runTool(READ_RESIDENT + QStringList{"--verbose"});
    EXPECT_EQ(run.standardError.count("Attribute Qt::AA_EnableHighDpiScaling"), 1);
}

TEST(StandardOutput, DebugMessagesOfTheLibraryAppearOnlyWhenVerbose)
{
    const QStringList arguments = READ_RESIDENT + QStringList{"--fault", "photo-undecodable"};
    EXPECT_THAT(runTool(arguments).error(), Not(HasSubstr("解码头像数据失败")));
    EXPECT_THAT(runTool(arguments + QStringList{"--verbose"}).error(),
                HasSubstr("解码头像数据失败"));
}

class UnwritableOutput : public testing::TestWithParam<QStringList>
{
};

TEST_P(UnwritableOutput, IsReported)
{
    ProcessInput fullDisk;
    fullDisk.standardOutputFile = "/dev/full";
    ProcessInput notOpen;
    notOpen.standardOutput = StandardOutput::CLOSED;
    ProcessInput unreadPipe;
    unreadPipe.standardOutput = StandardOutput::BROKEN_PIPE;
    unreadPipe.ignoresBrokenPipes = true;
    for (const ProcessInput &output : {fullDisk, notOpen, unreadPipe})
        expectEnd(runTool(GetParam(), output), 1, "Standard output could not be written");
}

TEST_P(UnwritableOutput, PipeWithoutAReaderEndsItQuietlyByItsSignal)
{
    ProcessInput output;
    output.standardOutput = StandardOutput::BROKEN_PIPE;
    expectEndByLossOfItsReader(runTool(GetParam(), output));
}

INSTANTIATE_TEST_SUITE_P(Commands, UnwritableOutput,
                         testing::Values(QStringList{"--help"}, QStringList{"--version"},
                                         QStringList{"cards"}, QStringList{"cards", "--json"},
                                         QStringList{"read", "--simulate", "resident"},
                                         QStringList{"read", "--json", "--simulate", "resident"},
                                         QStringList{"watch", "--simulate", "resident"}));

/** A pipe that nobody reads, as standard output. */
class UnreadPipe
{
public:
    UnreadPipe()
    {
        const QByteArray path = m_folder.filePath("fifo").toLocal8Bit();
        EXPECT_EQ(mkfifo(path.constData(), 0600), 0);
        m_end = open(path.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
        m_input.standardOutputFile = QString::fromLocal8Bit(path);
    }
    ~UnreadPipe() { close(m_end); }
    UnreadPipe(const UnreadPipe &) = delete;
    UnreadPipe &operator=(const UnreadPipe &) = delete;

    const ProcessInput &input() const { return m_input; }

    int waitingBytes() const
    {
        int waiting = 0;
        ioctl(m_end, FIONREAD, &waiting);
        return waiting;
    }

    void fill() const
    {
        while (write(m_end, "x", 1) == 1)
            continue;
    }

private:
    QTemporaryDir m_folder;
    ProcessInput m_input;
    int m_end = -1;
};

TEST(StandardOutput, ThatIsFullDoesNotKeepAToolWhoseReadingHangs)
{
    const UnreadPipe output;
    output.fill();
    EXPECT_EQ(runTool({"read", "--json", "--simulate", "resident", "--fault",
                       "transient-failures=1000000", "--timeout", "1"},
                      output.input())
                  .exitStatus,
              11);
}

TEST(StandardOutput, ThatNobodyReadsAnyMoreDoesNotKeepAToolThatIsToEnd)
{
    const UnreadPipe output;
    RunningTool tool({"read", "--json", "--inline", "all", "--simulate", "resident"},
                     output.input());
    constexpr int NEARLY_FULL = 60 * 1024;
    for (int i = 0; i < 30000 && output.waitingBytes() < NEARLY_FULL; ++i)
        usleep(1000);
    EXPECT_GE(output.waitingBytes(), NEARLY_FULL);
    EXPECT_FALSE(tool.endsWithin(100));
    tool.signal(SIGTERM);
    EXPECT_TRUE(tool.endsWithin(20000));
    expectEnd(tool.result(), 1, "Standard output could not be written");
}

TEST(StandardError, ThatNobodyReadsDoesNotKeepAToolThatIsToEnd)
{
    const UnreadPipe error;
    error.fill();
    ProcessInput input;
    input.standardErrorFile = error.input().standardOutputFile;
    RunningTool tool({"watch", "--events", "--simulate", "resident", "--fault", "unknown-kind"},
                     input);
    EXPECT_THAT(tool.nextLine().toStdString(), HasSubstr("reader-added"));
    EXPECT_FALSE(tool.endsWithin(100));
    tool.signal(SIGTERM);
    EXPECT_TRUE(tool.endsWithin(20000));
}

TEST(StandardOutput, FailureOfTheReadingIsNotHiddenByAClosedStandardOutput)
{
    ProcessInput input;
    input.standardOutput = StandardOutput::CLOSED;
    EXPECT_EQ(runTool(READ_RESIDENT + QStringList{"--fault", "no-card"}, input).exitStatus, 4);
}

TEST(Display, MissingOneIsReplacedByTheOffscreenPlatformQuietlyUnlessVerbose)
{
    const ProcessInput without{{{"QT_QPA_PLATFORM", QString()}}};
    expectEnd(runTool(READ_RESIDENT, without), 0);
    expectEnd(runTool(READ_RESIDENT + QStringList{"--verbose"}, without), 0,
              "offscreen platform is used");
}

TEST(Display, ChosenPlatformOrDisplayIsLeft)
{
    const QMap<QString, QString> choices[] = {
        {{"QT_QPA_PLATFORM", "minimal"}},
        {{"QT_QPA_PLATFORM", {}}, {"DISPLAY", ":4711"}},
        {{"QT_QPA_PLATFORM", {}}, {"WAYLAND_DISPLAY", "wayland-4711"}}};
    for (const auto &choice : choices) {
        const ProcessResult run = runTool(READ_RESIDENT + QStringList{"--verbose"}, {choice});
        EXPECT_EQ(run.exitStatus, choice.size() == 1 ? 0 : 1) << "no such display";
        EXPECT_THAT(run.error(), Not(HasSubstr("offscreen platform is used")));
    }
}

TEST(Display, PlatformThatDoesNotStartIsExplainedWithoutACrash)
{
    const ProcessResult run = runTool(READ_RESIDENT, {{{"QT_QPA_PLATFORM", "no-such-platform"}}});
    expectEnd(run, 1, "QT_QPA_PLATFORM=offscreen");
}

ProcessResult readWithSimulator(const QString &library)
{
    return runTool(READ_RESIDENT, {{{"IDCARD_SIMULATOR_LIBRARY", library}}});
}

TEST(SimulatorLibrary, NamedFileIsUsed)
{
    QTemporaryDir folder;
    const QString path = folder.filePath("my-simulator.so");
    ASSERT_TRUE(QFile::copy(IDCARD_BUILD_LIB_DIR "/libidcard_simulator.so", path));
    EXPECT_EQ(readWithSimulator(path).exitStatus, 0);
}

TEST(SimulatorLibrary, NamedFileThatIsNoneIsReportedAndNoOtherIsTaken)
{
    const QTemporaryDir folder;
    const QString text = folder.filePath("simulator.so");
    writeFile(text, "no library at all");
    const struct {
        QString file;
        const char *problem;
    } cases[] = {{"/nonexistent/simulator.so", "there is no /nonexistent/simulator.so"},
                 {"/nonexistent/simulator.so", "IDCARD_SIMULATOR_LIBRARY"},
                 {text, "The simulator could not be loaded"},
                 {IDCARD_BUILD_LIB_DIR "/libidcard_reader_lib.so", "is not a simulator"}};
    for (const auto &c : cases)
        expectEnd(readWithSimulator(c.file), 1, c.problem);
}

class SimulatorPlace : public testing::TestWithParam<const char *>
{
};

TEST_P(SimulatorPlace, IsSearchedFromTheProgram)
{
    QTemporaryDir folder;
    for (const char *part : {"bin", "lib"})
        ASSERT_TRUE(QDir(folder.path()).mkdir(part));
    const QString program = folder.filePath("bin/idcard-reader");
    ASSERT_TRUE(QFile::copy(IDCARD_BUILD_BIN_DIR "/idcard-reader", program));
    ASSERT_TRUE(QFile::link(IDCARD_BUILD_LIB_DIR "/libidcard_reader_lib.so.1",
                            folder.filePath("lib/libidcard_reader_lib.so.1")));
    ASSERT_TRUE(
        QFile::copy(IDCARD_BUILD_LIB_DIR "/libidcard_simulator.so", folder.filePath(GetParam())));
    const ProcessResult run = runProcess(program, READ_RESIDENT + QStringList{"--verbose"},
                                         {{{"IDCARD_SIMULATOR_LIBRARY", QString()}}});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.error(),
                HasSubstr("The simulator is " + folder.filePath(GetParam()).toStdString()));
}

INSTANTIATE_TEST_SUITE_P(Places, SimulatorPlace,
                         testing::Values("bin/libidcard_simulator.so",
                                         "lib/libidcard_simulator.so"));

class RunPath : public testing::TestWithParam<const char *>
{
};

TEST_P(RunPath, LeadsFromTheProgramsOwnFolderAndNeverFromTheCurrentOne)
{
    const QString program = QDir(IDCARD_BUILD_BIN_DIR).filePath(QLatin1String(GetParam()));
    const QString dynamic = QString::fromUtf8(build_programs::readelf({"-d"}, program));
    EXPECT_THAT(dynamic.toStdString(), HasSubstr("libQt5Core.so"));
    static const QRegularExpression entry("(RPATH|RUNPATH)\\).*\\[(.*)\\]");
    auto paths = entry.globalMatch(dynamic);
    while (paths.hasNext()) {
        const QString path = paths.next().captured(2);
        for (const QString &folder : path.split(':')) {
            EXPECT_TRUE(folder.startsWith('/') || folder.startsWith("$ORIGIN/"))
                << path.toStdString();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Programs, RunPath,
                         testing::Values("idcard-reader", "idcard-viewer",
                                         "idcard-virtual-reader"));

class ChildSignal : public testing::TestWithParam<const char *>
{
};

/**
 * By which the system would forget how the children of a program that inherits it end, or Qt would
 * not hear of it.
 */
TEST_P(ChildSignal, ThatTheParentProcessIgnoresAndBlocksIsNotLeftSo)
{
    if (!qEnvironmentVariableIsEmpty("IDCARD_TEST_EMULATOR"))
        GTEST_SKIP() << "the signals seen would be those of the emulator";
    const QTemporaryDir settings;
    ProcessInput input;
    input.environment = {{"XDG_CONFIG_HOME", settings.path()}, {"QT_QPA_PLATFORM", "offscreen"}};
    const QStringList arguments = QString::fromLatin1(GetParam()).split(QLatin1Char(' '));
    const auto handler = std::signal(SIGCHLD, SIG_IGN);
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGCHLD);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    RunningProcess process(arguments.first(), arguments.mid(1), input);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    std::signal(SIGCHLD, handler);

    waitUntil([&process] {
        return !isIgnored(SIGCHLD, process.id()) && !isBlocked(SIGCHLD, process.id());
    });
    EXPECT_FALSE(process.endsWithin(100));
}

INSTANTIATE_TEST_SUITE_P(
    Programs, ChildSignal,
    testing::Values("idcard-reader read --simulate resident --fault no-card --wait 60",
                    "idcard-viewer",
                    IDCARD_BUILD_BIN_DIR "/../libexec/idcard-reader-browser-host "
                                         "chrome-extension://ojdlmaapepnmfpiapikmeghcbbbdeipm/"));

TEST(SimulatorLibrary, NothingOfItReplacesTheMakersLibrary)
{
    const QString tool = QStringLiteral(IDCARD_BUILD_BIN_DIR "/idcard-reader");
    const std::string needed = build_programs::readelf({"-d"}, tool).toStdString();
    EXPECT_THAT(needed, HasSubstr("libidcard_reader_lib.so"));
    EXPECT_THAT(needed, Not(HasSubstr("simulator")));
    const std::string defined = build_programs::nm({"--defined-only"}, tool).toStdString();
    EXPECT_THAT(defined, HasSubstr(" main\n"));
    EXPECT_THAT(defined, Not(HasSubstr(" KVO_")));
    EXPECT_THAT(defined, Not(HasSubstr(" unpack\n")));
}

} // namespace
