// A thread that is cancelled while it reads over USB: it ends, the reader is released, and the
// process goes on reading.

#include <atomic>
#include <chrono>
#include <cstdarg>
#include <thread>

#include <dlfcn.h>
#include <pthread.h>
// ioctl.h first: the kernel's header needs its macros.
#include <sys/ioctl.h>

#include <linux/usbdevice_fs.h>

#include <gmock/gmock.h>

#include "simulator/reader/virtual_reader.h"
#include "tests/support/cancelled_thread.h"
#include "tests/usb/exposed_reader.h"
#include "tests/usb/usb_test.h"

/** How often libusb, which waits, has asked whether a transfer has ended. */
static std::atomic<int> asked = 0;

// The kernel's ioctl is no place where a thread ends, and the emulated one would be: it asks
// another thread.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" __attribute__((visibility("default"))) int ioctl(int descriptor, unsigned long request,
                                                            ...) noexcept
{
    static const auto real =
        reinterpret_cast<int (*)(int, unsigned long, ...)>(dlsym(RTLD_NEXT, "ioctl"));
    std::va_list arguments;
    va_start(arguments, request);
    void *const argument = va_arg(arguments, void *);
    va_end(arguments);
    int before = 0;
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before);
    const int result = real(descriptor, request, argument);
    asked += request == USBDEVFS_REAPURBNDELAY ? 1 : 0;
    pthread_setcancelstate(before, nullptr);
    return result;
}

namespace
{

using namespace usb_test;
using simulator::UsbStatus;
using simulator::UsbTransfer;

// As the node is asked for them: a command of the reader's, and the answers of lookup and read.
const QString COMMAND = QStringLiteral("out 02 10");
const QString LOOKUP_ANSWER = QStringLiteral("in 81 15");
const QString READ_ANSWER = QStringLiteral("in 81 2321");
const QStringList GIVEN_BACK = {"release", "attach driver"};

class Cancellation : public UsbTest
{
protected:
    /** Cancels a thread that does `work` when it waits in the call `call`, the `count`th of them.
     */
    ThreadEnd endWaitingFor(const ScriptedDevice &device, const QString &call, int count,
                            const std::function<void()> &work)
    {
        CancelledThread thread(work);
        waitUntil([&] { return bus().calls(device).count(call) == count; });
        const int askedBefore = asked;
        waitUntil([askedBefore] { return asked > askedBefore; });
        thread.cancel();
        return thread.end();
    }

    /** The reader was released once; another object finds the card on it. */
    void expectFreeReader(ScriptedDevice &device)
    {
        EXPECT_EQ(bus().leftOvers(), QStringList());
        const QStringList calls = bus().calls(device);
        EXPECT_EQ(calls.mid(calls.size() - GIVEN_BACK.size()), GIVEN_BACK);
        EXPECT_EQ(calls.count(GIVEN_BACK.last()), 1);
        bus().change([&device] { expectReady(device); });
        const IdReader reader;
        EXPECT_EQ(reader.lastError(), 0);
        m_laterLog = lines::READY;
    }

    void TearDown() override
    {
        expectLog(m_laterLog);
        UsbTest::TearDown();
    }

private:
    Lines m_laterLog;
};

/** What a host does on this road. */
void readCard()
{
    IdReader reader;
    QByteArray out;
    FP_INFO_TYPE fp = FP_INFO_NONE;
    reader.fetch_data(out, fp);
}

TEST_F(Cancellation, CommandThatIsNeverTaken_EndsTheThreadAndGivesTheReaderBack)
{
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP, ended(UsbStatus::PENDING));
    add(device);
    EXPECT_EQ(endWaitingFor(device, COMMAND, 1, readCard), ThreadEnd::CANCELLED);
    expectLog(lines::OPENED);
    expectFreeReader(device);
}

TEST_F(Cancellation, BlockThatIsNeverTaken_EndsTheThreadAndGivesTheReaderBack)
{
    ScriptedDevice &device = makeReady();
    device.expectWrite(0x06, QByteArray::fromHex("0102000000000003"), ended(UsbStatus::PENDING));
    add(device);
    EXPECT_EQ(endWaitingFor(device, QStringLiteral("out 06 8"), 1,
                            [] { IdReader().write_pipe6(8, 1, 2, nullptr, 3); }),
              ThreadEnd::CANCELLED);
    expectLog(lines::READY);
    expectFreeReader(device);
}

TEST_F(Cancellation, CommandThatIsNeverTaken_LeavesAnObjectThatAnotherThreadDestroys)
{
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the thread sanitizer misses what a thread unlocks while it is unwound";
#endif
    ScriptedDevice &device = makeReady();
    device.expectWrite(0x02, QByteArray::fromHex("AAAAAA96690102"), ended(UsbStatus::PENDING));
    add(device);
    {
        IdReader reader;
        EXPECT_EQ(endWaitingFor(device, QStringLiteral("out 02 7"), 1,
                                [&reader] { reader.write_pipe2(1, 2); }),
                  ThreadEnd::CANCELLED);
        EXPECT_EQ(bus().holdings().openNodes, 1);
    }
    expectLog(lines::READY);
    expectFreeReader(device);
}

