// Where the five closed functions are found, and what happens where they are missing.

#include "tests/support/files.h"
#include "tests/support/process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace
{

using testing::HasSubstr;

const QString LIBRARY_NAME = QStringLiteral("libidcard_reader_lib.so");
const QString LIBRARY = QStringLiteral(IDCARD_BUILD_LIB_DIR "/") + LIBRARY_NAME;
const QString FIRST = QStringLiteral(IDCARD_STAND_IN_DIR "/first/");
const QString SECOND = QStringLiteral(IDCARD_STAND_IN_DIR "/second/");
const QString INCOMPLETE = QStringLiteral(IDCARD_STAND_IN_DIR "/incomplete/");
const QString READER_FILE = QStringLiteral(IDCARD_READER_FILE);
const QString WLT_FILE = QStringLiteral(IDCARD_WLT_FILE);

class ClosedLibraryDoor : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(folder.isValid());
        copyHere(LIBRARY);
        unsetLoaderPath();
    }

    /** Puts a copy of `file` beside the library under test. */
    void copyHere(const QString &file)
    {
        ASSERT_TRUE(QFile::copy(file, here(QFileInfo(file).fileName()))) << file.toStdString();
    }

    QString here(const QString &name) const { return folder.filePath(name); }

    void unsetLoaderPath() { input.environment[QStringLiteral("LD_LIBRARY_PATH")] = QString(); }
    void setLoaderPath(const QString &path)
    {
        input.environment[QStringLiteral("LD_LIBRARY_PATH")] = path;
    }

    /** Runs the probe with the copied library. */
    void probe(const QStringList &arguments = {}) { probeLibrary(here(LIBRARY_NAME), arguments); }

    void probeLibrary(const QString &library, const QStringList &arguments)
    {
        input.environment[QStringLiteral("QT_LOGGING_RULES")] = QStringLiteral("default=true");
        const ProcessResult result =
            runProcess(QStringLiteral("door_probe"), QStringList(library) + arguments, input);
        ASSERT_TRUE(result.finished);
        ASSERT_EQ(result.exitStatus, 0) << result.standardError.constData();
        out = result.output();
        err = result.error();
    }

    QTemporaryDir folder;
    ProcessInput input;
    std::string out;
    std::string err;
};

/** The lines of `text` that begin with `start`; Qt's own and the pictures' are none of the door's.
 */
std::string linesFrom(const std::string &text, const char *start)
{
    QString lines;
    for (const QString &line : QString::fromStdString(text).split('\n'))
        lines += line.startsWith(QLatin1String(start)) ? line + '\n' : QString();
    return lines.toStdString();
}

int linesWith(const std::string &text, const std::string &part)
{
    int count = 0;
    for (const QString &line : QString::fromStdString(text).split('\n'))
        count += line.contains(QString::fromStdString(part)) ? 1 : 0;
    return count;
}

} // namespace

TEST_F(ClosedLibraryDoor, NeitherLibraryThere_LoadsAndFailsToOpen)
{
    probe();
    EXPECT_THAT(err, HasSubstr("probe: result=-5 kind=99 name=\n"));
    EXPECT_EQ(out, "打开读卡器失败，错误码：-1\n");
}

TEST_F(ClosedLibraryDoor, NeitherLibraryThere_ReportsInOneLineWhichFileWasLookedFor)
{
    probe();
    EXPECT_EQ(linesWith(err, READER_FILE.toStdString()), 1) << err;
    EXPECT_EQ(linesWith(err, "KVO_OpenPort"), 1) << err;
}

TEST_F(ClosedLibraryDoor, MakersLibraryBesideTheLibrary_IsFound)
{
    copyHere(FIRST + READER_FILE);
    copyHere(FIRST + WLT_FILE);
    probe();
    EXPECT_EQ(linesFrom(err, "probe: "), "probe: result=0 kind=0 name=first\n");
}

TEST_F(ClosedLibraryDoor, LibraryLoadedByARelativePath_FindsTheMakersFromAnotherWorkingFolder)
{
    copyHere(FIRST + READER_FILE);
    copyHere(FIRST + WLT_FILE);
    input.workingDirectory = folder.path();
    probeLibrary("./" + LIBRARY_NAME, {"elsewhere"});
    EXPECT_EQ(linesFrom(err, "probe: "), "probe: result=0 kind=0 name=first\n");
    setLoaderPath(".");
    probeLibrary(LIBRARY_NAME, {"elsewhere"});
    EXPECT_EQ(linesFrom(err, "probe: "), "probe: result=0 kind=0 name=first\n");
}

