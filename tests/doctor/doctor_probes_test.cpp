// How the doctor finds things out: in child processes, library files, rule files and /proc.

#include <csignal>
#include <cstdlib>

#include <gmock/gmock.h>

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include "apps/doctor/library.h"
#include "apps/doctor/shipped_files.h"
#include "apps/doctor/usb.h"
#include "apps/doctor/web_pages.h"
#include "apps/process/locale.h"
#include "apps/web_sites/browser_files.h"
#include "apps/web_sites/last_answer.h"
#include "tests/support/cancelled_thread.h"
#include "tests/support/files.h"
#include "tests/support/process.h"

using namespace app;
using namespace app::doctor;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

constexpr int LONG_MS = 60000;

constexpr int INHERITED_FILE = 100;

/** What the children of these tests do. */
const Works WORKS = {
    {"library", loadLibrary},
    {"send-twice",
     [](const QStringList & /*arguments*/, const SendValues &send) {
         send({{"part", "one"}, {"count", 1}});
         send({{"count", 2}});
     }},
    {"send-and-print",
     [](const QStringList & /*arguments*/, const SendValues &send) {
         send({{"part", "one"}});
         for (int descriptor = STDOUT_FILENO; descriptor <= STDERR_FILENO; ++descriptor)
             static_cast<void>(write(descriptor, "{\"part\":\"two\"}\n", 15));
     }},
    {"read-inherited-file",
     [](const QStringList & /*arguments*/, const SendValues &send) {
         char byte = 0;
         send({{"got", static_cast<int>(pread(INHERITED_FILE, &byte, 1, 0))}});
     }},
    {"send-and-abort",
     [](const QStringList & /*arguments*/, const SendValues &send) {
         send({{"part", "one"}});
         std::abort();
     }},
    {"exit", [](const QStringList & /*arguments*/, const SendValues & /*send*/) { _exit(0); }},
    {"hang-with-a-child",
     [](const QStringList & /*arguments*/, const SendValues &send) {
         const pid_t child = fork();
         if (child > 0)
             send({{"grandchild", child}});
         for (;;)
             pause();
     }},
    {"print-much",
     [](const QStringList & /*arguments*/, const SendValues &send) {
         const QByteArray noise(1 << 20, 'x');
         qint64 printed = 0;
         for (int i = 0; i < 40; ++i)
             printed += std::max<ssize_t>(write(STDERR_FILENO, noise.constData(), 1 << 20), 0);
         send({{"printed", printed}});
     }},
};

ChildRun runChild(const char *work, int limitMs = LONG_MS)
{
    return runInChild({work}, limitMs);
}

TEST(DoctorsChild, ThatEndsItsWorkIsDone)
{
    const ChildRun run = runChild("send-twice");
    EXPECT_EQ(run.end, ChildRun::End::DONE);
    EXPECT_EQ(run.values, (QJsonObject{{"part", "one"}, {"count", 2}}));
}

TEST(DoctorsChild, ThatPrintsWhatLooksLikeItsAnswerDoesNotChangeIt)
{
    const ChildRun run = runChild("send-and-print");
    EXPECT_EQ(run.end, ChildRun::End::DONE);
    EXPECT_EQ(run.values, (QJsonObject{{"part", "one"}}));
    EXPECT_EQ(run.log.toStdString(), "{\"part\":\"two\"}\n{\"part\":\"two\"}\n");
}

