// The vocabulary of faults as a table, and how its words are written.

#include <algorithm>
#include <iterator>
#include <limits>

#include "common/card_info_struct.h"
#include "common/card_records.h"
#include "common/closed_functions.h"
#include "simulator/card/faults.h"

namespace simulator
{

namespace
{

constexpr int ANY_MINIMUM = std::numeric_limits<int>::min();
constexpr int ANY_MAXIMUM = std::numeric_limits<int>::max();
constexpr int LONGEST_DELAY_MS = 60000;
constexpr int UNKNOWN_KIND = 9;
constexpr int LAST_ANSWER_BYTE = LONGEST_FAULT_BYTES - 1;
constexpr int LAST_COMMAND_BYTE = 9;
constexpr int LAST_TRANSFER = 2 * USB_EXCHANGE_COUNT;

bool isSuccess(int code)
{
    return code == KVO_SUCCESS;
}

bool isSuccessOrTransient(int code)
{
    return code == KVO_SUCCESS || code == KVO_READ_AGAIN;
}

bool isKnownKind(int kind)
{
    return kind >= CARD_INFO_KIND_CN && kind <= CARD_INFO_KIND_FOREIGN_NEW;
}

using Meanings = std::array<const char *, ROAD_COUNT>;

constexpr Meanings onBothRoads(const char *meaning)
{
    return {meaning, meaning};
}

constexpr Meanings onUsb(const char *meaning)
{
    return {nullptr, meaning};
}

// A fault that is set or not.
constexpr FaultRule flag(const char *name, const Meanings &meanings, FaultPlace place)
{
    return {name, meanings, place, FaultArgument::NONE, 1, 0, 0, nullptr};
}

// A fault with a number in a range.
constexpr FaultRule number(const char *name, const Meanings &meanings, FaultPlace place,
                           int minimum, int maximum)
{
    return {name, meanings, place, FaultArgument::NUMBER, 0, minimum, maximum, nullptr};
}

constexpr FaultRule RULES[] = {
    {"open-fails",
     {"opening the reader answers N (not 144)",
      "the reader's node cannot be opened, whatever N; not for want of permission"},
     &Faults::openFails,
     FaultArgument::NUMBER,
     0,
     ANY_MINIMUM,
     ANY_MAXIMUM,
     isSuccess},
    {"no-card",
     {"the first N finds, or all, see no card",
      "the first N lookups, or all, answer status 00 00 80"},
     &Faults::noCard,
     FaultArgument::OPTIONAL_NUMBER,
     EVERY_TIME,
     0,
     ANY_MAXIMUM,
     nullptr},
    number("transient-failures",
           {"the first N reads answer 65 (try again)", "the first N reads answer a status alone"},
           &Faults::transientFailures, 0, ANY_MAXIMUM),
    {"read-fails",
     {"reading answers N (not 144 or 65)", "every read answers a status alone, whatever N"},
     &Faults::readFails,
     FaultArgument::NUMBER,
     0,
     ANY_MINIMUM,
     ANY_MAXIMUM,
     isSuccessOrTransient},
    number("delay-ms", onBothRoads("a read answers after N milliseconds (0 to 60000)"),
           &Faults::delayMs, 0, LONGEST_DELAY_MS),
    flag("photo-undecodable", onBothRoads("the photo is compressed data that does not decode"),
         &Faults::photoUndecodable),
    number("photo-length",
           {"N bytes of photo are reported (0 to 38862)",
            "the photo length field reads N; the photo stays 1024 bytes long"},
           &Faults::photoLength, 0, IDCARD_PHOTO_SIZE),
    {"unknown-kind",
     {"the card is of kind N (not 1 to 4; 9 if not given)",
      "the text has a kind letter that no document has, whatever N"},
     &Faults::unknownKind,
     FaultArgument::OPTIONAL_NUMBER,
     UNKNOWN_KIND,
     ANY_MINIMUM,
     ANY_MAXIMUM,
     isKnownKind},
    flag("card-removed",
         {"the card goes between being found and being read",
          "the card goes between being selected and being read"},
         &Faults::cardRemoved),

    flag("unplugged", onUsb("the reader is not there"), &Faults::unplugged),
    number("unplugged-before", onUsb("the reader goes before transfer N of a card read (1 to 6)"),
           &Faults::unpluggedBefore, 1, LAST_TRANSFER),
    number("unplugged-during", onUsb("the reader goes in the middle of transfer N (1 to 6)"),
           &Faults::unpluggedDuring, 1, LAST_TRANSFER),
    flag("permission-denied", onUsb("this user may not open the reader's node"),
         &Faults::permissionDenied),
    flag("claimed-elsewhere", onUsb("another program holds the reader's interface"),
         &Faults::claimedElsewhere),
    flag("reset-refused", onUsb("the reader cannot be reset"), &Faults::resetRefused),

    {"answer-replaced", onUsb("other bytes come, two hexadecimal digits each, at most 4096"),
     &ExchangeFaults::answerReplaced, FaultArgument::BYTES, 0, 0, 0, nullptr},
    number("answer-cut", onUsb("only the first N bytes of the answer come (0 to 4095)"),
           &ExchangeFaults::answerCut, 0, LAST_ANSWER_BYTE),
    number("answer-corrupted",
           onUsb("the bits of the answer's byte at offset N come inverted (0 to 4095)"),
           &ExchangeFaults::answerCorrupted, 0, LAST_ANSWER_BYTE),
    number("answer-delayed", onUsb("the answer comes after N milliseconds (0 to 60000)"),
           &ExchangeFaults::answerDelayed, 0, LONGEST_DELAY_MS),
    flag("answer-missing", onUsb("the answer never comes"), &ExchangeFaults::answerMissing),
    flag("answer-stalled", onUsb("the endpoint stalls instead of answering"),
         &ExchangeFaults::answerStalled),
    flag("answer-broken", onUsb("the answer is garbled on the bus"), &ExchangeFaults::answerBroken),
    flag("answer-too-long", onUsb("more comes than the host asks for"),
         &ExchangeFaults::answerTooLong),
    flag("command-stalled", onUsb("the endpoint stalls instead of taking the command"),
         &ExchangeFaults::commandStalled),
    flag("command-broken", onUsb("the command is garbled on the bus"),
         &ExchangeFaults::commandBroken),
    number("command-cut", onUsb("only the first N bytes of the command are taken (0 to 9)"),
           &ExchangeFaults::commandCut, 0, LAST_COMMAND_BYTE),
    flag("command-missing", onUsb("the command is never taken"), &ExchangeFaults::commandMissing),
    number("command-delayed", onUsb("the command is taken after N milliseconds (0 to 60000)"),
           &ExchangeFaults::commandDelayed, 0, LONGEST_DELAY_MS),
};

} // namespace

FaultRuleList faultRules()
{
    return {std::begin(RULES), std::end(RULES)};
}

std::vector<FaultRule> faultRules(Road road)
{
    std::vector<FaultRule> rules;
    std::copy_if(std::begin(RULES), std::end(RULES), std::back_inserter(rules),
                 [road](const FaultRule &rule) { return rule.meaning(road) != nullptr; });
    return rules;
}

QString exchangeName(UsbExchange exchange)
{
    switch (exchange) {
    case UsbExchange::LOOKUP:
        break;
    case UsbExchange::SELECT:
        return QStringLiteral("select");
    case UsbExchange::READ:
        return QStringLiteral("read");
    }
    return QStringLiteral("lookup");
}

bool isExchangeFault(const FaultRule &rule)
{
    return !std::holds_alternative<std::optional<int> Faults::*>(rule.place);
}

} // namespace simulator
