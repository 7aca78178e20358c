// CTavReader: what it calls, in which order, what it prints and what it returns.

#include "reader/tav_reader.h"
#include "tests/library/closed_library_mock.h"
#include "tests/library/wide_console_capture.h"

#include <chrono>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QThread>

namespace
{

using testing::Return;
using testing::Throw;

/** The five arguments of a fetch; only their addresses matter here. */
struct Buffers {
    CardInfoStruct info{};
    unsigned char photo[38862] = {};
    unsigned int photoLen = 0;
    unsigned char fp[1024] = {};
    unsigned int fpLen = 0;

    int fetch(CTavReader &reader)
    {
        return reader.FetchCardData(&info, photo, &photoLen, fp, &fpLen);
    }
};

/** Bytes that had reached standard output, a file, when the last pause began. */
off_t printedBeforePause = -1;

/** A reader that opens the port, or fails to, and reads nothing. */
void openAndClose()
{
    const CTavReader reader;
}

class TavReader : public ScriptedReader
{
protected:
    auto &expectRead()
    {
        return EXPECT_CALL(library, readIDCard(PORT, &buffers.info, buffers.photo,
                                               &buffers.photoLen, buffers.fp, &buffers.fpLen, 1));
    }

    /** What a reader prints from its making to its end while `use` works with it. */
    static std::string printedBy(const std::function<void(CTavReader &)> &use)
    {
        WideConsoleCapture console;
        {
            CTavReader reader;
            use(reader);
        }
        return console.take();
    }

    Buffers buffers;
};

} // namespace