TEST(DoctorsChild, HasNoFileOfItsParent)
{
    const QTemporaryDir folder;
    writeFile(folder.filePath("card"), "personal");
    QFile file(folder.filePath("card"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    ASSERT_EQ(dup2(file.handle(), INHERITED_FILE), INHERITED_FILE);
    EXPECT_EQ(runChild("read-inherited-file").values["got"].toInt(), -1);
    close(INHERITED_FILE);
}

TEST(DoctorsChild, ThatAbortsHasCrashedAndWhatItReportedIsKept)
{
    const ChildRun run = runChild("send-and-abort");
    EXPECT_EQ(run.end, ChildRun::End::CRASHED);
    EXPECT_EQ(run.values, (QJsonObject{{"part", "one"}}));
    EXPECT_THAT(run.how.toStdString(), HasSubstr("signal 6"));
}

TEST(DoctorsChild, ThatExitsWithoutEndingItsWorkHasCrashed)
{
    const ChildRun run = runChild("exit");
    EXPECT_EQ(run.end, ChildRun::End::CRASHED);
    EXPECT_THAT(run.how.toStdString(), HasSubstr("status 0"));
}

TEST(DoctorsChild, ThatHangsIsKilledWithItsChildren)
{
    constexpr int TIME_TO_START_MS = 3000; // under an emulator
    QElapsedTimer time;
    time.start();
    const ChildRun run = runChild("hang-with-a-child", TIME_TO_START_MS);
    EXPECT_EQ(run.end, ChildRun::End::TIMED_OUT);
    EXPECT_LT(time.elapsed(), TIME_TO_START_MS + 5000);
    const pid_t grandchild = run.values["grandchild"].toInt();
    ASSERT_GT(grandchild, 0);
    waitUntil([grandchild] { return !isRunning(grandchild); });
}

TEST(DoctorsChild, ThatPrintsWithoutEndDoesNotFillTheMemory)
{
    const ChildRun run = runChild("print-much");
    EXPECT_EQ(run.end, ChildRun::End::DONE);
    EXPECT_GE(run.values["printed"].toInt(), 1 << 20);
    EXPECT_LE(run.values["printed"].toInt(), 20 << 20);
    EXPECT_LE(run.log.size(), 300 * 1024);
}

/** A copy of a built library that a test spoils. */
class LibraryFiles : public testing::Test
{
protected:
    QString path(const QString &name = "libcopy.so") const { return m_folder.filePath(name); }

    QByteArray sound() const
    {
        return readFile(QDir(IDCARD_BUILD_LIB_DIR).filePath("libidcard_simulator.so"));
    }

    LibraryFile inspected(const QByteArray &content) const
    {
        writeFile(path(), content);
        return inspectLibrary(path());
    }

private:
    QTemporaryDir m_folder;
};

TEST_F(LibraryFiles, OwnKindIsSound)
{
    EXPECT_EQ(inspected(sound()).shape, LibraryShape::SOUND);
}

TEST_F(LibraryFiles, ProcessorWithoutANameIsRecognisedByItsNumber)
{
    QByteArray content = sound();
    content[18] = '\xfa';
    content[19] = '\0';
    const LibraryFile file = inspected(content);
    EXPECT_EQ(file.shape, LibraryShape::OTHER_MACHINE);
    EXPECT_EQ(file.machine, "processor 250");
}

TEST_F(LibraryFiles, OtherByteOrderIsAnotherProcessor)
{
    QByteArray content = sound();
    content[5] = 2; // big-endian
    EXPECT_EQ(inspected(content).shape, LibraryShape::OTHER_MACHINE);
}

TEST_F(LibraryFiles, EveryLengthThatIsTooShortIsCutOff)
{
    const QByteArray content = sound();
    for (const int size : {4, 5, 63, 64, 100, 4096, content.size() / 2, content.size() - 1})
        EXPECT_EQ(inspected(content.left(size)).shape, LibraryShape::CUT_OFF) << size;
}

TEST_F(LibraryFiles, HostileHeadersAreCutOff)
{
    QByteArray content = sound();
    for (const int offset : {32, 40}) { // where the tables of segments and sections are
        QByteArray hostile = content;
        hostile.replace(offset, 8, QByteArray(8, '\xff'));
        EXPECT_EQ(inspected(hostile).shape, LibraryShape::CUT_OFF) << offset;
    }
}

TEST_F(LibraryFiles, OtherFilesAreNoLibraries)
{
    EXPECT_EQ(inspected({}).shape, LibraryShape::NO_LIBRARY);
    EXPECT_EQ(inspected("BM").shape, LibraryShape::NO_LIBRARY);
    EXPECT_EQ(inspected(QByteArray(5000, 'x')).shape, LibraryShape::NO_LIBRARY);
    EXPECT_EQ(inspectLibrary(QDir::tempPath()).shape, LibraryShape::NO_LIBRARY);
}

TEST_F(LibraryFiles, LinkToNothingIsUnreadable)
{
    ASSERT_TRUE(QFile::link(path("gone"), path("link")));
    EXPECT_EQ(inspectLibrary(path("link")).shape, LibraryShape::UNREADABLE);
}

/** Libraries beside the library under test are looked for by path. */
QString builtLibrary(const char *fault)
{
    return QStringLiteral("libidcard_maker_%1.so").arg(QLatin1String(fault));
}

LibraryState probed(const char *fault, int limitMs = LONG_MS)
{
    return probeLibrary(builtLibrary(fault), {"KVO_OpenPort", "KVO_ClosePort"}, limitMs);
}

TEST(LoadingALibrary, ThatIsNowhereReportsWhereItWasLookedFor)
{
    const LibraryState state = probeLibrary("libnowhere.so", {"unpack"}, LONG_MS);
    EXPECT_EQ(state.loading, Loading::NOT_LOADED);
    EXPECT_TRUE(state.files.isEmpty());
    EXPECT_EQ(QDir(state.places.value(0)).canonicalPath(),
              QDir(IDCARD_BUILD_LIB_DIR).canonicalPath());
    EXPECT_TRUE(state.places.contains("/usr/lib")) << state.places.join(' ').toStdString();
    EXPECT_EQ(state.errors.size(), 1); // of the file beside the library; the search finds none
}

TEST(LoadingALibrary, ThatCrashesHangsOrExitsIsSurvived)
{
    EXPECT_EQ(probed("CRASHES").loading, Loading::CRASHED);
    EXPECT_THAT(probed("CRASHES").crash.toStdString(), HasSubstr("signal 6"));
    EXPECT_EQ(probed("EXITS").loading, Loading::CRASHED);
    EXPECT_THAT(probed("EXITS").crash.toStdString(), HasSubstr("status 3"));
    EXPECT_EQ(probed("HANGS", 500).loading, Loading::HUNG);
}

TEST(LoadingALibrary, IsNotDoneForFunctionsThatAreInTheProcess)
{
    const LibraryState state = probeLibrary("libnowhere.so", {"getpid", "getppid"}, LONG_MS);
    EXPECT_EQ(state.loading, Loading::NOT_TRIED);
    EXPECT_THAT(state.definedIn.toStdString(), HasSubstr("libc"));
}

class Rules : public testing::Test
{
protected:
    QString folder(const QString &name) const
    {
        QDir(m_base.path()).mkpath(name);
        return m_base.filePath(name);
    }
    void put(const QString &name, const QByteArray &rule) const
    {
        writeFile(folder(name) + "/69-idcard-reader.rules", rule);
    }
    QStringList folders() const { return {folder("etc"), folder("run"), folder("usr")}; }

private:
    QTemporaryDir m_base;
};

const QByteArray RULE =
    R"(SUBSYSTEM=="usb", ATTR{idVendor}=="1209", ATTR{idProduct}=="00ab", GROUP="readers")";

TEST_F(Rules, NoFileIsNoRule)
{
    EXPECT_EQ(findRule(folders()).path, QString());
    EXPECT_EQ(findRule({"/no/such/folder"}).path, QString());
}

TEST_F(Rules, FirstFolderCounts)
{
    put("usr", RULE);
    EXPECT_EQ(findRule(folders()).path, folder("usr") + "/69-idcard-reader.rules");
    put("etc", "# nothing\n" + QByteArray(RULE).replace("00ab", "00cd"));
    const RuleState rule = findRule(folders());
    EXPECT_EQ(rule.path, folder("etc") + "/69-idcard-reader.rules");
    ASSERT_EQ(rule.opened.size(), 1);
    EXPECT_EQ(rule.opened.first().product, 0x00CD);
    EXPECT_EQ(rule.group, "readers");
    EXPECT_FALSE(rule.isMasked);
}

TEST_F(Rules, EmptyFileAndLinkToNullSwitchTheRuleOff)
{
    put("usr", RULE);
    put("run", "\n");
    EXPECT_TRUE(findRule(folders()).isMasked);
    ASSERT_TRUE(QFile::link("/dev/null", folder("etc") + "/69-idcard-reader.rules"));
    const RuleState rule = findRule(folders());
    EXPECT_TRUE(rule.isMasked);
    EXPECT_TRUE(rule.opened.isEmpty());
}

TEST_F(Rules, FileOfTheProjectIsUnderstood)
{
    QString text =
        QString::fromUtf8(readFile(IDCARD_SOURCE_DIR "/packaging/udev/69-idcard-reader.rules.in"));
    text.replace("@IDCARD_USB_VENDOR_ID@", "1209").replace("@IDCARD_USB_PRODUCT_ID@", "0001");
    const RuleState rule = parseRule(text);
    ASSERT_EQ(rule.opened.size(), 1);
    EXPECT_EQ(toText(rule.opened.first()), "1209:0001");
    EXPECT_EQ(rule.group, READERS_GROUP);
}

TEST_F(Rules, CommentsUpperCaseAndHalfIdsOpenNothing)
{
    EXPECT_TRUE(parseRule("# " + RULE).opened.isEmpty());
    EXPECT_TRUE(parseRule(QByteArray(RULE).replace("00ab", "00AB")).opened.isEmpty());
    EXPECT_TRUE(parseRule(R"(ATTR{idVendor}=="1209", GROUP="x")").opened.isEmpty());
    EXPECT_TRUE(parseRule(QByteArray(100000, '"')).opened.isEmpty());
}

TEST_F(Rules, LinesMayBeContinuedAndBeSeveral)
{
    const RuleState rule = parseRule(QByteArray(RULE).replace(", ", ", \\\n") + '\n' +
                                     QByteArray(RULE).replace("00ab", "0002"));
    ASSERT_EQ(rule.opened.size(), 2);
    EXPECT_EQ(rule.opened[1].product, 2);
}

TEST_F(Rules, AddedFilesAreThoseForTheIdsOfOneReader)
{
    EXPECT_TRUE(findAddedRules("/no/such/folder").isEmpty());
    put("etc", RULE);
    for (const char *name : {"69-idcard-reader-1a2b-3c4d.rules", "70-idcard-reader-1a2b-3c4d.rules",
                             "69-idcard-reader-1a2b-3c4d.rules.old"})
        writeFile(folder("etc/") + name, QByteArray(RULE).replace("1209", "1a2b"));
    const QVector<RuleState> added = findAddedRules(folder("etc"));
    ASSERT_EQ(added.size(), 1);
    EXPECT_EQ(added.first().path, folder("etc") + "/69-idcard-reader-1a2b-3c4d.rules");
    ASSERT_EQ(added.first().opened.size(), 1);
    EXPECT_EQ(toText(added.first().opened.first()), "1a2b:00ab");
    EXPECT_EQ(added.first().group, "readers");
}

class ShippedFiles : public testing::Test
{
protected:
    QString put(const QString &path) const
    {
        const QString file = m_base.filePath(path);
        QDir().mkpath(QFileInfo(file).path());
        writeFile(file, {});
        return QFileInfo(file).canonicalFilePath();
    }
    QString found() const
    {
        return shippedFile(m_base.filePath("bin"), "../share/choices/choice.conf");
    }

private:
    QTemporaryDir m_base;
};

TEST_F(ShippedFiles, AreThoseOfTheBuildFolderOrOfTheInstallation)
{
    put("bin/program");
    EXPECT_EQ(found(), QString());
    const QString installed = put("share/choices/choice.conf");
    EXPECT_EQ(found(), installed);
    const QString built = put("packaging/choice.conf");
    EXPECT_EQ(found(), built);
}

TEST_F(ShippedFiles, OfThisBuildAreThere)
{
    EXPECT_THAT(readFile(shippedAccessProgram()).toStdString(), HasSubstr("SUBSYSTEM"));
    EXPECT_EQ(readFile(shippedFontChoice()),
              readFile(IDCARD_SOURCE_DIR "/packaging/fonts/69-idcard-reader.conf"));
}

TEST(HoldersOfANode, AreTheProcessesThatHaveItOpen)
{
    const QTemporaryDir folder;
    const QString node = folder.filePath("001");
    const QString other = folder.filePath("002");
    writeFile(node, {});
    writeFile(other, {});
    // Processes as /proc shows them; the first has another file of the same name open.
    const QString processes = folder.filePath("proc");
    const auto addProcess = [&](const QString &number, const QString &open) {
        QDir().mkpath(processes + '/' + number + "/fd");
        writeFile(processes + '/' + number + "/comm", "counter\n");
        EXPECT_TRUE(QFile::link(open, processes + '/' + number + "/fd/3"));
    };
    addProcess("100", other);
    addProcess("200", node);
    addProcess("self", node);
    addProcess(QString::number(getpid()), node);
    const Holders holders = holdersOf(node, processes);
    ASSERT_EQ(holders.processes.size(), 1);
    EXPECT_EQ(holders.processes.first().process, 200);
    EXPECT_EQ(holders.processes.first().name, "counter");
    EXPECT_EQ(holders.unseen, 0);
}

TEST(HoldersOfANode, ProcessesOfOthersAreCounted)
{
    const QTemporaryDir folder;
    const QString processes = folder.filePath("proc");
    QDir().mkpath(processes + "/100/fd");
    ASSERT_EQ(chmod(qPrintable(processes + "/100/fd"), 0), 0);
    if (getuid() == 0) {
        ASSERT_EQ(chmod(qPrintable(folder.path()), 0755), 0);
        ASSERT_EQ(setreuid(65534, 0), 0); // access() asks for the real user
    }
    const Holders holders = holdersOf("/dev/null", processes);
    if (geteuid() == 0) {
        ASSERT_EQ(setreuid(0, 0), 0);
    }
    EXPECT_EQ(holders.unseen, 1);
    EXPECT_EQ(chmod(qPrintable(processes + "/100/fd"), 0700), 0);
}

TEST(RightsOfANode, AreThoseOfTheFile)
{
    const QTemporaryDir folder;
    const QString node = folder.filePath("001");
    EXPECT_FALSE(rightsOf(node).isThere);
    writeFile(node, {});
    ASSERT_EQ(chmod(qPrintable(node), 0640), 0);
    const NodeRights rights = rightsOf(node);
    EXPECT_TRUE(rights.isThere);
    EXPECT_EQ(rights.mode, 0640U);
    EXPECT_FALSE(rights.owner.isEmpty());
    EXPECT_FALSE(rights.hasAcl);
}

TEST(GroupsOfTheUser, GroupThatIsNotThereIsReported)
{
    const GroupState state = groupState("no-such-group");
    EXPECT_FALSE(state.exists);
    EXPECT_FALSE(state.isMember);
    EXPECT_FALSE(state.isInForce);
    EXPECT_FALSE(state.user.isEmpty());
}

TEST(GroupsOfTheUser, OwnGroupIsInForce)
{
    const group *const own = getgrgid(getgid());
    if (own == nullptr)
        GTEST_SKIP() << "the group of this user has no name";
    const GroupState state = groupState(own->gr_name);
    EXPECT_TRUE(state.exists);
    EXPECT_TRUE(state.isMember);
    EXPECT_TRUE(state.isInForce);
    EXPECT_EQ(state.isRoot, getuid() == 0);
}

TEST(WebPagesOfTheMachine, HaveTheHostsLastAnswerToThisUser)
{
    const QTemporaryDir folder;
    const auto probed = [&folder] {
        return probeWebPages(folder.filePath("origins"), getuid(), folder.path()).lastAnswer;
    };
    ASSERT_TRUE(qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8()));
    EXPECT_TRUE(probed().isEmpty());
    noteLastAnswer("https://pms.example", "card");
    EXPECT_EQ(probed()["origin"], "https://pms.example");
    EXPECT_EQ(probed()["result"], "card");
    EXPECT_TRUE(QDateTime::fromString(probed()["time"].toString(), Qt::ISODate).isValid());
    writeFile(folder.filePath("idcard-reader-browser.json"), "[no object");
    EXPECT_TRUE(probed().isEmpty());
    ASSERT_TRUE(qunsetenv("XDG_RUNTIME_DIR"));
    EXPECT_TRUE(probed().isEmpty());
}

TEST(WebPagesOfTheMachine, AreThoseOfTheListAndTheBrowsersFiles)
{
    const QTemporaryDir folder;
    const QString list = folder.filePath("origins");
    EXPECT_FALSE(probeWebPages(list, getuid(), folder.path()).isListThere);

    writeFile(list, "https://pms.example\n");
    ASSERT_EQ(chmod(qPrintable(list), 0644), 0);
    WebPagesState state = probeWebPages(list, getuid(), folder.path());
    EXPECT_TRUE(state.isListThere);
    EXPECT_EQ(state.list.origins, QStringList{"https://pms.example"});
    EXPECT_THAT(state.browsers, IsEmpty());

    for (const Browser &browser : browsers(folder.path())) {
        for (const QString &file : {browser.installation, browser.hostFile})
            QDir().mkpath(QFileInfo(file).path());
        writeFile(browser.installation, "{}");
    }
    writeFile(browsers(folder.path()).last().hostFile, R"({"path": "/bin/sh"})");
    state = probeWebPages(list, getuid() + 1, folder.path());
    EXPECT_FALSE(state.list.mistake.isEmpty());
    ASSERT_EQ(state.browsers.size(), 2);
    EXPECT_EQ(state.browsers[0].name, "chromium");
    EXPECT_EQ(state.browsers[0].host, "");
    EXPECT_FALSE(state.browsers[0].canHostStart);
    EXPECT_EQ(state.browsers[1].name, "firefox");
    EXPECT_EQ(state.browsers[1].host, "/bin/sh");
    EXPECT_TRUE(state.browsers[1].canHostStart);
}

TEST(WebPagesOfTheMachine, HaveTheListedSitesThatNoExtensionWasMadeFor)
{
    const QTemporaryDir folder;
    const QString list = folder.filePath("origins");
    writeFile(list, "https://pms.example\nhttps://pms.example:8443\nhttp://pms.example\n");
    ASSERT_EQ(chmod(qPrintable(list), 0644), 0);
    const QVector<Browser> all = browsers(folder.path());
    for (const Browser &browser : all) {
        for (const QString &made : {QFileInfo(browser.installation).path(), browser.extension})
            QDir().mkpath(made);
    }
    writeFile(all[0].extension + "/manifest.json", R"({"matches": ["https://pms.example:443/*"]})");
    writeFile(all[1].extension + "/manifest.json", R"({"matches": ["https://pms.example/*"]})");
    const auto leftOut = [&] { return probeWebPages(list, getuid(), folder.path()).sitesLeftOut; };
    EXPECT_EQ(leftOut().size(), 3) << "no browser has an extension";
    writeFile(all[0].installation, "{}");
    EXPECT_EQ(leftOut(), QStringList({"https://pms.example:8443", "http://pms.example"}));
    writeFile(all[1].installation, "{}");
    EXPECT_EQ(leftOut(), QStringList{"http://pms.example"})
        << "the patterns of Firefox have no port";
}

} // namespace

/** This program, too, is its own child. */
int main(int argc, char **argv)
{
    workIfChild(argumentsOf(argc, argv), WORKS);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
