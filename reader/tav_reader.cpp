#include "reader/tav_reader.h"

#include "common/closed_functions.h"
#include "common/closed_library_door.h"

#include <clocale>
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

constexpr int READ_FLAG = 1; // what the maker's library wants as last argument of a read
constexpr unsigned long RETRY_PAUSE_MS = 50;

constexpr std::wstring_view OPEN_FAILED_TEXT = L"打开读卡器失败，错误码：";
constexpr std::wstring_view READ_AGAIN_TEXT = L"card reading fail!";
constexpr std::wstring_view READ_ERROR_TEXT = L"card reading error, result is：";

/**
 * Writes one line to the wide console. A console that cannot take it (it was used for bytes before,
 * or the locale has no such characters) loses this line and no later one.
 */
void writeConsoleLine(std::wstring_view text) noexcept
{
    try {
        const std::ios_base::Init streamsAreSetUp;
        const std::ios_base::iostate before = std::wcout.rdstate();
        std::wcout << text << std::endl;
        if (before == std::ios_base::goodbit)
            std::wcout.clear();
    } catch (...) { // a host may have asked the stream to throw; a message is not worth a read
    }
}

void writeConsoleLine(std::wstring_view text, int code) noexcept
{
    try {
        writeConsoleLine(std::wstring(text) + std::to_wstring(code));
    } catch (...) { // out of memory
    }
}

/** What `call` returns, or `failure` when it throws. */
template <typename Call>
int resultOf(Call call, int failure) noexcept
{
    try {
        return call();
    } catch (...) {
        return failure;
    }
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
    if (resultOf([] { return closed_library::findIDCard(KVO_PORT); }, NO_CARD) != KVO_SUCCESS)
        return NO_CARD;

    bool thrown = false;
    const auto read = [&] {
        try {
            return closed_library::readIDCard(KVO_PORT, info, photo, photoLen, fp, fpLen,
                                              READ_FLAG);
        } catch (...) {
            thrown = true;
            return static_cast<int>(EARLIER_READ_FAILED);
        }
    };
    int result = read();
    while (result == KVO_READ_AGAIN && !thrown) {
        writeConsoleLine(READ_AGAIN_TEXT);
        QThread::msleep(RETRY_PAUSE_MS);
        result = read();
    }
    if (result == KVO_SUCCESS) {
        m_state = READ;
        return FETCHED;
    }
    writeConsoleLine(READ_ERROR_TEXT, result);
    m_state = READ_FAILED;
    return result;
}
