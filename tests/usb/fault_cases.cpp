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
void addReaderFaults(std::vector<FaultCase> &rows)
{
    const Lines read = wholeRead();
    const Lines opening = {"found usb device!"};
    rows.push_back({"open-fails",
                    {"1", "-3"},
                    "1, -3",
                    -5,
                    opening +
                        Lines{"failed to open device LIBUSB_ERROR_NO_DEVICE   -4",
                              "failed to open device: LIBUSB_ERROR_NO_DEVICE(-4)"} +
                        NOT_OPENED,
                    End::AT_ONCE,
                    2});
    rows.push_back(numbers("no-card", {"1", "2"}, -10, mismatch(LOOKUP)));
    rows.push_back(numbers("no-card", {"0"}, 0, read));
    rows.push_back(plain("no-card", -10, mismatch(LOOKUP)));
    rows.push_back(numbers("transient-failures", {"1", "2"}, -24, NO_DATA));
    rows.push_back(numbers("transient-failures", {"0"}, 0, read));
    rows.push_back(numbers("read-fails", {"0", "-1", "99"}, -24, NO_DATA));
    rows.push_back(numbers("delay-ms", {"0", "100"}, 0, read));
    rows.push_back(
        ending(numbers("delay-ms", {"60000"}, -21, notRead(READ, -7, 0)), End::GIVES_UP));
    rows.push_back(plain("photo-undecodable", 0, read));
    rows.push_back(numbers("photo-length", {"1024"}, 0, read));
    rows.push_back(numbers("photo-length", {"0", "1", "1023", "1025", "38862"}, -18,
                           refused({"found resp data not matched!!!"})));
    rows.push_back(plain("unknown-kind", 0, read));
    rows.push_back(numbers("unknown-kind", {"0", "5", "-1"}, 0, read));
    rows.push_back(plain("card-removed", -24, NO_DATA));
    rows.push_back(plain("unplugged", -7, NOT_OPENED));
    rows.push_back({"permission-denied",
                    {QString()},
                    QString(),
                    -6,
                    opening +
                        Lines{"failed to open device LIBUSB_ERROR_ACCESS   -3",
                              "failed to open device: LIBUSB_ERROR_ACCESS(-3)"} +
                        NOT_OPENED,
                    End::AT_ONCE,
                    1});
    rows.push_back(plain(
        "claimed-elsewhere", -8,
        opening + Lines{"libusb_claim_interface failed: LIBUSB_ERROR_BUSY", "open usb failed!"}));
    rows.push_back(plain(
        "reset-refused", -9,
        opening + Lines{"libusb_reset_device failed: LIBUSB_ERROR_OTHER", "open usb failed!"}));
}

/** The reader goes before or in the middle of each transfer. */
void addUnplugs(std::vector<FaultCase> &rows)
{
    for (const Exchange &exchange : EXCHANGES) {
        const QString answer = QString::number(exchange.answerTransfer);
        const QString command = QString::number(exchange.answerTransfer - 1);
        for (const char *const fault : {"unplugged-before", "unplugged-during"})
            rows.push_back(
                numbers(fault, {command}, exchange.writeFailed, notWritten(exchange, -4)));
        rows.push_back(
            numbers("unplugged-before", {answer}, exchange.readFailed, notRead(exchange, -4, 0)));
        rows.push_back(numbers("unplugged-during", {answer}, exchange.readFailed,
                               notRead(exchange, -4, exchange.answerSize / 2)));
    }
}

/** Faults that mean the same in every exchange. */
void addExchangeFaults(std::vector<FaultCase> &rows)
{
    const Lines read = wholeRead();
    const QString longDelay = QString::number(LONG_DELAY_MS);
    for (const Exchange &exchange : EXCHANGES) {
        const auto name = [&exchange](const char *fault) { return faultOf(exchange, fault); };
        const int size = exchange.answerSize;
        rows.push_back(numbers(name("answer-delayed"), {"0", "200"}, 0, read));
        rows.push_back(ending(numbers(name("answer-delayed"), {"60000"}, exchange.readFailed,
                                      notRead(exchange, -7, 0)),
                              End::GIVES_UP));
        rows.push_back(plain(name("answer-missing"), exchange.readFailed, notRead(exchange, -7, 0),
                             End::GIVES_UP));
        rows.push_back(
            plain(name("answer-stalled"), exchange.readFailed, notRead(exchange, -9, 0)));
        rows.push_back(plain(name("answer-broken"), exchange.readFailed, notRead(exchange, -1, 0)));
        rows.push_back(
            plain(name("answer-too-long"), exchange.readFailed, notRead(exchange, -8, size)));
        rows.push_back(
            plain(name("command-stalled"), exchange.writeFailed, notWritten(exchange, -9)));
        rows.push_back(
            plain(name("command-broken"), exchange.writeFailed, notWritten(exchange, -1)));
        rows.push_back(
            range(name("command-cut"), 0, 9, exchange.writeFailed, notWritten(exchange, 0)));
        rows.push_back(plain(name("command-missing"), exchange.writeFailed,
                             notWritten(exchange, -4), End::UNPLUGGED));
        rows.push_back(numbers(name("command-delayed"), {"0", "200"}, 0, read));
        rows.push_back(ending(numbers(name("command-delayed"), {longDelay}, 0, read), End::LATE));
    }
}

