#include "reader/usbidreader.h"

#include <algorithm>
#include <array>
#include <memory>
#include <new>

#include <libusb.h>
#include <pthread.h>

#include <QtEndian>

#include "common/cancellation.h"
#include "common/debug_log.h"
#include "reader/reader_frames.h"

static_assert(sizeof(CUsbIdReader) == sizeof(CLibUsbEx), "the reader adds no field");

namespace
{

using namespace reader_frames;

constexpr unsigned char BLOCK_OUT_PIPE = 0x06;
constexpr unsigned char BLOCK_IN_PIPE = 0x85;

constexpr unsigned int NO_TIME_LIMIT = 0;
constexpr unsigned int READ_TIME_LIMIT_MS = 5000;

struct Transfer {
    int result;
    int count;

    bool moved(int size) const { return result == LIBUSB_SUCCESS && count == size; }
};

/** The open reader, as a transfer needs it. */
struct Device {
    libusb_context *context;
    libusb_device_handle *handle;
};

/**
 * As it waits without limit, a cancelled thread is unwound out of libusb's own wait. The transfer
 * stays on the bus until the device is closed, for which the lock of that wait must be released.
 * No other transfer may follow: it would hand this one back, to where the stack was.
 *
 * One gap is left: the first wait of a context begins with libusb emptying a descriptor of its own
 * under a lock that nothing can release. A cancellation in these microseconds lets the thread hang
 * when it closes the device.
 */
Transfer write(const Device &device, unsigned char pipe, unsigned char *data, int size)
{
    pthread_testcancel(); // rather here than in libusb
    Transfer transfer{};
    try {
        transfer.result =
            libusb_bulk_transfer(device.handle, pipe, data, size, &transfer.count, NO_TIME_LIMIT);
    } catch (...) {
        // not reached by fuzzing: only a cancelled thread comes here
        if (libusb_event_handler_active(device.context) != 0)
            libusb_unlock_events(device.context);
        throw;
    }
    return transfer;
}

/** A cancelled thread ends after it. */
Transfer read(const Device &device, unsigned char pipe, unsigned char *data, int size)
{
    Transfer transfer{};
    {
        const CancellationHold hold;
        transfer.result = libusb_bulk_transfer(device.handle, pipe, data, size, &transfer.count,
                                               READ_TIME_LIMIT_MS);
    }
    pthread_testcancel();
    return transfer;
}

/** One exchange of a card read: what is sent, what may come, and how each outcome is reported. */
struct Exchange {
    Command command;
    const unsigned char *answer; ///< the expected one; null when it is the card's data
    int answerSize;              ///< bytes that are read at most
    USB_READER_CODE writeFailed;
    USB_READER_CODE readFailed;
    USB_READER_CODE mismatch;   ///< not the expected answer
    const char *readFailedText; ///< with the transfer's result and the number of bytes
    const char *answeredText;
    const char *doneText; ///< of the card's data with its size
};

constexpr Exchange LOOKUP = {
    LOOKUP_COMMAND,
    LOOKUP_ANSWER.data(),
    static_cast<int>(LOOKUP_ANSWER.size()),
    USB_READER_LOOKUP_WRITE_FAILED,
    USB_READER_LOOKUP_READ_FAILED,
    USB_READER_LOOKUP_MISMATCH,
    "lookup_resp error(%d), actual_length=%d!",
    "lookup_resp success!",
    "lookup success!",
};
constexpr Exchange SELECT = {
    SELECT_COMMAND,
    SELECT_ANSWER.data(),
    static_cast<int>(SELECT_ANSWER.size()),
    USB_READER_SELECT_WRITE_FAILED,
    USB_READER_SELECT_READ_FAILED,
    USB_READER_SELECT_MISMATCH,
    "select_resp error(%d), actual_length=%d!",
    "select_resp success!",
    "select success!",
};
constexpr Exchange READ = {
    READ_COMMAND,
    nullptr,
    READ_ANSWER_MAX_SIZE,
    USB_READER_DATA_WRITE_FAILED,
    USB_READER_DATA_READ_FAILED,
    USB_READER_OK,
    "fetch_data_resp error(%d)!",
    "fetch_data_resp success!",
    "fetch data success, outbuf size=%d",
};

constexpr const char *WRITTEN_TEXT = "write pipe2 success!";
constexpr const char *NOT_WRITTEN_TEXT = "write pipe2 error(%d)!";
constexpr const char *MISMATCH_TEXT = "found data not matched!!!";
/** Of select, too: readers of the log know a short answer by this line. */
constexpr const char *SHORT_ANSWER_TEXT = LOOKUP.readFailedText;

/** Sends the command and reads what comes into `answer`, `count` bytes; it has room for them. */
USB_READER_CODE transferBoth(const Device &device, const Exchange &exchange, unsigned char *answer,
                             int *count)
{
    Command command = exchange.command;
    const int size = static_cast<int>(command.size());
    const Transfer sent = write(device, COMMAND_PIPE, command.data(), size);
    if (!sent.moved(size)) {
        debugLine(NOT_WRITTEN_TEXT, sent.result);
        return exchange.writeFailed;
    }
    debugLine("%s", WRITTEN_TEXT);
    const Transfer received = read(device, ANSWER_PIPE, answer, exchange.answerSize);
    *count = received.count;
    if (received.result != LIBUSB_SUCCESS) {
        debugLine(exchange.readFailedText, received.result, received.count);
        return exchange.readFailed;
    }
    return USB_READER_OK;
}

/** Runs an exchange that has an expected answer. */
USB_READER_CODE run(const Device &device, const Exchange &exchange)
{
    std::array<unsigned char, std::max(LOOKUP_ANSWER.size(), SELECT_ANSWER.size())> answer{};
    int count = 0;
    const USB_READER_CODE failure = transferBoth(device, exchange, answer.data(), &count);
    if (failure != USB_READER_OK)
        return failure;
    if (count == exchange.answerSize) {
        debugLine("%s", exchange.answeredText);
        if (!std::equal(exchange.answer, exchange.answer + count, answer.begin())) {
            debugLine("%s", MISMATCH_TEXT);
            return exchange.mismatch;
        }
    } else {
        // Deliberately accepted: what follows shows whether there is a card.
        debugLine(SHORT_ANSWER_TEXT, static_cast<int>(LIBUSB_SUCCESS), count);
    }
    debugLine("%s", exchange.doneText);
    return USB_READER_OK;
}

const ReadAnswerSize *findAnswerSize(int size)
{
    const auto *const row =
        std::find_if(READ_ANSWER_SIZES.begin(), READ_ANSWER_SIZES.end(),
                     [size](const ReadAnswerSize &known) { return known.size == size; });
    return row == READ_ANSWER_SIZES.end() ? nullptr : row;
}

bool isPrintLength(int length)
{
    return length == 0 || length == PRINT_SIZE || length == 2 * PRINT_SIZE;
}

/** Checks an answer of one of the `READ_ANSWER_SIZES`. */
USB_READER_CODE checkData(const unsigned char *answer, int size)
{
    if (!std::equal(PREAMBLE.begin(), PREAMBLE.end(), answer)) {
        debugLine("found preamble not matched!!!");
        return USB_READER_DATA_PREAMBLE_WRONG;
    }
    if (!std::equal(READ_ANSWER_STATUS.begin(), READ_ANSWER_STATUS.end(), answer + STATUS_OFFSET)) {
        debugLine("found resp data not matched!!!");
        return USB_READER_DATA_STATUS_WRONG;
    }
    const int length = qFromBigEndian<quint16>(answer + LENGTH_OFFSET);
    if (length + HEAD_SIZE != size) {
        debugLine("total data length(%d) not matched!!!", length);
        return USB_READER_DATA_LENGTH_MISMATCH;
    }
    // Deliberately not compared with the size of the answer, which alone decides `fp`.
    const int printLength = qFromBigEndian<quint16>(answer + PRINT_LENGTH_OFFSET);
    debugLine("fplen=%d", printLength);
    if (!isPrintLength(printLength)) {
        debugLine("fplen invalid!");
        return USB_READER_DATA_PRINTS_INVALID;
    }
    return USB_READER_OK;
}

/** `size` bytes that are 0, never null unless memory is exhausted. */
std::unique_ptr<unsigned char[]> makeBlock(unsigned short size)
{
    return std::unique_ptr<unsigned char[]>(new (std::nothrow) unsigned char[size]());
}

} // namespace

