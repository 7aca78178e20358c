// Every call by which the programs write a file failing in turn: all files are there or none, what
// was there before stays, and the failure is reported. And a signal at each of them.

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>

#include <gmock/gmock.h>

#include <QDir>
#include <QTemporaryDir>

#include <sys/wait.h>

#include "apps/card/file_set.h"
#include "tests/failure_injection/failing_files.h"
#include "tests/support/files.h"
#include "tests/support/forked_work.h"
#include "tests/support/message_log.h"
#include "tests/tool/tool_runner.h"

namespace
{

using namespace failure_injection;
using testing::HasSubstr;

using State = std::map<std::string, std::string>;

#ifdef IDCARD_TEST_SAMPLE
constexpr int ERRORS[] = {ENOSPC};
#else
constexpr int ERRORS[] = {ENOSPC, EIO, EACCES};
#endif

const QVector<app::NamedContent> NEW_FILES = {{"a", "new a"}, {"b", "new b"}, {"c", QByteArray()}};
const State NEW_STATE = {{"a", "new a"}, {"b", "new b"}};
const State OLD_STATE = {{"a", "old a"}, {"b", "old b"}, {"c", "old c"}, {"other", "mine"}};

/** The state of a folder in which the new files have replaced the old ones. */
State replaced()
{
    State state = NEW_STATE;
    state["other"] = "mine";
    return state;
}

/** A function of the system with the number of the call that fails. */
struct Case {
    std::string function;
    int error;
};

std::vector<Case> cases()
{
    std::vector<Case> all;
    for (const char *const function : FILE_FUNCTIONS)
        for (const int error : ERRORS)
            all.push_back({function, error});
    return all;
}

/** What is there before the new files are written. */
enum Folder { NEW_FOLDER, OLD_FILES };

class FileCall : public testing::TestWithParam<Case>
{
protected:
    void TearDown() override { setFailingFileCalls({}); }

    QString folder() const { return base.filePath(QStringLiteral("card")); }

    FailingFileCall call(const std::string &function, int position) const
    {
        return {function, position, GetParam().error, base.path().toStdString()};
    }

    /** Writes the new files while these calls fail. Returns what was reported. */
    std::string writeWith(const std::vector<FailingFileCall> &failing) const
    {
        setFailingFileCalls(failing);
        const QString problem = app::writeFileSet(folder(), NEW_FILES, app::ExistingFiles::REPLACE);
        made = fileCallsMade();
        madeOfLast = lastFileCallsMade();
        setFailingFileCalls({});
        return problem.toStdString();
    }

    /** Does `work` with the number of each call in turn, each time in a folder as it is at first.
     */
    void atEachCall(Folder before, const std::function<void(int position)> &work) const
    {
        const auto begin = [&] {
            clear();
            if (before == OLD_FILES)
                makeOldFiles();
        };
        begin();
        write(0);
        const int count = made;
        for (int position = 1; position <= count; ++position) {
            SCOPED_TRACE(position);
            begin();
            work(position);
        }
    }

    /** As above with one call; `position` 0 fails nothing. */
    std::string write(int position) const
    {
        return writeWith({call(GetParam().function, position)});
    }

    void makeOldFiles() const
    {
        ASSERT_TRUE(QDir().mkpath(folder()));
        for (const auto &[name, content] : OLD_STATE)
            writeFile(QDir(folder()).filePath(QString::fromStdString(name)),
                      QByteArray::fromStdString(content));
    }

    void clear() const { QDir(folder()).removeRecursively(); }

    /** What the problem must say: which file, why, and what to do. */
    void expectReported(const std::string &problem) const
    {
        EXPECT_THAT(problem, HasSubstr(folder().toStdString()));
        EXPECT_THAT(problem, HasSubstr("could not be "));
        EXPECT_THAT(problem, testing::AnyOf(HasSubstr("Choose another folder"),
                                            HasSubstr("choose another folder")));
    }

    /** A file that could not be removed is there; unless it is empty, it must have been reported.
     */
    static void takeAwayWhatIsReported(State &state, const MessageLog &log)
    {
        for (auto file = state.begin(); file != state.end();) {
            if (file->first.front() != '.') {
                ++file;
                continue;
            }
            if (!file->second.empty()) {
                EXPECT_THAT(log.texts(), testing::Contains(HasSubstr(file->first)));
            }
            file = state.erase(file);
        }
    }

    /** After two failures: no content is gone, and what is left elsewhere or too much is reported.
     */
    void expectThereOrReported(const State &wanted, const MessageLog &log) const
    {
        const State state = folderState(folder());
        for (const auto &[name, content] : wanted) {
            const auto holdsIt = [&wantedContent = content](const auto &file) {
                return file.second == wantedContent;
            };
            EXPECT_TRUE(std::any_of(state.begin(), state.end(), holdsIt)) << content << " is gone";
        }
        for (const auto &[name, content] : state) {
            const auto found = wanted.find(name);
            if (found == wanted.end() || found->second != content) {
                EXPECT_THAT(log.texts(), testing::Contains(HasSubstr("/card/" + name)));
            }
        }
    }

    QTemporaryDir base;
    mutable int made = 0;
    mutable int madeOfLast = 0;
};

INSTANTIATE_TEST_SUITE_P(EachFunction, FileCall, testing::ValuesIn(cases()),
                         [](const auto &instance) {
                             return instance.param.function + "_" +
                                    std::to_string(instance.param.error);
                         });

} // namespace

