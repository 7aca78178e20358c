// The vocabulary of faults as a table, and how its words are written.

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

// A fault that is set or not.
constexpr FaultRule flag(const char *name, const char *meaning, const char *usbMeaning,
                         FaultPlace place)
{
    return {name, meaning, usbMeaning, place, FaultArgument::None, 1, 0, 0, nullptr};
}

// A fault with a number in a range, which only a reader on USB has.
constexpr FaultRule usbNumber(const char *name, const char *meaning, FaultPlace place, int minimum,
                              int maximum)
{
    return {name, meaning, nullptr, place, FaultArgument::Number, 0, minimum, maximum, nullptr};
}

constexpr FaultRule RULES[] = {
    {"open-fails", "opening the reader answers N (not 144)",
     "the reader's node cannot be opened, whatever N; not for want of permission",
     &Faults::openFails, FaultArgument::Number, 0, ANY_MINIMUM, ANY_MAXIMUM, isSuccess},
    {"no-card", "the first N finds, or all, see no card",
     "the first N lookups, or all, answer status 00 00 80", &Faults::noCard,
     FaultArgument::OptionalNumber, EVERY_TIME, 0, ANY_MAXIMUM, nullptr},
    {"transient-failures", "the first N reads answer 65 (try again)",
     "the first N reads answer a status alone", &Faults::transientFailures, FaultArgument::Number,
     0, 0, ANY_MAXIMUM, nullptr},
    {"read-fails", "reading answers N (not 144 or 65)",
     "every read answers a status alone, whatever N", &Faults::readFails, FaultArgument::Number, 0,
     ANY_MINIMUM, ANY_MAXIMUM, isSuccessOrTransient},
    {"delay-ms", "a read answers after N milliseconds (0 to 60000)", nullptr, &Faults::delayMs,
     FaultArgument::Number, 0, 0, LONGEST_DELAY_MS, nullptr},
    flag("photo-undecodable", "the photo is compressed data that does not decode", nullptr,
         &Faults::photoUndecodable),
    {"photo-length", "N bytes of photo are reported (0 to 38862)",
     "the photo length field reads N; the photo stays 1024 bytes long", &Faults::photoLength,
     FaultArgument::Number, 0, 0, IDCARD_PHOTO_SIZE, nullptr},
    {"unknown-kind", "the card is of kind N (not 1 to 4; 9 if not given)",
     "the text has a kind letter that no document has, whatever N", &Faults::unknownKind,
     FaultArgument::OptionalNumber, UNKNOWN_KIND, ANY_MINIMUM, ANY_MAXIMUM, isKnownKind},
    flag("card-removed", "the card goes between being found and being read",
         "the card goes between being selected and being read", &Faults::cardRemoved),

    flag("unplugged", "the reader is not there", nullptr, &Faults::unplugged),
    usbNumber("unplugged-before", "the reader goes before transfer N of a card read (1 to 6)",
              &Faults::unpluggedBefore, 1, LAST_TRANSFER),
    usbNumber("unplugged-during", "the reader goes in the middle of transfer N (1 to 6)",
              &Faults::unpluggedDuring, 1, LAST_TRANSFER),
    flag("permission-denied", "this user may not open the reader's node", nullptr,
         &Faults::permissionDenied),
    flag("claimed-elsewhere", "another program holds the reader's interface", nullptr,
         &Faults::claimedElsewhere),
    flag("reset-refused", "the reader cannot be reset", nullptr, &Faults::resetRefused),

    {"answer-replaced", "other bytes come, two hexadecimal digits each, at most 4096", nullptr,
     &ExchangeFaults::answerReplaced, FaultArgument::Bytes, 0, 0, 0, nullptr},
    usbNumber("answer-cut", "only the first N bytes of the answer come (0 to 4095)",
              &ExchangeFaults::answerCut, 0, LAST_ANSWER_BYTE),
    usbNumber("answer-corrupted",
              "the bits of the answer's byte at offset N come inverted (0 to "
              "4095)",
              &ExchangeFaults::answerCorrupted, 0, LAST_ANSWER_BYTE),
    usbNumber("answer-delayed", "the answer comes after N milliseconds (0 to 60000)",
              &ExchangeFaults::answerDelayed, 0, LONGEST_DELAY_MS),
    flag("answer-missing", "the answer never comes", nullptr, &ExchangeFaults::answerMissing),
    flag("answer-stalled", "the endpoint stalls instead of answering", nullptr,
         &ExchangeFaults::answerStalled),
    flag("answer-broken", "the answer is garbled on the bus", nullptr,
         &ExchangeFaults::answerBroken),
    flag("answer-too-long", "more comes than the host asks for", nullptr,
         &ExchangeFaults::answerTooLong),
    flag("command-stalled", "the endpoint stalls instead of taking the command", nullptr,
         &ExchangeFaults::commandStalled),
    flag("command-broken", "the command is garbled on the bus", nullptr,
         &ExchangeFaults::commandBroken),
    usbNumber("command-cut", "only the first N bytes of the command are taken (0 to 9)",
              &ExchangeFaults::commandCut, 0, LAST_COMMAND_BYTE),
    flag("command-missing", "the command is never taken", nullptr, &ExchangeFaults::commandMissing),
    usbNumber("command-delayed", "the command is taken after N milliseconds (0 to 60000)",
              &ExchangeFaults::commandDelayed, 0, LONGEST_DELAY_MS),
};

constexpr int MAKERS_RULE_COUNT = 9;
static_assert(std::get<0>(RULES[MAKERS_RULE_COUNT - 1].place) == &Faults::cardRemoved,
              "the makers' faults stand first");

} // namespace

FaultRuleList faultRules()
{
    return {std::begin(RULES), std::end(RULES)};
}

FaultRuleList makersFaultRules()
{
    return {std::begin(RULES), std::begin(RULES) + MAKERS_RULE_COUNT};
}

QString usbFaultMeaning(const FaultRule &rule)
{
    return QLatin1String(rule.usbMeaning != nullptr ? rule.usbMeaning : rule.meaning);
}

QString exchangeName(UsbExchange exchange)
{
    switch (exchange) {
    case UsbExchange::Lookup:
        break;
    case UsbExchange::Select:
        return QStringLiteral("select");
    case UsbExchange::Read:
        return QStringLiteral("read");
    }
    return QStringLiteral("lookup");
}

bool isExchangeFault(const FaultRule &rule)
{
    return !std::holds_alternative<std::optional<int> Faults::*>(rule.place);
}

} // namespace simulator
