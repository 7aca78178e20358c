// The programs of docs/other-languages.md, as they stand there: what they print of a card and of a
// failure, and what they leave behind when the user gives up.

#include <csignal>
#include <functional>

#include <gmock/gmock.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include "tests/support/files.h"
#include "tests/support/process.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace
{

struct Language {
    const char *name;
    QStringList command;
};

void PrintTo(const Language &language, std::ostream *stream)
{
    *stream << language.name;
}

QString programFile(const char *name)
{
    return IDCARD_PROGRAMS_DIR "/" + QLatin1String(name);
}

const Language LANGUAGES[] = {
    {"Python", {IDCARD_PYTHON, "-B", programFile("read_card.py")}},
    {"NodeJs", {IDCARD_NODE, programFile("read-card.js")}},
    {"Java", {IDCARD_JAVA, programFile("ReadCard.java")}},
    {"CSharp", {IDCARD_MONO, programFile("ReadCard.exe")}},
};

/** A file of a process; empty when the process has gone. */
QByteArray factOf(const QString &process, const char *name)
{
    QFile file(process + '/' + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/** Whether the process of this folder in /proc is the tool, with this argument, and minds SIGTERM.
 */
bool isReadyTool(const QString &process, const QString &argument)
{
    const QList<QByteArray> words = factOf(process, "cmdline").split('\0');
    if (!words.first().endsWith("idcard-reader") || !words.contains(argument.toUtf8()))
        return false;
    const QByteArray status = factOf(process, "status");
    const QByteArray caught = status.mid(status.indexOf("SigCgt:") + 7).trimmed().left(16);
    return (caught.toULongLong(nullptr, 16) >> (SIGTERM - 1) & 1) != 0;
}

int readyTools(const QString &argument)
{
    int count = 0;
    const QDir processes("/proc");
    for (const QString &process : processes.entryList({"[0-9]*"}, QDir::Dirs))
        count += isReadyTool(processes.filePath(process), argument) ? 1 : 0;
    return count;
}

bool waitUntil(const std::function<bool()> &condition)
{
    QElapsedTimer time;
    time.start();
    while (!condition()) {
        if (time.elapsed() > 60000)
            return false;
        QThread::msleep(20);
    }
    return true;
}

/** Writes a shell script that takes the place of the tool; returns its path. */
QString makeTool(const QTemporaryDir &folder, const QByteArray &script)
{
    QString path = folder.filePath("idcard-reader");
    writeFile(path, "#!/bin/sh\n" + script);
    EXPECT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner));
    return path;
}

/** Runs the program of a language in an empty folder and in the locale "C", as services have it. */
class OtherLanguage : public testing::TestWithParam<Language>
{
protected:
    static QStringList commandWith(const QStringList &arguments)
    {
        return GetParam().command.mid(1) + arguments;
    }

    ProcessInput surroundings(const QString &toolFolder = IDCARD_BUILD_BIN_DIR) const
    {
        ProcessInput input;
        input.workingDirectory = m_folder.path();
        input.environment["LC_ALL"] = "C";
        input.environment["PATH"] = toolFolder + ':' + qEnvironmentVariable("PATH");
        return input;
    }

    ProcessResult run(const QStringList &arguments) const
    {
        return runProcess(GetParam().command.first(), commandWith(arguments), surroundings());
    }

    ProcessResult runWithTool(const QByteArray &script) const
    {
        const QTemporaryDir folder;
        makeTool(folder, script);
        return runProcess(GetParam().command.first(), commandWith({}), surroundings(folder.path()));
    }

    QTemporaryDir m_folder;
};

} // namespace

TEST_P(OtherLanguage, Card_IsShownWithTheSizeOfItsPhotoAndNothingIsWritten)
{
    const ProcessResult end = run({"--simulate", "resident"});
    expectEnd(end, 0);
    EXPECT_EQ(end.output(), "林晓雨, 990000199003074284\nphoto: bmp, 38862 bytes\n");
    EXPECT_THAT(folderState(m_folder.path()), IsEmpty());
}

TEST_P(OtherLanguage, ForeignersCard_IsShownWithItsEnglishName)
{
    const ProcessResult end = run({"--simulate", "foreign-2017", "--fault", "photo-length=0"});
    expectEnd(end, 0);
    EXPECT_THAT(end.output(), testing::MatchesRegex("[A-Z, ]+, [A-Z0-9]+\n"));
}

