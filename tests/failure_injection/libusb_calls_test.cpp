// Every call of libusb in a card read failing with every code that libusb has: the code that the
// host sees, the log, and what is released.

#include <set>

#include <gmock/gmock.h>
#include <libusb.h>

#include "tests/support/build_programs.h"
#include "tests/support/message_log.h"
#include "tests/usb/exposed_reader.h"
#include "tests/usb/libusb_failures.h"
#include "tests/usb/reader_on_bus.h"
#include "tests/usb/usb_test.h"

namespace
{

using namespace usb_test;

constexpr auto UNTOUCHED = static_cast<FP_INFO_TYPE>(77);

/** A call of a read, and what becomes of the read when it fails. */
struct Call {
    const char *function;
    int position; ///< among the calls of this function
    USB_READER_CODE code;
    Lines log; ///< the end of it; NAME and CODE stand for libusb's error
};

const Lines NOT_OPENED = {"libusb_open_device_with_vid_pid() failed", "open usb failed!"};
const Lines READ_SUCCESS = {"fplen=1024", "fetch data success, outbuf size=2321"};
const Lines NOT_WRITTEN = {"write pipe2 error(CODE)!"};

const std::vector<Call> &calls()
{
    static const std::vector<Call> rows = {
        {"libusb_init", 1, USB_READER_INIT_FAILED, {"libusb_init() failed: NAME"}},
        {"libusb_get_device_list", 1, USB_READER_NO_DEVICE_LIST,
         Lines{"libusb_get_device_list fail!"} + NOT_OPENED},
        {"libusb_get_device_descriptor", 1, USB_READER_NO_DESCRIPTOR,
         Lines{"libusb_get_device_descriptor(1) fail!"} + NOT_OPENED},
        {"libusb_open", 1, USB_READER_OPEN_FAILED,
         Lines{"failed to open device NAME   CODE", "failed to open device: NAME(CODE)"} +
             NOT_OPENED},
        {"libusb_set_auto_detach_kernel_driver", 1, USB_READER_OK, READ_SUCCESS},
        {"libusb_claim_interface",
         1,
         USB_READER_CLAIM_FAILED,
         {"libusb_claim_interface failed: NAME", "open usb failed!"}},
        {"libusb_reset_device",
         1,
         USB_READER_RESET_FAILED,
         {"libusb_reset_device failed: NAME", "open usb failed!"}},
        {"libusb_bulk_transfer", 1, USB_READER_LOOKUP_WRITE_FAILED, NOT_WRITTEN},
        {"libusb_bulk_transfer",
         2,
         USB_READER_LOOKUP_READ_FAILED,
         {"lookup_resp error(CODE), actual_length=0!"}},
        {"libusb_bulk_transfer", 3, USB_READER_SELECT_WRITE_FAILED, NOT_WRITTEN},
        {"libusb_bulk_transfer",
         4,
         USB_READER_NO_DATA,
         {"select_resp error(CODE), actual_length=0!", "CARD_SELECT_RESP_FAIL=>READ_NO_DATA"}},
        {"libusb_bulk_transfer", 5, USB_READER_DATA_WRITE_FAILED, NOT_WRITTEN},
        {"libusb_bulk_transfer", 6, USB_READER_DATA_READ_FAILED, {"fetch_data_resp error(CODE)!"}},
        {"libusb_release_interface", 1, USB_READER_OK, READ_SUCCESS},
    };
    return rows;
}

/** What of libusb cannot fail: it releases or reports. */
const std::set<std::string> WITHOUT_FAILURE = {
    "libusb_close", "libusb_error_name",       "libusb_event_handler_active",
    "libusb_exit",  "libusb_free_device_list", "libusb_unlock_events"};

#ifdef IDCARD_TEST_SAMPLE
const std::vector<int> CODES = {LIBUSB_ERROR_IO, LIBUSB_ERROR_ACCESS};
#else
const std::vector<int> CODES = {
    LIBUSB_ERROR_IO,          LIBUSB_ERROR_INVALID_PARAM, LIBUSB_ERROR_ACCESS,
    LIBUSB_ERROR_NO_DEVICE,   LIBUSB_ERROR_NOT_FOUND,     LIBUSB_ERROR_BUSY,
    LIBUSB_ERROR_TIMEOUT,     LIBUSB_ERROR_OVERFLOW,      LIBUSB_ERROR_PIPE,
    LIBUSB_ERROR_INTERRUPTED, LIBUSB_ERROR_NO_MEM,        LIBUSB_ERROR_NOT_SUPPORTED,
    LIBUSB_ERROR_OTHER};
#endif

std::string replaced(std::string text, const std::string &word, const std::string &value)
{
    for (auto at = text.find(word); at != std::string::npos; at = text.find(word))
        text.replace(at, word.size(), value);
    return text;
}

class LibusbCall : public testing::TestWithParam<Call>
{
protected:
    LibusbCall()
    {
        EXPECT_TRUE(warmUp());
        m_usb = std::make_unique<ReaderOnBus>();
        m_usb->plugIn("resident");
    }