// The library's own pauses come here.
void QThread::msleep(unsigned long milliseconds)
{
    struct stat status = {};
    EXPECT_EQ(::fstat(STDOUT_FILENO, &status), 0);
    printedBeforePause = status.st_size;
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

TEST_F(TavReader, CardOnTheReader_IsReadOnceAndThePortClosed)
{
    expectFoundCard();
    expectRead().WillOnce(Return(DONE));
    expectClose();

    const std::string printed = printedBy([&](CTavReader &reader) {
        EXPECT_EQ(reader.state(), 2);
        EXPECT_EQ(buffers.fetch(reader), 144);
        EXPECT_EQ(reader.state(), 3);
    });
    EXPECT_EQ(printed, "");
}

TEST_F(TavReader, PortThatDoesNotOpen_IsReportedAndNeverClosed)
{
    expectOpen(-77);

    const std::string printed = printedBy([&](CTavReader &reader) {
        EXPECT_EQ(reader.state(), -2);
        EXPECT_EQ(buffers.fetch(reader), 1);
        EXPECT_EQ(buffers.fetch(reader), 1);
    });
    EXPECT_EQ(printed, "打开读卡器失败，错误码：-77\n");
}

TEST_F(TavReader, OpenAnsweringAnythingElse_HasFailedAndIsPrintedWithoutGrouping)
{
    for (const int code : {1, 0, 1234567}) {
        expectOpen(code);
        EXPECT_EQ(printedBy([](CTavReader &) {}),
                  "打开读卡器失败，错误码：" + std::to_string(code) + "\n");
    }
}

TEST_F(TavReader, NoCard_LeavesTheReaderOpenForAnotherTry)
{
    expectOpen();
    expectFind(0);
    expectFind(DONE);
    expectRead().WillOnce(Return(DONE));
    expectClose();

    const std::string printed = printedBy([&](CTavReader &reader) {
        EXPECT_EQ(buffers.fetch(reader), -4);
        EXPECT_EQ(reader.state(), 2);
        EXPECT_EQ(buffers.fetch(reader), 144);
    });
    EXPECT_EQ(printed, "");
}

TEST_F(TavReader, TransientFailures_ArePrintedAndRetriedEvery50Ms)
{
    expectFoundCard();
    expectRead().WillOnce(Return(65)).WillOnce(Return(65)).WillOnce(Return(DONE));
    expectClose();

    const std::string printed = printedBy([&](CTavReader &reader) {
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(buffers.fetch(reader), 144);
        EXPECT_GE(timer.elapsed(), 100);
        EXPECT_EQ(reader.state(), 3);
    });
    EXPECT_EQ(printed, "card reading fail!\ncard reading fail!\n");
    EXPECT_EQ(printedBeforePause, static_cast<off_t>(printed.size())) << "before the last pause";
}

TEST_F(TavReader, ManyTransientFailures_AreAllRetried)
{
    expectFoundCard();
    expectRead().Times(30).WillRepeatedly(Return(65));
    expectRead().WillOnce(Return(DONE));
    expectClose();

    std::string expected;
    for (int i = 0; i < 30; ++i)
        expected += "card reading fail!\n";
    EXPECT_EQ(printedBy([&](CTavReader &reader) { EXPECT_EQ(buffers.fetch(reader), 144); }),
              expected);
}

TEST_F(TavReader, ReadFailure_IsReturnedUnchangedAndBlocksFurtherReads)
{
    expectFoundCard();
    expectRead().WillOnce(Return(-3));
    expectClose();

    const std::string printed = printedBy([&](CTavReader &reader) {
        EXPECT_EQ(buffers.fetch(reader), -3);
        EXPECT_EQ(reader.state(), -3);
        EXPECT_EQ(buffers.fetch(reader), 65);
        EXPECT_EQ(reader.state(), -3);
    });
    EXPECT_EQ(printed, "card reading error, result is：-3\n");
}

TEST_F(TavReader, FailureAfterTransientOnes_PrintsAllLinesInOrder)
{
    expectFoundCard();
    expectRead().WillOnce(Return(65)).WillOnce(Return(0));
    expectClose();

    const std::string printed =
        printedBy([&](CTavReader &reader) { EXPECT_EQ(buffers.fetch(reader), 0); });
    EXPECT_EQ(printed, "card reading fail!\ncard reading error, result is：0\n");
}

TEST_F(TavReader, SecondReadThroughOneObject_IsAllowedAfterASuccess)
{
    expectFoundCard();
    expectRead().WillOnce(Return(DONE));
    expectFind();
    expectRead().WillOnce(Return(DONE));
    expectClose();

    CTavReader reader;
    EXPECT_EQ(buffers.fetch(reader), 144);
    EXPECT_EQ(buffers.fetch(reader), 144);
}

TEST_F(TavReader, FailureOfClosing_IsIgnored)
{
    expectOpen();
    EXPECT_CALL(library, closePort(PORT)).WillOnce(Return(-1));
    openAndClose();
    expectOpen();
    EXPECT_CALL(library, closePort(PORT)).WillOnce(Throw(std::runtime_error("close")));
    openAndClose();
}

TEST_F(TavReader, Constructor_SetsTheLocaleFromTheEnvironment)
{
    std::setlocale(LC_ALL, "C");
    EXPECT_CALL(library, openPort(PORT)).WillOnce([](int) {
        EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C.UTF-8");
        return DONE;
    });
    expectClose();
    const CTavReader reader;
}

TEST_F(TavReader, ThrowingOpen_CountsAsFailedOpen)
{
    EXPECT_CALL(library, openPort(PORT)).WillOnce(Throw(std::runtime_error("open")));

    const std::string printed = printedBy([&](CTavReader &reader) {
        EXPECT_EQ(reader.state(), -2);
        EXPECT_EQ(buffers.fetch(reader), 1);
    });
    EXPECT_EQ(printed, "打开读卡器失败，错误码：-1\n");
}

TEST_F(TavReader, ThrowingFind_CountsAsNoCardAndThePortIsClosed)
{
    expectOpen();
    EXPECT_CALL(library, findIDCard(PORT)).WillOnce(Throw(1));
    expectClose();

    CTavReader reader;
    EXPECT_EQ(buffers.fetch(reader), -4);
}

TEST_F(TavReader, ThrowingRead_IsAFailedReadThatIsNotTriedAgain)
{
    expectFoundCard();
    expectRead().WillOnce(Throw(std::bad_alloc()));
    expectClose();

    const std::string printed = printedBy([&](CTavReader &reader) {
        EXPECT_EQ(buffers.fetch(reader), 65);
        EXPECT_EQ(reader.state(), -3);
    });
    EXPECT_EQ(printed, "card reading error, result is：65\n");
}

TEST_F(TavReader, LocaleWithoutChinese_StillReportsTheCode)
{
    expectOpen(-1);
    setenv("LC_ALL", "C", 1);
    WideConsoleCapture console;
    openAndClose();
    setenv("LC_ALL", "C.UTF-8", 1);
    EXPECT_THAT(console.take(), testing::EndsWith(":-1\n"));
}

TEST_F(TavReader, ConsoleThatTakesNothing_CostsTheMessageAndNoLaterOne)
{
    expectOpen(-1);
    expectOpen(-2);
    class : public std::wstreambuf
    {
    } full; // refuses every character
    std::wstreambuf *const console = std::wcout.rdbuf(&full);
    openAndClose();
    std::wstringbuf text;
    EXPECT_TRUE(std::wcout.good());
    std::wcout.rdbuf(&text);
    openAndClose();
    std::wcout.rdbuf(console);
    EXPECT_EQ(text.str(), L"打开读卡器失败，错误码：-2\n");
}

TEST_F(TavReader, ConsoleThatThrows_DoesNotStopTheRead)
{
    expectFoundCard();
    expectRead().WillOnce(Return(65)).WillOnce(Return(DONE));
    expectClose();

    WideConsoleCapture console;
    std::fputs("bytes\n", stdout);
    std::wcout.exceptions(std::ios_base::badbit | std::ios_base::failbit);
    {
        CTavReader reader;
        EXPECT_EQ(buffers.fetch(reader), 144);
    }
    std::wcout.exceptions(std::ios_base::goodbit);
    console.take();
}