TEST_P(OtherLanguage, Failure_IsReportedWithItsNameAndRemedyAndTheStatusOfTheTool)
{
    const ProcessResult end = run({"--simulate", "resident", "--fault", "open-fails=1"});
    expectEnd(end, 3,
              "IDCARD_RESULT_PORT_NOT_OPEN\nThe reader could not be opened.\nPlug the reader in");
    EXPECT_THAT(end.output(), IsEmpty());
}

TEST_P(OtherLanguage, CardThatIsNotSaved_IsShownAndTheFailureReported)
{
    const ProcessResult end = run({"--simulate", "resident", "--out", "/proc/visitor"});
    expectEnd(end, 7, "TOOL_FILES_NOT_WRITTEN\n");
    EXPECT_THAT(end.output(), HasSubstr("林晓雨, 990000199003074284\n"));
}

TEST_P(OtherLanguage, WrongOption_IsReportedInTheWordsOfTheTool)
{
    const ProcessResult end = run({"--two words"});
    expectEnd(end, 2, "read has no option --two words.\nSee \"idcard-reader read --help\".");
    EXPECT_THAT(end.output(), IsEmpty());
}

TEST_P(OtherLanguage, ToolThatIsKilled_IsReported)
{
    expectEnd(runWithTool("kill -SEGV $$\n"), 1, "idcard-reader ended with ");
}

TEST_P(OtherLanguage, JsonThatIsCutShort_IsAFailureThatDoesNotQuoteIt)
{
    for (const char *text : {R"({"name":"林晓雨)", R"({"name":林晓雨)"}) {
        const ProcessResult end =
            runWithTool(QByteArray("printf '%s' '") + text + "'\nkill -SEGV $$\n");
        EXPECT_NE(end.exitStatus, 0) << text;
        EXPECT_THAT(end.error(), Not(HasSubstr("林"))) << text;
    }
}

TEST_P(OtherLanguage, MoreOnBothStreamsThanTheirPipesHold_IsReadToTheEnd)
{
    const ProcessResult end = runWithTool(R"(
        flood() { head -c 200000 /dev/zero | tr '\0' ' '; }
        flood >&2
        flood
        cat <<'END'
{ "a" : [ { }, [ ], -1.5e3, true, false, null ],
  "error" : {"name":"\u6797\"\\\/","headline":"\u6653\tb","remedy":"雨" } }
END
        flood
        flood >&2
        exit 5
    )");
    expectEnd(end, 5, "林\"\\/\n晓\tb\n雨\n");
}

TEST_P(OtherLanguage, UserWhoGivesUp_EndsTheToolAsWell)
{
    for (const int number : {SIGINT, SIGTERM}) {
        // By its path, which no other process knows, the tool is found.
        const QTemporaryDir folder;
        const QString card = folder.filePath("card.json");
        ASSERT_TRUE(QFile::copy(IDCARD_SOURCE_DIR "/simulator/cards/resident.json", card));
        RunningProcess program(GetParam().command.first(),
                               commandWith({"--simulate", card, "--fault", "no-card"}),
                               surroundings());
        ASSERT_TRUE(waitUntil([&card] { return readyTools(card) > 0; }));
        QThread::msleep(300); // the program waits too
        QElapsedTimer time;
        time.start();
        program.signal(number);
        const ProcessResult end = program.result();
        EXPECT_TRUE(end.finished || end.signal == number) << end.signal;
        EXPECT_NE(end.exitStatus, 0);
        EXPECT_EQ(end.error(), "cancelled\n");
        EXPECT_THAT(end.output(), IsEmpty());
        EXPECT_EQ(readyTools(card), 0);
        EXPECT_LT(time.elapsed(), 20000) << "the tool waits 30 s";
    }
}

TEST_P(OtherLanguage, UserWhoGivesUp_IsAnsweredWhenTheToolHasEnded)
{
    const QTemporaryDir folder;
    const QString tool = makeTool(folder, R"(
        trap 'head -c 200000 /dev/zero; sleep 1; : >"$0.ended"; exit 4' TERM
        : >"$0.waits"
        while true; do sleep 0.1; done
    )");
    RunningProcess program(GetParam().command.first(), commandWith({}),
                           surroundings(folder.path()));
    ASSERT_TRUE(waitUntil([&tool] { return QFile::exists(tool + ".waits"); }));
    QThread::msleep(300); // the program waits too
    program.signal(SIGTERM);
    const ProcessResult end = program.result();
    EXPECT_EQ(end.error(), "cancelled\n");
    EXPECT_TRUE(QFile::exists(tool + ".ended"));
}

INSTANTIATE_TEST_SUITE_P(Languages, OtherLanguage, testing::ValuesIn(LANGUAGES),
                         [](const auto &test) { return std::string(test.param.name); });
