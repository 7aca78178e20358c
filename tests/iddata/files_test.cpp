// CIdData::saveFpRawDataToFile and the file helpers of CCommon.

#include "common/common.h"
#include "tests/iddata/decoder.h"
#include "tests/iddata/guarded_bytes.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/files.h"
#include "tests/support/message_log.h"

#include <array>
#include <chrono>
#include <climits>
#include <csignal>
#include <numeric>
#include <stdexcept>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

const QString FILE_NAME = QStringLiteral("fp_raw_data.dat");

/** In an empty current directory, which is left again. */
class Files : public testing::Test
{
public:
    Files()
    {
        EXPECT_TRUE(folder.isValid());
        EXPECT_TRUE(QDir::setCurrent(folder.path()));
    }
    ~Files() override { QDir::setCurrent(before); }
    Files(const Files &) = delete;
    Files(Files &&) = delete;
    Files &operator=(const Files &) = delete;
    Files &operator=(Files &&) = delete;

protected:
    static QStringList names() { return QDir().entryList(QDir::AllEntries | QDir::NoDotAndDotDot); }

    QString before = QDir::currentPath();
    QTemporaryDir folder;
    Decoder decoder;
};

/** Bytes 0, 1, 2 ... between guard pages. */
class Prints : public GuardedBytes
{
public:
    Prints(std::size_t size, Side side) : GuardedBytes(size, side)
    {
        std::iota(begin(), end(), static_cast<unsigned char>(0));
    }
    QByteArray bytes() const
    {
        return {reinterpret_cast<const char *>(data()), static_cast<int>(size())};
    }
};

} // namespace

TEST_F(Files, Prints_AreWrittenAsTheyAreIntoAFileOfItsOwner)
{
    for (const auto &[info, size, count] :
         {std::tuple(FP_INFO_TWO, 1024, "two"), std::tuple(FP_INFO_ONE, 512, "one")})
        for (const auto side : GUARD_SIDES) {
            Prints prints(static_cast<std::size_t>(size), side);
            const MessageLog log;
            decoder->saveFpRawDataToFile(info, prints.data());
            EXPECT_THAT(
                log.debugTexts(),
                ElementsAre("source id card has " + std::string(count) + " fp data",
                            "Successfully wrote " + std::to_string(size) + " bytes to the file."));
            EXPECT_EQ(readFile(FILE_NAME), prints.bytes());
        }
    EXPECT_EQ(names(), QStringList(FILE_NAME));
    EXPECT_EQ(modeOf(FILE_NAME), 0600);
}

TEST_F(Files, NoPrint_IsReportedAndNoFileIsTouched)
{
    const MessageLog log;
    decoder->saveFpRawDataToFile(FP_INFO_NONE, nullptr);
    EXPECT_THAT(log.texts(), ElementsAre("source id card has no fp data"));
    EXPECT_THAT(names(), IsEmpty());
    writeFile(FILE_NAME, "earlier");
    decoder->saveFpRawDataToFile(FP_INFO_NONE, nullptr);
    EXPECT_EQ(readFile(FILE_NAME), "earlier");
}