/** A short answer to lookup or select is accepted, with the text of lookup. */
Lines shortAnswer(const Exchange &exchange)
{
    const Lines accepted = written(exchange) + Lines{"lookup_resp error(0), actual_length={N}!",
                                                     std::string(exchange.name) + " success!"};
    return (&exchange == &LOOKUP ? accepted + lines::SELECTED : accepted) + FETCHED;
}

/** Answers of lookup and select that are not what they should be. */
void addFixedAnswers(std::vector<FaultCase> &rows)
{
    const Lines read = wholeRead();
    const std::array<int, 2> codes = {-10, -13};
    for (std::size_t i = 0; i < codes.size(); ++i) {
        const Exchange &exchange = EXCHANGES[i];
        const int size = exchange.answerSize;
        const QString corrupted = faultOf(exchange, "answer-corrupted");
        const QString cut = faultOf(exchange, "answer-cut");
        const QString replaced = faultOf(exchange, "answer-replaced");
        rows.push_back(range(corrupted, 0, size - 1, codes[i], mismatch(exchange)));
        rows.push_back(numbers(corrupted, {QString::number(size), "4095"}, 0, read));
        rows.push_back(range(cut, 0, size - 1, 0, shortAnswer(exchange)));
        rows.push_back(numbers(cut, {QString::number(size), "4095"}, 0, read));
        rows.push_back({replaced,
                        {QString::fromLatin1(QByteArray(size, '\0').toHex()),
                         QString::fromLatin1(QByteArray(size, '\xFF').toHex())},
                        QStringLiteral("%1 other bytes").arg(size),
                        codes[i],
                        mismatch(exchange)});
        rows.push_back({replaced,
                        {QString::fromLatin1(QByteArray(size + 1, '\0').toHex()),
                         QString::fromLatin1(QByteArray(511, '\0').toHex())},
                        QStringLiteral("more than %1 bytes, in one packet").arg(size),
                        exchange.readFailed,
                        notRead(exchange, -8, size)});
    }
    rows.push_back({"select-answer-replaced",
                    {QString::fromLatin1(frames::LOOKUP_ANSWER.toHex())},
                    "the answer to lookup",
                    0,
                    written(SELECT) +
                        Lines{"lookup_resp error(0), actual_length=15!", "select success!"} +
                        FETCHED});
}

/** Answers of read that are not what they should be. */
void addReadAnswers(std::vector<FaultCase> &rows)
{
    const Lines read = wholeRead();
    const QString corrupted("read-answer-corrupted");
    rows.push_back(range(corrupted, 0, 4, -17, refused({"found preamble not matched!!!"})));
    rows.push_back(
        range(corrupted, 5, 5, -19, refused({"total data length(62986) not matched!!!"})));
    rows.push_back(
        range(corrupted, 6, 6, -19, refused({"total data length(2549) not matched!!!"})));
    rows.push_back(range(corrupted, 7, 13, -18, refused({"found resp data not matched!!!"})));
    rows.push_back(range(corrupted, 14, 14, -20, refused({"fplen=64256", "fplen invalid!"})));
    rows.push_back(range(corrupted, 15, 15, -20, refused({"fplen=1279", "fplen invalid!"})));
    rows.push_back(numbers(corrupted,
                           {"16", "17", "271", "272", "511", "512", "1295", "1296", "1807", "1808",
                            "2319", "2320", "2321", "4095"},
                           0, read));

    const QString cut("read-answer-cut");
    rows.push_back(numbers(cut,
                           {"0", "1", "7", "10", "12", "16", "511", "512", "513", "1024", "1296",
                            "1298", "1500", "1808", "1810", "2320"},
                           -16, wrongLength("{N}")));
    rows.push_back(numbers(cut, {"11"}, -24, NO_DATA));
    rows.push_back(
        numbers(cut, {"1297", "1809"}, -19, refused({"total data length(2314) not matched!!!"})));
    rows.push_back(numbers(cut, {"2321", "4095"}, 0, read));

    const QString replaced("read-answer-replaced");
    const auto hex = [](const QByteArray &bytes) { return QString::fromLatin1(bytes.toHex()); };
    rows.push_back({replaced, {hex(frames::NO_DATA_ANSWER)}, "a status alone", -24, NO_DATA});
    rows.push_back({replaced, {"00"}, "one byte", -16, wrongLength("1")});
    rows.push_back({replaced,
                    {hex(QByteArray(1297, '\0')), hex(QByteArray(2321, '\xFF'))},
                    "noise as long as a frame",
                    -17,
                    refused({"found preamble not matched!!!"})});
    rows.push_back({replaced,
                    {hex(QByteArray(2322, '\0')), hex(QByteArray(2559, '\0'))},
                    "more than 2321 bytes, in five packets",
                    -21,
                    notRead(READ, -8, 0)});
    rows.push_back({replaced,
                    {hex(frames::readAnswer(0))},
                    "a frame without fingerprints",
                    0,
                    written(READ) + Lines{"fetch_data_resp success!", "fplen=0",
                                          "fetch data success, outbuf size=1297"}});
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
    std::vector<FaultCase> rows;
    addReaderFaults(rows);
    addUnplugs(rows);
    addExchangeFaults(rows);
    addFixedAnswers(rows);
    addReadAnswers(rows);
    return rows;
}

} // namespace usb_test
