// A card read over USB, from the search on the bus to the closing of the reader, with every
// allocation failing in turn: a documented code, nothing thrown, everything released.

#include <iostream>
#include <map>

#include <gmock/gmock.h>

#include "tests/failure_injection/failing_memory.h"
#include "tests/failure_injection/quiet_log.h"
#include "tests/usb/exposed_reader.h"
#include "tests/usb/reader_on_bus.h"
#include "tests/usb/usb_test.h"

namespace
{

using namespace failure_injection;
using namespace usb_test;

/** From one failing allocation to the next. */
#ifdef IDCARD_TEST_SAMPLE
constexpr int STRIDE = 37;
#else
constexpr int STRIDE = 1;
#endif
constexpr auto UNTOUCHED = static_cast<FP_INFO_TYPE>(77);

/** What came of one read. */
struct UsbRead {
    int code = 1;
    bool isRead = false;
    QByteArray out = "before";
    FP_INFO_TYPE fp = UNTOUCHED;
    bool hasThrown = false;
};

class UsbMemory : public testing::TestWithParam<Extent>
{
protected:
    UsbMemory()
    {
        EXPECT_TRUE(warmUp());
        m_usb = std::make_unique<ReaderOnBus>();
        m_usb->plugIn("resident");
    }

    /** A whole read, from the search on the bus to the closing of the reader. */
    static void read(UsbRead &result)
    {
        try {
            CUsbIdReader reader(VENDOR, PRODUCT);
            result.isRead = reader.fetch_data(result.out, result.fp);
            result.code = reader.lastError();
        } catch (...) {
            result.hasThrown = true;
        }
    }

    /** The same with the allocation at `position` failing. */
    static UsbRead readWithFailure(long position, Extent extent, bool withPlaces)
    {
        UsbRead result;
        startAccount(withPlaces);
        startMemory(position, extent);
        read(result);
        stopMemory();
        return result;
    }

    /** What of `result`, which lacked memory, must not be. */
    void check(const UsbRead &result, const UsbRead &whole)
    {
        EXPECT_FALSE(result.hasThrown);
        EXPECT_EQ(result.isRead, result.code == USB_READER_OK);
        EXPECT_GE(result.code, USB_READER_NO_DATA);
        EXPECT_LE(result.code, USB_READER_OK);
        EXPECT_EQ(result.out, result.isRead ? whole.out : "before");
        EXPECT_EQ(result.fp, result.isRead ? whole.fp : UNTOUCHED);
        for (const QString &leftOver : m_usb->bus().leftOvers())
            ADD_FAILURE() << leftOver.toStdString();
    }

private:
    std::unique_ptr<ReaderOnBus> m_usb;
};

INSTANTIATE_TEST_SUITE_P(Extents, UsbMemory, testing::Values(Extent::ONE, Extent::AND_ALL_AFTER),
                         [](const auto &instance) {
                             return instance.param == Extent::ONE ? "one" : "all_after";
                         });

} // namespace

TEST_P(UsbMemory, RunsOut_ACodeIsGivenAndEverythingReleased)
{
    const QuietLog quiet;
    UsbRead whole;
    read(whole);
    ASSERT_EQ(whole.code, USB_READER_OK);
    std::map<int, int> codes;
    std::map<std::string, int> losses;
    long position = 1;
    for (bool hasFailed = true; hasFailed; position += STRIDE) {
        SCOPED_TRACE("allocation " + std::to_string(position));
        UsbRead result = readWithFailure(position, GetParam(), false);
        hasFailed = failedAllocations() > 0;
        check(result, whole);
        ++codes[result.code];
        result = {};
        if (liveBlocks() > 0) {
            readWithFailure(position, GetParam(), true);
            for (const std::string &place : placesOfLiveBlocks())
                ++losses[place];
        }
        UsbRead next;
        read(next);
        EXPECT_EQ(next.code, USB_READER_OK);
        EXPECT_EQ(next.out, whole.out);
    }
    EXPECT_GT(position, 50);
    std::cout << position << " allocations:";
    for (const auto &[code, count] : codes)
        std::cout << "  " << code << ": " << count;
    std::cout << '\n';
    for (const auto &[place, count] : losses) {
        EXPECT_NE(place.rfind("libidcard_reader", 0), 0U) << place;
        std::cout << "    lost " << count << ": " << place << '\n';
    }
}