TEST_F(Files, AnyOtherAmountOfPrints_IsPassedOverInSilence)
{
    const MessageLog log;
    for (const int info : {3, -1, INT_MAX, INT_MIN})
        decoder->saveFpRawDataToFile(static_cast<FP_INFO_TYPE>(info), nullptr);
    EXPECT_THAT(log.texts(), IsEmpty());
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(Files, EarlierFile_IsReplacedAndKeepsItsPermissions)
{
    writeFile(FILE_NAME, QByteArray(5000, 'x'));
    const int permissions = modeOf(FILE_NAME);
    Prints prints(512, GuardedBytes::GUARD_AFTER);
    decoder->saveFpRawDataToFile(FP_INFO_ONE, prints.data());
    EXPECT_EQ(readFile(FILE_NAME), prints.bytes());
    EXPECT_EQ(modeOf(FILE_NAME), permissions);
}

TEST_F(Files, FolderInTheFilesPlace_IsOneCriticalLine)
{
    ASSERT_TRUE(QDir().mkdir(FILE_NAME));
    Prints prints(1024, GuardedBytes::GUARD_AFTER);
    const MessageLog log;
    decoder->saveFpRawDataToFile(FP_INFO_TWO, prints.data());
    EXPECT_THAT(log.texts(), ElementsAre("source id card has two fp data",
                                         "Failed to open the file for writing."));
    EXPECT_EQ(log.messages().back().type, QtCriticalMsg);
    EXPECT_EQ(log.messages().back().category, "default");
}

TEST_F(Files, PathThatCannotBeOpened_IsOneCriticalLine)
{
    unsigned char byte = 1;
    for (const QString &path : {QString(), QStringLiteral("no/such/folder")}) {
        const MessageLog log;
        CCommon::saveByteDataToFile(&byte, 1, path);
        EXPECT_THAT(log.texts(), ElementsAre("Failed to open the file for writing."));
    }
}

TEST_F(Files, HostsMessageHandlerThatThrows_CostsTheLineAndNothingElse)
{
    static int lines = 0;
    lines = 0;
    const QtMessageHandler handler =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {
            ++lines;
            throw std::runtime_error("the host's");
        });
    unsigned char byte = 'b';
    EXPECT_NO_THROW(CCommon::saveByteDataToFile(&byte, 1, QStringLiteral("no/such/folder")));
    EXPECT_NO_THROW(CCommon::saveByteDataToFile(&byte, 1, FILE_NAME));
    qInstallMessageHandler(handler);
    EXPECT_EQ(lines, 2) << "a critical line and a debug line";
    EXPECT_EQ(readFile(FILE_NAME), "b");
}

TEST_F(Files, DiskThatFillsUp_IsReportedWithBothCounts)
{
    Prints prints(1024, GuardedBytes::GUARD_AFTER);
    const MessageLog log;
    {
        const FileSizeLimit limit(100);
        decoder->saveFpRawDataToFile(FP_INFO_TWO, prints.data());
    }
    EXPECT_THAT(
        log.debugTexts(),
        ElementsAre("source id card has two fp data",
                    "wrote 100 bytes to the file,  want to write  1024 bytes to the file."));
    EXPECT_EQ(readFile(FILE_NAME), prints.bytes().left(100));
}

TEST_F(Files, FullDisk_IsReportedAsHavingTakenNothing)
{
    Prints prints(512, GuardedBytes::GUARD_AFTER);
    const MessageLog log;
    CCommon::saveByteDataToFile(prints.data(), 512, QStringLiteral("/dev/full"));
    EXPECT_THAT(log.texts(),
                ElementsAre("wrote 0 bytes to the file,  want to write  512 bytes to the file."));
}

TEST_F(Files, LengthOfZeroOrLess_MakesAnEmptyFile)
{
    unsigned char bytes[] = "text";
    const std::pair<int, const char *> lengths[] = {
        {0, "Successfully wrote 0 bytes to the file."},
        {-1, "wrote 0 bytes to the file,  want to write  -1 bytes to the file."},
        {INT_MIN, "wrote 0 bytes to the file,  want to write  -2147483648 bytes to the file."},
    };
    for (const auto &[length, line] : lengths) {
        const MessageLog log;
        CCommon::saveByteDataToFile(bytes, length, QStringLiteral("file"));
        EXPECT_THAT(log.texts(), ElementsAre(line));
        EXPECT_EQ(readFile(QStringLiteral("file")), "");
    }
}

TEST_F(Files, HostWithoutStandardInput_StillHasItsFileWritten)
{
    unsigned char bytes[] = {1, 2, 3};
    const int standardInput = ::dup(STDIN_FILENO);
    ASSERT_EQ(::close(STDIN_FILENO), 0); // the file takes its number, 0
    CCommon::saveByteDataToFile(bytes, 3, FILE_NAME);
    EXPECT_EQ(::dup2(standardInput, STDIN_FILENO), STDIN_FILENO);
    ::close(standardInput);
    EXPECT_EQ(readFile(FILE_NAME), QByteArray("\1\2\3"));
}