TEST_F(ClosedLibraryDoor, MakersLibraryOnTheLoadersPath_IsFound)
{
    setLoaderPath(FIRST);
    probe();
    EXPECT_EQ(linesFrom(err, "probe: "), "probe: result=0 kind=0 name=first\n");
}

TEST_F(ClosedLibraryDoor, MakersLibraryBesideAndOnThePath_IsTakenFromBeside)
{
    copyHere(SECOND + READER_FILE);
    setLoaderPath(FIRST);
    probe();
    EXPECT_EQ(linesFrom(err, "probe: "), "probe: result=0 kind=0 name=second\n");
}

TEST_F(ClosedLibraryDoor, FileBesideThatIsNoLibrary_GivesWayToTheLoadersPath)
{
    writeFile(here(READER_FILE), "not a library");
    setLoaderPath(FIRST);
    probe();
    EXPECT_EQ(linesFrom(err, "probe: "), "probe: result=0 kind=0 name=first\n");
}

TEST_F(ClosedLibraryDoor, FileThatIsNoLibrary_IsReportedWithTheLoadersReason)
{
    writeFile(here(READER_FILE), "not a library");
    probe();
    EXPECT_THAT(err, HasSubstr("probe: result=-5"));
    EXPECT_EQ(linesWith(err, here(READER_FILE).toStdString()), 1) << err;
    // Both places where it was looked for, apart from each other.
    EXPECT_EQ(linesWith(err, "; " + READER_FILE.toStdString() + ": cannot open"), 1) << err;
}

TEST_F(ClosedLibraryDoor, PreloadedDefinitions_GoBeforeTheMakersLibrary)
{
    copyHere(FIRST + READER_FILE);
    copyHere(FIRST + WLT_FILE);
    input.environment[QStringLiteral("LD_PRELOAD")] = SECOND + READER_FILE;
    input.environment[QStringLiteral("ASAN_OPTIONS")] = QStringLiteral("verify_asan_link_order=0");
    probe();
    EXPECT_EQ(linesFrom(err, "probe: "), "probe: result=0 kind=0 name=second\n");
}

TEST_F(ClosedLibraryDoor, DefinitionsLoadedAfterTheLibrary_GoBeforeTheMakersLibrary)
{
    copyHere(FIRST + READER_FILE);
    copyHere(FIRST + WLT_FILE);
    probe({QStringLiteral("global"), SECOND + READER_FILE});
    EXPECT_EQ(linesFrom(err, "probe: "), "probe: result=0 kind=0 name=second\n");
}

TEST_F(ClosedLibraryDoor, DefinitionsTakenAwayAgain_GiveWayToTheMakersLibrary)
{
    copyHere(FIRST + READER_FILE);
    copyHere(FIRST + WLT_FILE);
    if (*IDCARD_SANITIZERS != '\0')
        GTEST_SKIP() << "the sanitizers keep a library that they watch";
    probe({QStringLiteral("passing"), SECOND + READER_FILE});
    EXPECT_EQ(linesFrom(err, "probe: "), "probe: result=0 kind=0 name=second\n"
                                         "probe: unloaded\n"
                                         "probe: result=0 kind=0 name=first\n");
}

TEST_F(ClosedLibraryDoor, MissingDecoder_LeavesThePhotoUndecodedAndIsReported)
{
    copyHere(FIRST + READER_FILE);
    probe();
    EXPECT_THAT(err, HasSubstr("probe: result=-26 kind=99 name=\n"));
    EXPECT_EQ(linesWith(err, WLT_FILE.toStdString()), 1) << err;
    EXPECT_EQ(linesWith(err, "解码头像数据失败!"), 1) << err;
}

TEST_F(ClosedLibraryDoor, LibraryWithoutOneOfTheFunctions_CountsAsMissing)
{
    copyHere(INCOMPLETE + READER_FILE);
    probe();
    EXPECT_THAT(err, HasSubstr("probe: result=-5"));
    EXPECT_EQ(linesWith(err, "KVO_ClosePort"), 1) << err;
    EXPECT_EQ(linesWith(err, READER_FILE.toStdString()), 1) << err;
}

TEST_F(ClosedLibraryDoor, ClosingTheLibrary_UnloadsItWithItsTemplatesAndItLoadsAgain)
{
    copyHere(FIRST + READER_FILE);
    copyHere(FIRST + WLT_FILE);
    probe({QStringLiteral("unload")});
    // The sanitizers keep a library that they watch.
    const std::string fate = *IDCARD_SANITIZERS == '\0'
                                 ? "probe: unloaded, templates there and gone\n"
                                 : "probe: still loaded, templates there and still there\n";
    EXPECT_EQ(linesFrom(err, "probe: "),
              "probe: result=0 kind=0 name=first\n" + fate + "probe: result=0 kind=0 name=first\n");
}