TEST_F(Cancellation, CommandThatIsNeverTaken_LeavesAnotherReaderAlone)
{
    ScriptedDevice &device = make();
    ScriptedDevice &other = make(UsbIds{0x120A, 0x0002});
    device.expectWrite(0x02, frames::LOOKUP, ended(UsbStatus::PENDING));
    expectReady(other);
    other.expectWrite(0x02, QByteArray::fromHex("AAAAAA96690102"));
    add(device);
    add(other);
    IdReader otherReader(0x120A, 0x0002);
    EXPECT_EQ(endWaitingFor(device, COMMAND, 1, readCard), ThreadEnd::CANCELLED);
    EXPECT_TRUE(otherReader.write_pipe2(1, 2));
    expectLog(lines::READY + lines::OPENED + Lines{"write pipe2 success!"});
}

TEST_F(Cancellation, AnswerThatComesLater_IsWaitedForAndThenTheThreadEnds)
{
    UsbTransfer late;
    late.data = frames::LOOKUP_ANSWER;
    late.count = late.data.size();
    late.delayMs = 500;
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP).expectRead(0x81, late.count, late);
    add(device);
    EXPECT_EQ(endWaitingFor(device, LOOKUP_ANSWER, 1, readCard), ThreadEnd::CANCELLED);
    EXPECT_FALSE(bus().calls(device).contains(QStringLiteral("discard")));
    expectLog(lines::OPENED + Lines{"write pipe2 success!"});
    expectFreeReader(device);
}

TEST_F(Cancellation, AnswerThatNeverComes_EndsTheThreadAfterFiveSecondsAtMost)
{
    ScriptedDevice &device = makeReady();
    device.expectWrite(0x02, frames::READ)
        .expectRead(0x81, frames::READ_CAPACITY, ended(UsbStatus::PENDING));
    add(device);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(endWaitingFor(device, READ_ANSWER, 1, readCard), ThreadEnd::CANCELLED);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8));
    expectLog(lines::READY + Lines{"write pipe2 success!"});
    expectFreeReader(device);
}

TEST_F(Cancellation, DuringOpening_EndsTheThreadWhenTheReaderIsOpen)
{
    ScriptedDevice &device = plugIn();
    EXPECT_EQ(endOfThreadCancelledBefore(readCard), ThreadEnd::CANCELLED);
    EXPECT_EQ(bus().calls(device).count(COMMAND), 0);
    EXPECT_EQ(device.resets(), 1);
    expectLog(lines::OPENED);
    expectFreeReader(device);
}

TEST_F(Cancellation, DuringOpeningOfAnAbsentReader_EndsTheThread)
{
    EXPECT_EQ(endOfThreadCancelledBefore([] {
                  while (true)
                      const IdReader reader;
              }),
              ThreadEnd::CANCELLED);
    expectLog({"libusb_open_device_with_vid_pid() failed", "open usb failed!"});
}

TEST_F(Cancellation, WhileADeviceIsOpenedAndClosed_WaitsUntilThatIsDone)
{
    plugIn();
    bool closed = false;
    EXPECT_EQ(endOfThreadCancelledBefore([&closed] {
                  {
                      OpenedDevice opened;
                      EXPECT_EQ(opened.lastError(), 0);
                      EXPECT_TRUE(opened.open(VENDOR, PRODUCT));
                      EXPECT_EQ(opened.libusb_open_device_with_vid_pid_ex(opened.context(), VENDOR,
                                                                          PRODUCT + 1),
                                nullptr);
                  }
                  closed = true;
                  pthread_testcancel();
              }),
              ThreadEnd::CANCELLED);
    EXPECT_TRUE(closed);
    EXPECT_EQ(bus().holdings().timesOpened, 2);
    expectLog(lines::OPENED + lines::OPENED);
}

TEST_F(Cancellation, AtAnyMomentOfFetching_GivesTheReaderBack)
{
    constexpr int STEPS = 40;
    simulator::VirtualReader device;
    QString problem;
    ASSERT_TRUE(
        device.slot().putCard(QStringLiteral("resident"), simulator::PutAs::PLAIN, &problem));
    bus().add(device);
    startAccount();
    const auto fetch = [] {
        int before = 0;
        pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before);
        IdReader reader;
        pthread_setcancelstate(before, nullptr);
        QByteArray out;
        FP_INFO_TYPE fp = FP_INFO_NONE;
        reader.fetch_data(out, fp);
    };
    const auto start = std::chrono::steady_clock::now();
    fetch();
    const auto whole = std::chrono::steady_clock::now() - start;
    for (int step = 0; step < STEPS; ++step) {
        CancelledThread thread(fetch);
        std::this_thread::sleep_for(whole * step / STEPS);
        thread.cancel();
        ASSERT_NE(thread.end(), ThreadEnd::HANGS) << step;
        ASSERT_EQ(bus().leftOvers(), QStringList()) << step;
    }
    IdReader reader;
    QByteArray out;
    FP_INFO_TYPE fp = FP_INFO_NONE;
    EXPECT_TRUE(reader.fetch_data(out, fp));
    EXPECT_EQ(out.size(), frames::READ_CAPACITY);
    takeLog();
}

TEST_F(Cancellation, ThreadThatMayNotBeCancelled_ReadsToTheEnd)
{
    ScriptedDevice &device = makeReady();
    add(device);
    int result = -1;
    EXPECT_EQ(endOfThreadCancelledBefore([&result] {
                  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, nullptr);
                  result = IdReader().lastError();
              }),
              ThreadEnd::RETURNED);
    EXPECT_EQ(result, 0);
    expectLog(lines::READY);
    expectFreeReader(device);
}

} // namespace
