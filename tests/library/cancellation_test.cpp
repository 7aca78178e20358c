// A thread that is cancelled while readIDCard waits: it ends, the port is closed, and the process
// goes on reading.

#include "common/closed_functions.h"
#include "common/common.h"
#include "iddata/iddata.h"
#include "tests/library/outputs.h"
#include "tests/support/cancelled_thread.h"
#include "tests/support/expected_warning.h"
#include "tests/support/files.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QObject>

namespace
{

enum class Function { NONE, OPEN, FIND, READ, UNPACK, CLOSE };

/** What the closed functions do. */
struct Maker {
    Function waiting = Function::NONE; ///< waits in this one, for ever
    int findResult = KVO_SUCCESS;
    int readResult = KVO_SUCCESS;
    int unpackResult = WLT_SUCCESS;
    int kind = 0;
};

Maker maker;
std::atomic<bool> hasCome = false; ///< to where the thread waits
std::atomic<bool> mayGoOn = false; ///< closing does
std::atomic<int> opened = 0;
std::atomic<int> closed = 0;
std::atomic<int> reads = 0;

/** Something of a closed function's, which is to be released when the thread ends in it. */
std::atomic<int> held = 0;
class Holder
{
public:
    Holder() { ++held; }
    ~Holder() { --held; }
    Holder(const Holder &) = delete;
    Holder &operator=(const Holder &) = delete;
};

void waitIn(Function function)
{
    const Holder holder;
    while (maker.waiting == function && !mayGoOn) {
        hasCome = true;
        ::poll(nullptr, 0, 1); // a place where a thread may end
    }
}

} // namespace

int KVO_OpenPort(int)
{
    waitIn(Function::OPEN);
    ++opened;
    return KVO_SUCCESS;
}

int KVO_FindIDCard(int)
{
    waitIn(Function::FIND);
    return maker.findResult;
}

int KVO_ReadIDCard(int, CardInfoStruct *info, unsigned char *photo, unsigned int *photoLen,
                   unsigned char *, unsigned int *fpLen, int)
{
    waitIn(Function::READ);
    ++reads;
    info->kind = maker.kind;
    photo[0] = 'c';
    *photoLen = IDCARD_COMPRESSED_PHOTO_SIZE;
    *fpLen = 0;
    return maker.readResult;
}

int KVO_ClosePort(int)
{
    waitIn(Function::CLOSE);
    ++closed;
    return KVO_SUCCESS;
}

int unpack(unsigned char *, unsigned char *, int)
{
    waitIn(Function::UNPACK);
    return maker.unpackResult;
}

namespace
{

/** What a call points to outlives the thread. */
struct Call : Reading {
    int result = 1; ///< until the call has returned

    void operator()() { result = read(); }
};

class Cancellation : public testing::Test
{
public:
    Cancellation()
    {
        maker = {};
        hasCome = false;
        mayGoOn = false;
        opened = 0;
        closed = 0;
        reads = 0;
    }

protected:
    /** Cancels a thread that reads when it waits in `function`. */
    ThreadEnd endWaitingIn(Function function)
    {
        maker.waiting = function;
        CancelledThread thread([this] { call(); });
        waitUntil([] { return hasCome.load(); });
        thread.cancel();
        const ThreadEnd end = thread.end();
        EXPECT_EQ(held, 0);
        EXPECT_EQ(call.cardKind, NO_KIND);
        return end;
    }

    /** Another call reads to its end; of a kind that is none, which nothing is painted for. */
    static void expectAnotherRead()
    {
        maker = {};
        Call another;
        const int closedBefore = closed;
        another();
        EXPECT_EQ(another.result, IDCARD_RESULT_OK);
        EXPECT_EQ(closed, closedBefore + 1);
    }

    Call call;
};

} // namespace

TEST_F(Cancellation, WaitingForThePort_EndsTheThreadAndThereIsNoPortToClose)
{
    EXPECT_EQ(endWaitingIn(Function::OPEN), ThreadEnd::CANCELLED);
    EXPECT_EQ(closed, 0);
    expectAnotherRead();
}

TEST_F(Cancellation, WaitingForCardReadOrPhoto_EndsTheThreadAndClosesThePort)
{
    int times = 0;
    for (const Function function : {Function::FIND, Function::READ, Function::UNPACK}) {
        hasCome = false;
        EXPECT_EQ(endWaitingIn(function), ThreadEnd::CANCELLED);
        EXPECT_EQ(closed, ++times);
        expectAnotherRead();
        ++times;
    }
}

TEST_F(Cancellation, WaitingForThePhotoOfARawRecord_EndsTheThread)
{
    maker.waiting = Function::UNPACK;
    std::array<unsigned char, IDCARD_COMPRESSED_PHOTO_SIZE> wlt{};
    std::array<unsigned char, 1> untouched = {'u'};
    CancelledThread thread([&] {
        QByteArray record;
        CIdData(record, FP_INFO_NONE).parseIDHeadImage(wlt.data(), untouched.data());
    });
    waitUntil([] { return hasCome.load(); });
    thread.cancel();
    EXPECT_EQ(thread.end(), ThreadEnd::CANCELLED);
    EXPECT_EQ(held, 0);
    EXPECT_EQ(untouched[0], 'u');
}

TEST_F(Cancellation, ReaderThatAlwaysAsksForAnotherTry_EndsTheThreadAndClosesThePort)
{
    maker.readResult = KVO_READ_AGAIN;
    CancelledThread thread([this] { call(); });
    waitUntil([] { return reads >= 3; });
    thread.cancel();
    EXPECT_EQ(thread.end(), ThreadEnd::CANCELLED);
    EXPECT_EQ(closed, 1);
    expectAnotherRead();
}