CUsbIdReader::CUsbIdReader(unsigned short vid, unsigned short pid) : CLibUsbEx(vid, pid)
{
    pthread_testcancel(); // opening was none of the places where a thread ends
    lookup();
    select();
    if (m_lastError == USB_READER_SELECT_READ_FAILED) {
        debugLine("CARD_SELECT_RESP_FAIL=>READ_NO_DATA");
        m_lastError = USB_READER_NO_DATA;
    }
}

CUsbIdReader::~CUsbIdReader() = default;

bool CUsbIdReader::lookup()
{
    if (m_lastError != USB_READER_OK)
        return false;
    m_lastError = run({m_context, m_handle}, LOOKUP);
    return m_lastError == USB_READER_OK;
}

bool CUsbIdReader::select()
{
    if (m_lastError != USB_READER_OK)
        return false;
    m_lastError = run({m_context, m_handle}, SELECT);
    return m_lastError == USB_READER_OK;
}

bool CUsbIdReader::fetch_data(QByteArray &out, FP_INFO_TYPE &fp)
{
    if (m_lastError != USB_READER_OK)
        return false;
    std::array<unsigned char, READ_ANSWER_MAX_SIZE> answer{};
    int count = 0;
    m_lastError = transferBoth({m_context, m_handle}, READ, answer.data(), &count);
    if (m_lastError != USB_READER_OK)
        return false;
    const ReadAnswerSize *const known = findAnswerSize(count);
    if (known == nullptr) {
        const bool hasStatusOnly = count == STATUS_ONLY_ANSWER_SIZE;
        debugLine(hasStatusOnly ? "total length(%d), no card data for reading!"
                                : "total length(%d) invalid!",
                  count);
        m_lastError = hasStatusOnly ? USB_READER_NO_DATA : USB_READER_DATA_LENGTH_INVALID;
        return false;
    }
    debugLine("%s", READ.answeredText);
    m_lastError = checkData(answer.data(), count);
    if (m_lastError != USB_READER_OK)
        return false;
    try {
        out = QByteArray(reinterpret_cast<const char *>(answer.data()), count);
    } catch (const std::bad_alloc &) {
        // not reached by fuzzing: the record finds no memory
        m_lastError = USB_READER_DATA_READ_FAILED;
        return false;
    }
    fp = known->prints;
    debugLine(READ.doneText, out.size());
    return true;
}