    /** Reads with the call failing with `error`, and closes the reader; whether it was opened. */
    static bool read(const Call &call, int error)
    {
        const bool mayOpenElsewhere = call.code == USB_READER_OPEN_FAILED;
        const int code =
            mayOpenElsewhere && error == LIBUSB_ERROR_ACCESS ? USB_READER_NO_PERMISSION : call.code;
        QByteArray out("before");
        FP_INFO_TYPE fp = UNTOUCHED;
        setCallFailure({call.function, call.position, error});
        IdReader reader;
        EXPECT_EQ(reader.fetch_data(out, fp), code == USB_READER_OK);
        EXPECT_EQ(reader.lastError(), code);
        const bool isOpened = code == USB_READER_OK || code <= USB_READER_LOOKUP_MISMATCH;
        EXPECT_EQ(reader.state() == 2, isOpened);
        EXPECT_EQ(out.size(), code == USB_READER_OK ? 2321 : 6);
        EXPECT_EQ(fp, code == USB_READER_OK ? FP_INFO_TWO : UNTOUCHED);
        return isOpened;
    }

    static void expectEnd(const Lines &log, const Lines &end, int error)
    {
        ASSERT_GE(log.size(), end.size());
        for (std::size_t i = 0; i < end.size(); ++i)
            EXPECT_EQ(log[log.size() - end.size() + i],
                      replaced(replaced(end[i], "CODE", std::to_string(error)), "NAME",
                               libusb_error_name(error)));
    }

    void expectEverythingGivenBack(bool wasOpened) const
    {
        const LibusbCalls &counts = libusbCalls();
        EXPECT_EQ(counts.exit, counts.initialised);
        EXPECT_EQ(counts.listsFreed, counts.lists);
        EXPECT_EQ(counts.listsFreedWithDevices, counts.lists);
        EXPECT_EQ(counts.closed, counts.opened);
        EXPECT_EQ(counts.released, wasOpened ? 1 : 0);
        for (const QString &leftOver : m_usb->bus().leftOvers())
            ADD_FAILURE() << leftOver.toStdString();
    }

private:
    std::unique_ptr<ReaderOnBus> m_usb;
};

INSTANTIATE_TEST_SUITE_P(OfARead, LibusbCall, testing::ValuesIn(calls()), [](const auto &instance) {
    return instance.param.function + std::string("_") + std::to_string(instance.param.position);
});

} // namespace

TEST_P(LibusbCall, FailsWithAnyCode_IsReportedAndEverythingIsReleased)
{
    for (const int error : CODES) {
        SCOPED_TRACE(libusb_error_name(error));
        const MessageLog log;
        const bool wasOpened = read(GetParam(), error);
        expectEnd(log.texts(), GetParam().log, error);
        expectEverythingGivenBack(wasOpened);
    }
}

TEST(LibusbCalls, EveryFunctionThatTheLibraryCalls_IsInTheTable)
{
    std::set<std::string> inTable = WITHOUT_FAILURE;
    for (const Call &call : calls())
        inTable.insert(call.function);
    const QByteArray output =
        build_programs::nm({QStringLiteral("-D"), QStringLiteral("--undefined-only")},
                           QStringLiteral(IDCARD_BUILD_LIB_DIR "/libidcard_reader_lib.so"));
    std::set<std::string> called;
    for (const QByteArray &line : output.split('\n')) {
        const int name = line.indexOf("libusb_");
        if (name >= 0)
            called.insert(line.mid(name).trimmed().toStdString());
    }
    EXPECT_EQ(called, inTable);
}
