#include "reader/tav_reader.h"

#include "common/cancellation.h"
#include "common/closed_functions.h"
#include "common/closed_library_door.h"

#include <clocale>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include <QThread>

// The header of the standard streams would set all of them up whenever the library is loaded, half
// a megabyte of memory and a tenth of what loading costs, for a stream that is used when a read
// fails.
namespace std // NOLINT(cert-dcl58-cpp)
{
extern wostream wcout;
} // namespace std

namespace
{

constexpr int READ_FLAG = 1; // the last argument of a read, fixed by the maker's library
constexpr unsigned long RETRY_PAUSE_MS = 50;
constexpr std::optional<int> THROWN; // in place of a read's result, which may be any number

constexpr std::wstring_view OPEN_FAILED_TEXT = L"打开读卡器失败，错误码：";
constexpr std::wstring_view READ_AGAIN_TEXT = L"card reading fail!";
constexpr std::wstring_view READ_ERROR_TEXT = L"card reading error, result is：";

/**
 * The state of the wide console, from before a line to after it: a console that cannot take the
 * line (it was used for bytes before, or the locale has no such characters) takes later ones all
 * the same.
 */
class ConsoleState
{
public:
    ConsoleState() : m_wasGood(std::wcout.good()) {}
    ~ConsoleState()
    {
        if (m_wasGood)
            std::wcout.clear();
    }
    ConsoleState(const ConsoleState &) = delete;
    ConsoleState &operator=(const ConsoleState &) = delete;

private:
    bool m_wasGood;
};

/**
 * Writes one line to the wide console. A line is not worth a read: one at which the stream throws,
 * as a host may have asked it to, is lost. A thread that is cancelled need not wait for the
 * console.
 */
void writeConsoleLine(std::wstring_view text)
{
    static const std::ios_base::Init streamsAreSetUp;
    const ConsoleState state;
    resultOf([text] { return (std::wcout << text << std::endl).good(); }, false);
}

/** The same, with `code` behind it; the line is lost, too, when memory has run out. */
void writeConsoleLine(std::wstring_view text, int code)
{
    const std::wstring line =
        resultOf([&] { return std::wstring(text) + std::to_wstring(code); }, std::wstring());
    if (!line.empty())
        writeConsoleLine(line);
}

} // namespace

static_assert(sizeof(CTavReader) == sizeof(std::int32_t), "a reader is its state and nothing else");

CTavReader::CTavReader()
{
    std::setlocale(LC_ALL, "");
    m_state = OPENING;
    const int result =
        resultOf([] { return closed_library::openPort(KVO_PORT); }, closed_library::NOT_FOUND);
    if (result == KVO_SUCCESS) {
        m_state = OPEN;
        return;
    }
    writeConsoleLine(OPEN_FAILED_TEXT, result);
    m_state = OPEN_FAILED;
}

CTavReader::~CTavReader()
{
    const CancellationHold hold; // a destructor may not be unwound, and the port is to be closed
    if (m_state == OPEN || m_state == READ || m_state == READ_FAILED)
        resultOf([] { return closed_library::closePort(KVO_PORT); }, 0);
}

int CTavReader::FetchCardData(CardInfoStruct *info, unsigned char *photo, unsigned int *photoLen,
                              unsigned char *fp, unsigned int *fpLen)
{
    if (m_state == OPEN_FAILED || m_state == NEVER_OPENED)
        return PORT_NOT_OPEN;
    if (m_state == READ_FAILED)
        return EARLIER_READ_FAILED;
    if (resultOf<int>([] { return closed_library::findIDCard(KVO_PORT); }, NO_CARD) != KVO_SUCCESS)
        return NO_CARD;

    const auto read = [&] {
        return resultOf(
            [&] {
                return closed_library::readIDCard(KVO_PORT, info, photo, photoLen, fp, fpLen,
                                                  READ_FLAG);
            },
            THROWN);
    };
    std::optional<int> result = read();
    while (result == KVO_READ_AGAIN) {
        writeConsoleLine(READ_AGAIN_TEXT);
        QThread::msleep(RETRY_PAUSE_MS);
        result = read();
    }
    if (result == KVO_SUCCESS) {
        m_state = READ;
        return FETCHED;
    }
    const int code = result.value_or(EARLIER_READ_FAILED);
    writeConsoleLine(READ_ERROR_TEXT, code);
    m_state = READ_FAILED;
    return code;
}
