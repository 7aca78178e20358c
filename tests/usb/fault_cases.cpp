#include "tests/usb/fault_cases.h"

#include <array>

namespace usb_test
{

namespace
{

/** What the three exchanges of a card read are known by. */
struct Exchange {
    const char *name;
    int writeFailed;
    int readFailed;
    int answerSize;
    int answerTransfer; ///< counted from 1; the command's is the one before
    const char *taken;  ///< by the log, of the answer
};

constexpr std::array<Exchange, 3> EXCHANGES = {{
    {"lookup", -12, -11, 15, 2, "lookup_resp success!"},
    {"select", -15, -24, 19, 4, "select_resp success!"},
    {"read", -22, -21, 2321, 6, "fetch_data_resp success!"},
}};
const Exchange &LOOKUP = EXCHANGES[0];
const Exchange &SELECT = EXCHANGES[1];
const Exchange &READ = EXCHANGES[2];

const Lines FETCHED = {"write pipe2 success!", "fetch_data_resp success!", "fplen=1024",
                       "fetch data success, outbuf size=2321"};
const Lines NOT_OPENED = {"libusb_open_device_with_vid_pid() failed", "open usb failed!"};

/** The log when the node was found and could not be opened. */
Lines nodeNotOpened(const std::string &error, int code)
{
    return Lines{"found usb device!",
                 "failed to open device " + error + "   " + std::to_string(code),
                 "failed to open device: " + error + "(" + std::to_string(code) + ")"} +
           NOT_OPENED;
}

/** The log until the exchange begins. */
Lines before(const Exchange &exchange)
{
    if (&exchange == &LOOKUP)
        return lines::OPENED;
    return &exchange == &SELECT ? lines::OPENED + lines::LOOKED_UP : lines::READY;
}

/** The log until its answer is awaited. */
Lines written(const Exchange &exchange)
{
    return before(exchange) + Lines{"write pipe2 success!"};
}

/** The log when the command failed with a result of libusb. */
Lines notWritten(const Exchange &exchange, int result)
{
    return before(exchange) + Lines{"write pipe2 error(" + std::to_string(result) + ")!"};
}

/** The log when the answer failed with a result of libusb after so many bytes. */
Lines notRead(const Exchange &exchange, int result, int count)
{
    const std::string error = "_resp error(" + std::to_string(result) + ")";
    if (&exchange == &READ)
        return written(READ) + Lines{"fetch_data" + error + "!"};
    const std::string text =
        std::string(exchange.name) + error + ", actual_length=" + std::to_string(count) + "!";
    return written(exchange) + (&exchange == &SELECT
                                    ? Lines{text, "CARD_SELECT_RESP_FAIL=>READ_NO_DATA"}
                                    : Lines{text});
}

Lines mismatch(const Exchange &exchange)
{
    return written(exchange) + Lines{exchange.taken, "found data not matched!!!"};
}

/** The log when the answer to read came and was refused. */
Lines refused(const Lines &reason)
{
    return written(READ) + Lines{READ.taken} + reason;
}

/** The log when the answer to read has {N} bytes, which no frame has. */
Lines wrongLength(const std::string &length)
{
    return written(READ) + Lines{"total length(" + length + ") invalid!"};
}

const Lines NO_DATA = written(READ) + Lines{"total length(11), no card data for reading!"};

QString faultOf(const Exchange &exchange, const char *fault)
{
    return QLatin1String(exchange.name) + QLatin1Char('-') + QLatin1String(fault);
}

/** A case for every number from `first` to `last`. */
FaultCase range(const QString &fault, int first, int last, int code, const Lines &log)
{
    FaultCase row{fault, {}, QString::number(first), code, log};
    for (int number = first; number <= last; ++number)
        row.arguments << QString::number(number);
    if (last > first)
        row.argumentText += QStringLiteral(" to %1").arg(last);
    return row;
}

FaultCase numbers(const QString &fault, const QStringList &numbers, int code, const Lines &log)
{
    return {fault, numbers, numbers.join(QStringLiteral(", ")), code, log};
}

FaultCase plain(const QString &fault, int code, const Lines &log, End end = End::AT_ONCE)
{
    return {fault, {QString()}, QString(), code, log, end};
}

FaultCase ending(FaultCase row, End end)
{
    row.end = end;
    return row;
}

/** Of the reader as a whole, and of its card. */
std::vector<FaultCase> readerFaults()
{
    const Lines read = wholeRead();
    return {
        {"open-fails",
         {"1", "-3"},
         "1, -3",
         -5,
         nodeNotOpened("LIBUSB_ERROR_NO_DEVICE", -4),
         End::AT_ONCE,
         2},
        numbers("no-card", {"1", "2"}, -10, mismatch(LOOKUP)),
        numbers("no-card", {"0"}, 0, read),
        plain("no-card", -10, mismatch(LOOKUP)),
        numbers("transient-failures", {"1", "2"}, -24, NO_DATA),
        numbers("transient-failures", {"0"}, 0, read),
        numbers("read-fails", {"0", "-1", "99"}, -24, NO_DATA),
        numbers("delay-ms", {"0", "100"}, 0, read),
        ending(numbers("delay-ms", {"60000"}, -21, notRead(READ, -7, 0)), End::GIVES_UP),
        plain("photo-undecodable", 0, read),
        numbers("photo-length", {"1024"}, 0, read),
        numbers("photo-length", {"0", "1", "1023", "1025", "38862"}, -18,
                refused({"found resp data not matched!!!"})),
        plain("unknown-kind", 0, read),
        numbers("unknown-kind", {"0", "5", "-1"}, 0, read),
        plain("card-removed", -24, NO_DATA),
        plain("unplugged", -7, NOT_OPENED),
        {"permission-denied",
         {QString()},
         QString(),
         -6,
         nodeNotOpened("LIBUSB_ERROR_ACCESS", -3),
         End::AT_ONCE,
         1},
        plain("claimed-elsewhere", -8,
              Lines{"found usb device!", "libusb_claim_interface failed: LIBUSB_ERROR_BUSY",
                    "open usb failed!"}),
        plain("reset-refused", -9,
              Lines{"found usb device!", "libusb_reset_device failed: LIBUSB_ERROR_OTHER",
                    "open usb failed!"}),
    };
}

/** The reader goes before or in the middle of either transfer. */
std::vector<FaultCase> unplugs(const Exchange &exchange)
{
    const QString answer = QString::number(exchange.answerTransfer);
    const QString command = QString::number(exchange.answerTransfer - 1);
    const Lines commandLost = notWritten(exchange, -4);
    return {
        numbers("unplugged-before", {command}, exchange.writeFailed, commandLost),
        numbers("unplugged-during", {command}, exchange.writeFailed, commandLost),
        numbers("unplugged-before", {answer}, exchange.readFailed, notRead(exchange, -4, 0)),
        numbers("unplugged-during", {answer}, exchange.readFailed,
                notRead(exchange, -4, exchange.answerSize / 2)),
    };
}

/** Faults that mean the same in every exchange. */
std::vector<FaultCase> exchangeFaults(const Exchange &exchange)
{
    const Lines read = wholeRead();
    const QString longDelay = QString::number(LONG_DELAY_MS);
    const auto name = [&exchange](const char *fault) { return faultOf(exchange, fault); };
    const int size = exchange.answerSize;
    return {
        numbers(name("answer-delayed"), {"0", "200"}, 0, read),
        ending(numbers(name("answer-delayed"), {"60000"}, exchange.readFailed,
                       notRead(exchange, -7, 0)),
               End::GIVES_UP),
        plain(name("answer-missing"), exchange.readFailed, notRead(exchange, -7, 0), End::GIVES_UP),
        plain(name("answer-stalled"), exchange.readFailed, notRead(exchange, -9, 0)),
        plain(name("answer-broken"), exchange.readFailed, notRead(exchange, -1, 0)),
        plain(name("answer-too-long"), exchange.readFailed, notRead(exchange, -8, size)),
        plain(name("command-stalled"), exchange.writeFailed, notWritten(exchange, -9)),
        plain(name("command-broken"), exchange.writeFailed, notWritten(exchange, -1)),
        range(name("command-cut"), 0, 9, exchange.writeFailed, notWritten(exchange, 0)),
        plain(name("command-missing"), exchange.writeFailed, notWritten(exchange, -4),
              End::UNPLUGGED),
        numbers(name("command-delayed"), {"0", "200"}, 0, read),
        ending(numbers(name("command-delayed"), {longDelay}, 0, read), End::LATE),
    };
}

/** A short answer to lookup or select is accepted, with the text of lookup. */
Lines shortAnswer(const Exchange &exchange)
{
    const Lines accepted = written(exchange) + Lines{"lookup_resp error(0), actual_length={N}!",
                                                     std::string(exchange.name) + " success!"};
    return (&exchange == &LOOKUP ? accepted + lines::SELECTED : accepted) + FETCHED;
}

/** Answers of lookup and select that are not what they should be. */
std::vector<FaultCase> fixedAnswers(const Exchange &exchange, int code)
{
    const Lines read = wholeRead();
    const int size = exchange.answerSize;
    const QString corrupted = faultOf(exchange, "answer-corrupted");
    const QString cut = faultOf(exchange, "answer-cut");
    const QString replaced = faultOf(exchange, "answer-replaced");
    return {
        range(corrupted, 0, size - 1, code, mismatch(exchange)),
        numbers(corrupted, {QString::number(size), "4095"}, 0, read),
        range(cut, 0, size - 1, 0, shortAnswer(exchange)),
        numbers(cut, {QString::number(size), "4095"}, 0, read),
        {replaced,
         {QString::fromLatin1(QByteArray(size, '\0').toHex()),
          QString::fromLatin1(QByteArray(size, '\xFF').toHex())},
         QStringLiteral("%1 other bytes").arg(size),
         code,
         mismatch(exchange)},
        {replaced,
         {QString::fromLatin1(QByteArray(size + 1, '\0').toHex()),
          QString::fromLatin1(QByteArray(511, '\0').toHex())},
         QStringLiteral("more than %1 bytes, in one packet").arg(size),
         exchange.readFailed,
         notRead(exchange, -8, size)},
    };
}

/** Answers of read that are not what they should be. */
std::vector<FaultCase> readAnswers()
{
    const Lines read = wholeRead();
    const QString corrupted("read-answer-corrupted");
    const QString cut("read-answer-cut");
    const QString replaced("read-answer-replaced");
    const auto hex = [](const QByteArray &bytes) { return QString::fromLatin1(bytes.toHex()); };
    return {
        range(corrupted, 0, 4, -17, refused({"found preamble not matched!!!"})),
        range(corrupted, 5, 5, -19, refused({"total data length(62986) not matched!!!"})),
        range(corrupted, 6, 6, -19, refused({"total data length(2549) not matched!!!"})),
        range(corrupted, 7, 13, -18, refused({"found resp data not matched!!!"})),
        range(corrupted, 14, 14, -20, refused({"fplen=64256", "fplen invalid!"})),
        range(corrupted, 15, 15, -20, refused({"fplen=1279", "fplen invalid!"})),
        numbers(corrupted,
                {"16", "17", "271", "272", "511", "512", "1295", "1296", "1807", "1808", "2319",
                 "2320", "2321", "4095"},
                0, read),
        numbers(cut,
                {"0", "1", "7", "10", "12", "16", "511", "512", "513", "1024", "1296", "1298",
                 "1500", "1808", "1810", "2320"},
                -16, wrongLength("{N}")),
        numbers(cut, {"11"}, -24, NO_DATA),
        numbers(cut, {"1297", "1809"}, -19, refused({"total data length(2314) not matched!!!"})),
        numbers(cut, {"2321", "4095"}, 0, read),
        {replaced, {hex(frames::NO_DATA_ANSWER)}, "a status alone", -24, NO_DATA},
        {replaced, {"00"}, "one byte", -16, wrongLength("1")},
        {replaced,
         {hex(QByteArray(1297, '\0')), hex(QByteArray(2321, '\xFF'))},
         "noise as long as a frame",
         -17,
         refused({"found preamble not matched!!!"})},
        {replaced,
         {hex(QByteArray(2322, '\0')), hex(QByteArray(2559, '\0'))},
         "more than 2321 bytes, in five packets",
         -21,
         notRead(READ, -8, 0)},
        {replaced,
         {hex(frames::readAnswer(0))},
         "a frame without fingerprints",
         0,
         written(READ) +
             Lines{"fetch_data_resp success!", "fplen=0", "fetch data success, outbuf size=1297"}},
    };
}

} // namespace

Lines wholeRead()
{
    return lines::READY + FETCHED;
}

std::string Failure::codeText() const
{
    return std::to_string(code) + " (" + constant + ")";
}

void PrintTo(const Failure &failure, std::ostream *stream)
{
    *stream << failure.fault;
}

const std::vector<Failure> &failures()
{
    static const std::vector<Failure> rows = {
        {"open-fails=1", -5, "USB_READER_OPEN_FAILED", 3, "could not be opened"},
        {"permission-denied", -6, "USB_READER_NO_PERMISSION", 3,
         "This user may not use the reader."},
        {"unplugged", -7, "USB_READER_NOT_FOUND", 3, "There is no such reader."},
        {"claimed-elsewhere", -8, "USB_READER_CLAIM_FAILED", 3, "The reader is in use."},
        {"reset-refused", -9, "USB_READER_RESET_FAILED", 3, "could not be reset"},
        {"no-card", -10, "USB_READER_LOOKUP_MISMATCH", 4, "No card was found"},
        {"lookup-answer-stalled", -11, "USB_READER_LOOKUP_READ_FAILED", 5,
         "did not answer whether a card is there"},
        {"lookup-command-stalled", -12, "USB_READER_LOOKUP_WRITE_FAILED", 5,
         "command to look for a card could not be sent"},
        {"select-answer-corrupted=9", -13, "USB_READER_SELECT_MISMATCH", 5, "The card was lost."},
        {"select-answer-stalled", -24, "USB_READER_NO_DATA", 4, "The card gave no data."},
        {"select-command-cut=4", -15, "USB_READER_SELECT_WRITE_FAILED", 5,
         "command to select the card could not be sent"},
        {"read-answer-cut=1500", -16, "USB_READER_DATA_LENGTH_INVALID", 8, "is not a card record"},
        {"read-answer-corrupted=0", -17, "USB_READER_DATA_PREAMBLE_WRONG", 8,
         "is not a card record"},
        {"read-answer-corrupted=9", -18, "USB_READER_DATA_STATUS_WRONG", 8, "is not a card record"},
        {"read-answer-corrupted=6", -19, "USB_READER_DATA_LENGTH_MISMATCH", 8,
         "is not a card record"},
        {"read-answer-corrupted=15", -20, "USB_READER_DATA_PRINTS_INVALID", 8,
         "is not a card record"},
        {"read-answer-broken", -21, "USB_READER_DATA_READ_FAILED", 5, "was broken off"},
        {"read-command-stalled", -22, "USB_READER_DATA_WRITE_FAILED", 5,
         "command to read the card could not be sent"},
        {"card-removed", -24, "USB_READER_NO_DATA", 4, "The card gave no data."},
        {"unplugged-before=1", -12, "USB_READER_LOOKUP_WRITE_FAILED", 5,
         "The reader was unplugged while"},
        {"unplugged-during=4", -24, "USB_READER_NO_DATA", 5, "The reader was unplugged while"},
        {"unplugged-during=6", -21, "USB_READER_DATA_READ_FAILED", 5,
         "The reader was unplugged while"},
    };
    return rows;
}

std::vector<FaultCase> faultCases()
{
    std::vector<FaultCase> rows = readerFaults();
    const auto add = [&rows](const std::vector<FaultCase> &more) {
        rows.insert(rows.end(), more.begin(), more.end());
    };
    for (const Exchange &exchange : EXCHANGES)
        add(unplugs(exchange));
    for (const Exchange &exchange : EXCHANGES)
        add(exchangeFaults(exchange));
    add(fixedAnswers(LOOKUP, -10));
    add(fixedAnswers(SELECT, -13));
    add({{"select-answer-replaced",
          {QString::fromLatin1(frames::LOOKUP_ANSWER.toHex())},
          "the answer to lookup",
          0,
          written(SELECT) + Lines{"lookup_resp error(0), actual_length=15!", "select success!"} +
              FETCHED}});
    add(readAnswers());
    return rows;
}

} // namespace usb_test