TEST_F(Files, WriteThatSignalsInterrupt_IsGoneOnWith)
{
    ASSERT_EQ(::mkfifo("pipe", 0600), 0);
    struct sigaction doesNothing = {}; // without SA_RESTART
    struct sigaction handlerBefore = {};
    doesNothing.sa_handler = [](int) {};
    ASSERT_EQ(::sigaction(SIGUSR1, &doesNothing, &handlerBefore), 0);

    const int reader = ::open("pipe", O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    const int capacity = ::fcntl(reader, F_GETPIPE_SZ);
    std::vector<unsigned char> bytes(static_cast<std::size_t>(capacity) + 5000);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(i % 251);
    const MessageLog log;
    std::thread writer([&bytes] {
        CCommon::saveByteDataToFile(bytes.data(), static_cast<int>(bytes.size()),
                                    QStringLiteral("pipe"));
    });

    // A part is written, then nothing: both are interrupted.
    for (int held = 0; held < capacity; std::this_thread::yield())
        ASSERT_EQ(::ioctl(reader, FIONREAD, &held), 0);
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(::pthread_kill(writer.native_handle(), SIGUSR1), 0);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ASSERT_EQ(::fcntl(reader, F_SETFL, 0), 0); // waits for what comes from now on
    std::vector<unsigned char> received;
    std::array<unsigned char, 4096> part{};
    for (ssize_t count = 0; (count = ::read(reader, part.data(), part.size())) > 0;)
        received.insert(received.end(), part.begin(), part.begin() + count);
    writer.join();
    ::close(reader);
    EXPECT_EQ(::sigaction(SIGUSR1, &handlerBefore, nullptr), 0);

    EXPECT_EQ(received, bytes);
    EXPECT_THAT(log.texts(), ElementsAre("Successfully wrote " + std::to_string(bytes.size()) +
                                         " bytes to the file."));
}

TEST_F(Files, PathWithChineseCharacters_IsWritten)
{
    unsigned char bytes[] = {1, 0, 2};
    CCommon::saveByteDataToFile(bytes, 3, QStringLiteral("指纹.dat"));
    EXPECT_EQ(readFile(QStringLiteral("指纹.dat")), QByteArray("\x01\x00\x02", 3));
}

TEST_F(Files, FileExist_ReturnsWhetherItDoes)
{
    const MessageLog log;
    EXPECT_FALSE(CCommon::fileExist(QStringLiteral("file")));
    writeFile(QStringLiteral("file"), "text");
    EXPECT_TRUE(CCommon::fileExist(QStringLiteral("file")));
    EXPECT_FALSE(CCommon::fileExist(QString()));
    EXPECT_THAT(log.texts(), IsEmpty());
}

TEST_F(Files, FileRename_MovesTheFileUnlessItIsMissingOrWouldReplaceOne)
{
    const QString from = QStringLiteral("from");
    const QString to = QStringLiteral("to");
    MessageLog log;
    EXPECT_FALSE(CCommon::fileRename(from, to));
    EXPECT_THAT(log.texts(), ElementsAre("rename fail!"));
    EXPECT_THAT(names(), IsEmpty());
    writeFile(from, "text");
    EXPECT_TRUE(CCommon::fileRename(from, to));
    EXPECT_EQ(names(), QStringList(to));
    EXPECT_EQ(readFile(to), "text");
    writeFile(from, "other");
    EXPECT_FALSE(CCommon::fileRename(from, to));
    EXPECT_THAT(log.debugTexts(), ElementsAre("rename fail!", "rename fail!"));
    EXPECT_EQ(readFile(from), "other");
    EXPECT_EQ(readFile(to), "text");
}

TEST_F(Files, FileRemove_RemovesFilesAloneAndSaysNothing)
{
    const MessageLog log;
    writeFile(QStringLiteral("file"), "text");
    EXPECT_TRUE(CCommon::fileRemove(QStringLiteral("file")));
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_FALSE(CCommon::fileRemove(QStringLiteral("file")));
    ASSERT_TRUE(QDir().mkdir(QStringLiteral("folder")));
    EXPECT_FALSE(CCommon::fileRemove(QStringLiteral("folder")));
    EXPECT_EQ(names(), QStringList(QStringLiteral("folder")));
    EXPECT_THAT(log.texts(), IsEmpty());
}