TEST_F(Cancellation, WaitingForThePortToClose_ClosesItAndEndsTheThreadAfterTheCall)
{
    maker.findResult = 0;
    maker.waiting = Function::CLOSE;
    CancelledThread thread([this] {
        call();
        pthread_testcancel();
    });
    waitUntil([] { return hasCome.load(); });
    thread.cancel();
    mayGoOn = true;
    EXPECT_EQ(thread.end(), ThreadEnd::CANCELLED);
    EXPECT_EQ(call.result, IDCARD_RESULT_NO_CARD);
    EXPECT_EQ(closed, 1);
    expectAnotherRead();
}

TEST_F(Cancellation, ThreadThatMayNotBeCancelled_ReadsToTheEnd)
{
    EXPECT_EQ(endOfThreadCancelledBefore([this] {
                  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, nullptr);
                  call();
              }),
              ThreadEnd::RETURNED);
    EXPECT_EQ(call.result, IDCARD_RESULT_OK);
    EXPECT_EQ(closed, 1);
}

TEST_F(Cancellation, WhileAFileIsWritten_WritesAllOfItAndClosesIt)
{
    const QString path = QStringLiteral("prints");
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    const unsigned int openBefore = descriptors.count();
    std::array<unsigned char, 3> bytes = {'a', 'b', 'c'};
    EXPECT_EQ(endOfThreadCancelledBefore([&] {
                  CCommon::saveByteDataToFile(bytes.data(), 3, path);
                  pthread_testcancel();
              }),
              ThreadEnd::CANCELLED);
    EXPECT_EQ(descriptors.count(), openBefore);
    EXPECT_EQ(readFile(path), "abc");
    EXPECT_TRUE(QFile::remove(path));
}

TEST_F(Cancellation, HostsMessageHandlerThatMayEndTheThread_WritesItsLine)
{
    static std::atomic<int> lines = 0;
    maker.unpackResult = 0; // at which there is a line
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {
            pthread_cancel(pthread_self());
            pthread_testcancel();
            ++lines;
        });
    CancelledThread thread([this] {
        call();
        pthread_testcancel();
    });
    EXPECT_EQ(thread.end(), ThreadEnd::CANCELLED);
    qInstallMessageHandler(before);
    EXPECT_EQ(lines, 1);
    EXPECT_EQ(call.result, IDCARD_RESULT_PHOTO_NOT_DECODED);
    EXPECT_EQ(closed, 1);
}

TEST_F(Cancellation, ConsoleThatNobodyReads_EndsTheThreadAndClosesThePort)
{
    // Standard output is a pipe without room for one more byte.
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    ASSERT_EQ(::fcntl(ends[1], F_SETFL, O_NONBLOCK), 0);
    while (::write(ends[1], "x", 1) == 1) {
    }
    std::fflush(stdout);
    const int saved = ::dup(STDOUT_FILENO);
    ASSERT_NE(std::freopen(("/proc/self/fd/" + std::to_string(ends[1])).c_str(), "w", stdout),
              nullptr);

    maker.readResult = KVO_READ_AGAIN;
    CancelledThread thread([this] { call(); });
    waitUntil([] { return reads == 1; });
    std::this_thread::sleep_for(std::chrono::milliseconds(200)); // a pause between tries is shorter
    const int readsWhileWaiting = reads;
    thread.cancel();
    const ThreadEnd end = thread.end();
    const bool isGood = std::wcout.good();

    std::array<char, 4096> bytes{};
    ASSERT_EQ(::fcntl(ends[0], F_SETFL, O_NONBLOCK), 0);
    while (::read(ends[0], bytes.data(), bytes.size()) > 0) {
    }
    std::fflush(stdout);
    if (std::freopen(("/proc/self/fd/" + std::to_string(saved)).c_str(), "a", stdout) == nullptr)
        std::abort(); // nowhere left to report to
    for (const int descriptor : {saved, ends[0], ends[1]})
        ::close(descriptor);
    EXPECT_EQ(readsWhileWaiting, 1);
    EXPECT_EQ(end, ThreadEnd::CANCELLED);
    EXPECT_TRUE(isGood);
    EXPECT_EQ(closed, 1);
    expectAnotherRead();
}

TEST_F(Cancellation, WhileTheRecordIsFilled_WaitsUntilTheCallHasReturned)
{
    maker.kind = CARD_INFO_KIND_CN;
    const QObject inTheMainThread; // Qt looks for it, whatever ran before
    const ExpectedWarning warning("WARNING: QApplication was not created in the main() thread");
    CancelledThread thread([this] {
        int before = 0;
        pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before);
        // The thread that has the application is the one that may paint.
        int count = 1;
        std::string name = "test";
        std::array<char *, 2> words = {name.data(), nullptr};
        const QGuiApplication application(count, words.data());
        pthread_cancel(pthread_self());
        pthread_setcancelstate(before, nullptr);
        call();
        pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, nullptr);
    });
    EXPECT_EQ(thread.end(), ThreadEnd::RETURNED);
    EXPECT_EQ(call.result, IDCARD_RESULT_OK);
    EXPECT_EQ(call.cardKind, static_cast<unsigned int>(IDCARD_KIND_CN));
    EXPECT_NE(call.front, Reading().front);
    EXPECT_NE(call.back, Reading().back);
    EXPECT_EQ(closed, 1);
}