bool CUsbIdReader::write_pipe2(unsigned char a, unsigned char b)
{
    if (m_lastError != USB_READER_OK)
        return false;
    std::array<unsigned char, HEAD_SIZE> head{};
    std::copy(PREAMBLE.begin(), PREAMBLE.end(), head.begin());
    head[LENGTH_OFFSET] = a;
    head[LENGTH_OFFSET + 1] = b;
    const Transfer transfer = write({m_context, m_handle}, COMMAND_PIPE, head.data(), HEAD_SIZE);
    if (!transfer.moved(HEAD_SIZE)) {
        debugLine(NOT_WRITTEN_TEXT, transfer.result);
        return false;
    }
    debugLine("%s", WRITTEN_TEXT);
    return true;
}

bool CUsbIdReader::write_pipe6(unsigned short size, unsigned char first, unsigned char second,
                               unsigned char *data, unsigned char last)
{
    constexpr int DATA_OFFSET = 2;
    constexpr int AROUND_DATA = 5;
    if (m_lastError != USB_READER_OK)
        return false;
    const auto block = makeBlock(size);
    Transfer transfer{LIBUSB_ERROR_NO_MEM, 0};
    if (block) {
        if (size > 0)
            block[0] = first;
        if (size > 1)
            block[1] = second;
        if (data != nullptr && size > AROUND_DATA)
            std::copy_n(data, size - AROUND_DATA, block.get() + DATA_OFFSET);
        if (size > 0)
            block[size - 1] = last;
        transfer = write({m_context, m_handle}, BLOCK_OUT_PIPE, block.get(), size);
    }
    if (!transfer.moved(size)) {
        debugLine("write pipe6 error(%d)!", transfer.result);
        return false;
    }
    debugLine("write pipe6 success!");
    return true;
}

bool CUsbIdReader::read_pipe81(unsigned short &length)
{
    if (m_lastError != USB_READER_OK)
        return false;
    std::array<unsigned char, HEAD_SIZE> head{};
    const Transfer transfer = read({m_context, m_handle}, ANSWER_PIPE, head.data(), HEAD_SIZE);
    if (!transfer.moved(HEAD_SIZE)) {
        debugLine("write pipe81 error(%d)!", transfer.result);
        return false;
    }
    debugLine("write pipe81 success!"); // "write", though it was read: hosts know the line
    int position = 0;
    for (const unsigned char byte : head)
        debugLine("pipe81_data[%d]=0x%02X", position++, static_cast<unsigned int>(byte));
    length = qFromBigEndian<quint16>(head.data() + LENGTH_OFFSET);
    return true;
}

bool CUsbIdReader::read_pipe85(unsigned short size)
{
    if (m_lastError != USB_READER_OK)
        return false;
    const auto block = makeBlock(size);
    const Transfer transfer = block ? read({m_context, m_handle}, BLOCK_IN_PIPE, block.get(), size)
                                    : Transfer{LIBUSB_ERROR_NO_MEM, 0};
    if (!transfer.moved(size)) {
        debugLine("write pipe85 error(%d)!", transfer.result);
        return false;
    }
    debugLine("write pipe85 success!");
    for (unsigned int i = 0; i < size; ++i)
        debugLine("pipe85_data[%u]=0x%02X", i, static_cast<unsigned int>(block[i]));
    return true;
}
