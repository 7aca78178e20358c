#include <chrono>
#include <future>

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>

#include "apps/card/file_set.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/files.h"
#include "tests/support/locked_folder.h"

using namespace app;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

namespace
{

class FileSet : public testing::Test
{
protected:
    QString path(const char *name) const { return QDir(m_base.path()).filePath(name); }

    /** Writes into the folder "card" and returns what failed. */
    std::string write(const QVector<NamedContent> &files,
                      ExistingFiles existing = ExistingFiles::REFUSE) const
    {
        return writeFileSet(path("card"), files, existing).toStdString();
    }

    void makeOldCard() const
    {
        ASSERT_TRUE(QDir().mkdir(path("card")));
        writeFile(path("card/a"), "old a");
        writeFile(path("card/b"), "old b");
    }

    std::map<std::string, std::string> state() const { return folderState(path("card")); }

    const QVector<NamedContent> m_files{{"a", "new a"}, {"b", "new b"}};

private:
    QTemporaryDir m_base;
};

TEST_F(FileSet, FilesAppearInNewFoldersForTheirOwnerAloneWhateverTheMask)
{
    for (const mode_t mask : {mode_t{022}, mode_t{0}}) {
        const mode_t before = ::umask(mask);
        EXPECT_THAT(write(m_files, ExistingFiles::REPLACE), IsEmpty());
        ::umask(before);
        EXPECT_THAT(state(), UnorderedElementsAre(Pair("a", "new a"), Pair("b", "new b")));
        EXPECT_EQ(modeOf(path("card")), 0700);
        EXPECT_EQ(modeOf(path("card/a")), 0600);
        EXPECT_EQ(modeOf(path("card/b")), 0600);
        EXPECT_TRUE(QDir(path("card")).removeRecursively());
    }
    EXPECT_THAT(writeFileSet(path("x/y/z"), m_files, ExistingFiles::REFUSE).toStdString(),
                IsEmpty());
    EXPECT_EQ(modeOf(path("x")), 0700);
    EXPECT_EQ(modeOf(path("x/y/z/a")), 0600);
}

TEST_F(FileSet, FolderThatIsThereKeepsItsModeAndOtherFiles)
{
    ASSERT_TRUE(QDir().mkdir(path("card")));
    ASSERT_EQ(::chmod(QFile::encodeName(path("card")).constData(), 0755), 0);
    writeFile(path("card/other"), "mine");
    EXPECT_THAT(write(m_files), IsEmpty());
    EXPECT_EQ(modeOf(path("card")), 0755);
    EXPECT_THAT(state(), UnorderedElementsAre(Pair("a", "new a"), Pair("b", "new b"),
                                              Pair("other", "mine")));
}

TEST_F(FileSet, EmptyContentMakesAnEmptyFileAndNullContentNone)
{
    EXPECT_THAT(write({{"a", ""}, {"b", QByteArray()}}), IsEmpty());
    EXPECT_THAT(state(), UnorderedElementsAre(Pair("a", "")));
}

TEST_F(FileSet, WhatIsThereRefusesAllAndIsNamed)
{
    ASSERT_TRUE(QDir().mkdir(path("card")));
    writeFile(path("card/b"), "old b");
    EXPECT_THAT(write(m_files), HasSubstr("already holds b"));
    // It must not be there, either, where the new set has none.
    EXPECT_THAT(write({{"a", "new a"}, {"b", QByteArray()}}), HasSubstr("already holds b"));
    EXPECT_THAT(state(), UnorderedElementsAre(Pair("b", "old b")));
    ASSERT_TRUE(QFile::link(path("nowhere"), path("card/a")));
    EXPECT_THAT(write(m_files), HasSubstr("already holds a, b"));
    EXPECT_FALSE(QFile::exists(path("nowhere")));
}

TEST_F(FileSet, ReplacingLeavesTheNewFilesAlone)
{
    makeOldCard();
    EXPECT_THAT(write(m_files, ExistingFiles::REPLACE), IsEmpty());
    EXPECT_THAT(state(), UnorderedElementsAre(Pair("a", "new a"), Pair("b", "new b")));
    EXPECT_EQ(modeOf(path("card/a")), 0600);
    EXPECT_THAT(write({{"a", "newer"}, {"b", QByteArray()}}, ExistingFiles::REPLACE), IsEmpty());
    EXPECT_THAT(state(), UnorderedElementsAre(Pair("a", "newer")));
}

TEST_F(FileSet, ReplacingALinkLeavesWhatItPointsTo)
{
    ASSERT_TRUE(QDir().mkdir(path("card")));
    writeFile(path("elsewhere"), "precious");
    ASSERT_TRUE(QFile::link(path("elsewhere"), path("card/a")));
    EXPECT_THAT(write(m_files, ExistingFiles::REPLACE), IsEmpty());
    EXPECT_EQ(readFile(path("elsewhere")), "precious");
    EXPECT_EQ(readFile(path("card/a")), "new a");
}

TEST_F(FileSet, FolderInTheWayIsNeverReplaced)
{
    ASSERT_TRUE(QDir().mkpath(path("card/b")));
    EXPECT_THAT(write(m_files, ExistingFiles::REPLACE), HasSubstr("card/b is a folder"));
    EXPECT_THAT(state(), UnorderedElementsAre(Pair("b", "<folder>")));
}

TEST_F(FileSet, FileInPlaceOfAFolderIsReportedAndLeft)
{
    writeFile(path("card"), "a file");
    EXPECT_THAT(write(m_files), HasSubstr("is not a folder"));
    EXPECT_THAT(writeFileSet(path("card/below"), m_files, ExistingFiles::REFUSE).toStdString(),
                HasSubstr("could not be made"));
    EXPECT_EQ(readFile(path("card")), "a file");
}

TEST_F(FileSet, WriteThatFailsHalfWayLeavesNothing)
{
    const FileSizeLimit limit(1000);
    const QVector<NamedContent> files{{"a", "small"}, {"b", QByteArray(5000, 'x')}};
    for (const char *const folder : {"card", "new/folders/card"}) {
        EXPECT_THAT(writeFileSet(path(folder), files, ExistingFiles::REFUSE).toStdString(),
                    HasSubstr("b could not be written"));
        EXPECT_FALSE(QFile::exists(path(folder)));
    }
    EXPECT_FALSE(QFile::exists(path("new")));
}

TEST_F(FileSet, WriteThatFailsHalfWayLeavesTheOldFiles)
{
    makeOldCard();
    const FileSizeLimit limit(1000);
    EXPECT_THAT(write({{"a", "small"}, {"b", QByteArray(5000, 'x')}}, ExistingFiles::REPLACE),
                HasSubstr("b could not be written"));
    EXPECT_THAT(state(), UnorderedElementsAre(Pair("a", "old a"), Pair("b", "old b")));
}

TEST_F(FileSet, FileThatCannotGetItsNameBringsTheOldOnesBack)
{
    makeOldCard();
    // A name of the longest length the system takes has no room for the passing name beside it.
    EXPECT_THAT(
        write({{"a", "new a"}, {"b", QByteArray()}, {QString(300, QLatin1Char('n')), "never"}},
              ExistingFiles::REPLACE),
        HasSubstr("could not be written"));
    EXPECT_THAT(state(), UnorderedElementsAre(Pair("a", "old a"), Pair("b", "old b")));
}

TEST_F(FileSet, NamesThatMeetOnTheirWayBringTheOldOnesBack)
{
    EXPECT_THAT(write({{"c", "1"}, {"c", "2"}}), HasSubstr("could not be written"));
    EXPECT_FALSE(QFile::exists(path("card")));
    makeOldCard();
    // The second "c" finds the first in its place after "a" and "b" have been replaced.
    EXPECT_THAT(write({{"a", "new a"}, {"b", QByteArray()}, {"c", "1"}, {"./c/../c", "2"}},
                      ExistingFiles::REPLACE),
                HasSubstr("could not be written"));
    EXPECT_THAT(state(), UnorderedElementsAre(Pair("a", "old a"), Pair("b", "old b")));
}

TEST_F(FileSet, ObstacleIsReportedWithoutWriting)
{
    makeOldCard();
    EXPECT_THAT(obstacleTo(path("card"), {"a"}, ExistingFiles::REFUSE).toStdString(),
                HasSubstr("--force"));
    EXPECT_TRUE(obstacleTo(path("card"), {"a"}, ExistingFiles::REPLACE).isEmpty());
    EXPECT_TRUE(obstacleTo(path("card"), {"z"}, ExistingFiles::REFUSE).isEmpty());
    EXPECT_TRUE(obstacleTo(path("new"), {"a"}, ExistingFiles::REFUSE).isEmpty());
    EXPECT_FALSE(QFile::exists(path("new")));
}

TEST_F(FileSet, PathMeansWhatItMeansToTheSystem)
{
    ASSERT_TRUE(QDir().mkpath(path("far/away")));
    ASSERT_TRUE(QFile::link(path("far/away"), path("link")));
    for (const char *const folder : {"link/../card", "new/./card//"}) {
        EXPECT_THAT(writeFileSet(path(folder), m_files, ExistingFiles::REFUSE).toStdString(),
                    IsEmpty());
        EXPECT_THAT(obstacleTo(path(folder), {"a"}, ExistingFiles::REFUSE).toStdString(),
                    HasSubstr("already holds a"));
    }
    EXPECT_FALSE(QFile::exists(path("card")));
    EXPECT_EQ(readFile(path("far/card/a")), "new a");
    EXPECT_EQ(readFile(path("new/card/a")), "new a");
}

TEST_F(FileSet, PathUpFromAFolderThatIsNotThereIsRefused)
{
    makeOldCard();
    const QString folder = path("missing/../card");
    for (const QString &problem :
         {obstacleTo(folder, {"z"}, ExistingFiles::REFUSE),
          writeFileSet(folder, m_files, ExistingFiles::REPLACE), makePrivateFolder(folder)})
        EXPECT_THAT(problem.toStdString(),
                    AllOf(HasSubstr(folder.toStdString() + " could not be made"),
                          HasSubstr("No such file or directory")));
    EXPECT_FALSE(QFile::exists(path("missing")));
    EXPECT_THAT(state(), UnorderedElementsAre(Pair("a", "old a"), Pair("b", "old b")));
}

class FolderInUse : public FileSet
{
protected:
    /** Writes while another program does; after a while that does `work` and has ended. */
    std::string writeAfter(const std::function<void()> &work, const QVector<NamedContent> &files,
                           ExistingFiles existing) const
    {
        LockedFolder lock(path("card"));
        const auto before = state();
        auto problem = std::async(std::launch::async, [&] { return write(files, existing); });
        EXPECT_EQ(problem.wait_for(std::chrono::milliseconds(200)), std::future_status::timeout);
        EXPECT_EQ(state(), before);
        work();
        lock.unlock();
        return problem.get();
    }
};

TEST_F(FolderInUse, IsWrittenAfterwards)
{
    makeOldCard();
    const auto replaceA = [this] { writeFile(path("card/a"), "newer a"); };
    EXPECT_THAT(writeAfter(replaceA, m_files, ExistingFiles::REPLACE), IsEmpty());
    EXPECT_THAT(state(), UnorderedElementsAre(Pair("a", "new a"), Pair("b", "new b")));
}

TEST_F(FolderInUse, WhatHasAppearedRefusesAll)
{
    ASSERT_TRUE(QDir().mkdir(path("card")));
    const auto makeB = [this] { writeFile(path("card/b"), "another's b"); };
    // A set of which no file would replace it.
    EXPECT_THAT(writeAfter(makeB, {{"a", "new a"}, {"b", QByteArray()}}, ExistingFiles::REFUSE),
                HasSubstr("already holds b"));
    EXPECT_THAT(state(), UnorderedElementsAre(Pair("b", "another's b")));
}

TEST_F(FolderInUse, ForTooLongIsReportedAndLeft)
{
    makeOldCard();
    const LockedFolder lock(path("card"));
    EXPECT_THAT(write(m_files, ExistingFiles::REPLACE),
                AllOf(HasSubstr("Another program has locked the folder"), HasSubstr("/card.")));
    EXPECT_THAT(state(), UnorderedElementsAre(Pair("a", "old a"), Pair("b", "old b")));
}

class NumberedFolders : public FileSet
{
protected:
    std::string next() const
    {
        QString folder;
        const QString problem = makeNextNumberedFolder(path("."), &folder);
        return problem.isEmpty() ? QDir(folder).dirName().toStdString() : problem.toStdString();
    }
};

TEST_F(NumberedFolders, GoOnAfterTheHighestNumberThatIsThere)
{
    ASSERT_TRUE(QDir().mkdir(path("99"))); // other names do not count
    ASSERT_TRUE(QDir().mkdir(path("2024-cards")));
    EXPECT_EQ(next(), "0001");
    EXPECT_EQ(next(), "0002");
    EXPECT_EQ(modeOf(path("0002")), 0700);
    ASSERT_TRUE(QDir().mkdir(path("0007")));
    writeFile(path("0009"), "a file also takes its number");
    EXPECT_EQ(next(), "0010");
    ASSERT_TRUE(QDir().mkdir(path("9999")));
    EXPECT_EQ(next(), "10000");
    EXPECT_EQ(next(), "10001");
    QString folder;
    EXPECT_THAT(makeNextNumberedFolder(path("missing"), &folder).toStdString(),
                HasSubstr("could not be made"));
}

} // namespace