TEST_P(FileCall, FailsInANewFolder_AllFilesAreThereOrNothingIs)
{
    atEachCall(NEW_FOLDER, [this](int position) {
        const std::string problem = write(position);
        if (problem.empty()) {
            EXPECT_EQ(folderState(folder()), NEW_STATE);
            return;
        }
        expectReported(problem);
        EXPECT_FALSE(QDir(folder()).exists()) << testing::PrintToString(folderState(folder()));
    });
}

TEST_P(FileCall, FailsWhereFilesAreReplaced_TheNewOnesAreThereOrTheOldOnes)
{
    atEachCall(OLD_FILES, [this](int position) {
        const MessageLog log;
        const std::string problem = write(position);
        if (!problem.empty())
            expectReported(problem);
        State state = folderState(folder());
        if (GetParam().function == "unlink")
            takeAwayWhatIsReported(state, log);
        EXPECT_EQ(state, problem.empty() ? replaced() : OLD_STATE);
    });
}

TEST_P(FileCall, AndAnotherFailWhereFilesAreReplaced_NoContentIsGoneAndLeftoversAreReported)
{
    atEachCall(OLD_FILES, [this](int position) {
        for (const char *const function : FILE_FUNCTIONS) {
            int left = 1;
            for (int second = 1; second <= left; ++second) {
                SCOPED_TRACE(std::string(function) + ' ' + std::to_string(second));
                clear();
                makeOldFiles();
                const MessageLog log;
                const std::string problem =
                    writeWith({call(GetParam().function, position), call(function, second)});
                left = madeOfLast;
                expectThereOrReported(problem.empty() ? replaced() : OLD_STATE, log);
            }
        }
    });
}

namespace
{

/** The error stands for a signal here. */
class EndingSignal : public FileCall
{
protected:
    /** Writes in a process of its own, to which the signal comes at this call. */
    void expectEndAt(int position, const State &state) const
    {
        const int status = ForkedWork([&](int /*report*/) { write(position); }).wait().status;
        EXPECT_TRUE(WIFSIGNALED(status)) << status;
        EXPECT_EQ(WTERMSIG(status), -GetParam().error);
        EXPECT_EQ(folderState(folder()), state);
    }
};

std::vector<Case> casesOfSignals()
{
    std::vector<Case> all;
    for (const char *const function : FILE_FUNCTIONS)
        for (const int signal : {SIGHUP, SIGINT, SIGTERM})
            all.push_back({function, -signal});
    return all;
}

INSTANTIATE_TEST_SUITE_P(AtEachFunction, EndingSignal, testing::ValuesIn(casesOfSignals()),
                         [](const auto &instance) {
                             return instance.param.function + "_" +
                                    std::to_string(-instance.param.error);
                         });

} // namespace

TEST_P(EndingSignal, InANewFolder_EndsTheProgramWhenAllFilesAreThere)
{
    atEachCall(NEW_FOLDER, [this](int position) { expectEndAt(position, NEW_STATE); });
}

TEST_P(EndingSignal, WhereFilesAreReplaced_EndsTheProgramWhenTheNewOnesAreThereAndNothingIsLeft)
{
    atEachCall(OLD_FILES, [this](int position) { expectEndAt(position, replaced()); });
}

TEST(NumberedFolder, ThatAnotherProgramMakesAtTheSameTime_IsLeftToItAndTheNextOneTaken)
{
    const QTemporaryDir base;
    setFailingFileCalls({{"mkdir", 1, EEXIST, base.path().toStdString()}});
    QString folder;
    EXPECT_EQ(app::makeNextNumberedFolder(base.path(), &folder), QString());
    setFailingFileCalls({});
    EXPECT_EQ(folder, base.filePath("0002"));
    EXPECT_EQ(modeOf(folder), 0700);
}

namespace
{

/** A program whose `function` fails when it is called for the first time in the folder. */
struct ToolCase {
    const char *function;
    int error;
};

class ToolFileCall : public testing::TestWithParam<ToolCase>
{
};

INSTANTIATE_TEST_SUITE_P(OfTheTool, ToolFileCall,
                         testing::Values(ToolCase{"mkdir", EACCES}, ToolCase{"write", ENOSPC},
                                         ToolCase{"fsync", EIO}, ToolCase{"open", EACCES}),
                         [](const auto &instance) { return std::string(instance.param.function); });

} // namespace

TEST_P(ToolFileCall, Fails_StatusSevenNothingLeftAndTheCardIsPrintedAllTheSame)
{
    const QTemporaryDir base;
    const QString folder = base.filePath(QStringLiteral("card"));
    ProcessInput input;
    input.environment[QStringLiteral("LD_PRELOAD")] = QStringLiteral(IDCARD_FAILING_FILES);
    input.environment[QStringLiteral("ASAN_OPTIONS")] = QStringLiteral("verify_asan_link_order=0");
    input.environment[QStringLiteral("IDCARD_FAILING_CALL")] =
        QStringLiteral("%1 1 %2 %3")
            .arg(QLatin1String(GetParam().function))
            .arg(GetParam().error)
            .arg(base.path());
    const ProcessResult result =
        runTool({"read", "--simulate", "resident", "--out", folder}, input);
    EXPECT_EQ(result.exitStatus, 7);
    EXPECT_THAT(result.standardError.toStdString(), HasSubstr("could not be "));
    EXPECT_THAT(result.standardError.toStdString(), HasSubstr(std::strerror(GetParam().error)));
    EXPECT_THAT(result.standardOutput.toStdString(), HasSubstr("990000199003074284"));
    EXPECT_FALSE(QDir(folder).exists());
}
