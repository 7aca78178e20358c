// The vocabulary of faults as a table.

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

#include "common/card_info_struct.h"
#include "common/card_records.h"
#include "common/closed_functions.h"
#include "simulator/card/faults.h"
#include "simulator/translated_texts.h"

namespace simulator
{

namespace
{

SIMULATOR_TEXTS(Faults)

constexpr int ANY_MINIMUM = std::numeric_limits<int>::min();
constexpr int ANY_MAXIMUM = std::numeric_limits<int>::max();
constexpr int LONGEST_DELAY_MS = 60000;
constexpr int UNKNOWN_KIND = 9;
constexpr int LAST_ANSWER_BYTE = LONGEST_FAULT_BYTES - 1;
constexpr int LAST_COMMAND_BYTE = 9;
constexpr int LAST_TRANSFER = 2 * USB_EXCHANGE_COUNT;

using Meanings = std::array<const char *, ROAD_COUNT>;

constexpr Meanings onBothRoads(const char *meaning)
{
    return {meaning, meaning};
}

constexpr Meanings onMakersLibrary(const char *meaning)
{
    return {meaning, nullptr};
}

constexpr Meanings onUsb(const char *meaning)
{
    return {nullptr, meaning};
}

FaultArgument number(int minimum, int maximum, std::vector<int> refused = {})
{
    return {FaultArgument::NUMBER, minimum, maximum, std::move(refused)};
}

FaultArgument optionalNumber(int ifNone, int minimum, std::vector<int> refused = {})
{
    return {FaultArgument::OPTIONAL_NUMBER, minimum, ANY_MAXIMUM, std::move(refused), ifNone};
}

} // namespace

const std::vector<FaultRule> &faultRules()
{
    static const std::vector<FaultRule> rules = {
        {FaultKind::OPEN_FAILS,
         "open-fails",
         {QT_TR_NOOP("opening the reader answers N (not 144)"),
          QT_TR_NOOP("the reader's node cannot be opened, whatever N; not for want of permission")},
         number(ANY_MINIMUM, ANY_MAXIMUM, {KVO_SUCCESS})},
        {FaultKind::OPEN_FAILS_EVERY, "open-fails-every",
         onMakersLibrary(QT_TR_NOOP("every Nth opening answers 210, as if the reader had gone")),
         number(1, ANY_MAXIMUM)},
        {FaultKind::NO_CARD,
         "no-card",
         {QT_TR_NOOP("the first N finds, or all, see no card"),
          QT_TR_NOOP("the first N lookups, or all, answer status 00 00 80")},
         optionalNumber(EVERY_TIME, 0)},
        {FaultKind::TRANSIENT_FAILURES,
         "transient-failures",
         {QT_TR_NOOP("the first N reads answer 65 (try again)"),
          QT_TR_NOOP("the first N reads answer a status alone")},
         number(0, ANY_MAXIMUM)},
        {FaultKind::READ_FAILS,
         "read-fails",
         {QT_TR_NOOP("reading answers N (not 144 or 65)"),
          QT_TR_NOOP("every read answers a status alone, whatever N")},
         number(ANY_MINIMUM, ANY_MAXIMUM, {KVO_SUCCESS, KVO_READ_AGAIN})},
        {FaultKind::DELAY_MS, "delay-ms",
         onBothRoads(QT_TR_NOOP("a read answers after N milliseconds (0 to 60000)")),
         number(0, LONGEST_DELAY_MS)},
        {FaultKind::PHOTO_UNDECODABLE, "photo-undecodable",
         onBothRoads(QT_TR_NOOP("the photo is compressed data that does not decode"))},
        {FaultKind::PHOTO_LENGTH,
         "photo-length",
         {QT_TR_NOOP("N bytes of photo are reported (0 to 38862)"),
          QT_TR_NOOP("the photo length field reads N; the photo stays 1024 bytes long")},
         number(0, IDCARD_PHOTO_SIZE)},
        {FaultKind::UNKNOWN_KIND,
         "unknown-kind",
         {QT_TR_NOOP("the card is of kind N (not 1 to 4; 9 if not given)"),
          QT_TR_NOOP("the text has a kind letter that no document has, whatever N")},
         optionalNumber(UNKNOWN_KIND, ANY_MINIMUM,
                        {CARD_INFO_KIND_CN, CARD_INFO_KIND_HMT, CARD_INFO_KIND_FOREIGN_2017,
                         CARD_INFO_KIND_FOREIGN_NEW})},
        {FaultKind::CARD_REMOVED,
         "card-removed",
         {QT_TR_NOOP("the card goes between being found and being read"),
          QT_TR_NOOP("the card goes between being selected and being read")}},

        {FaultKind::UNPLUGGED, "unplugged", onUsb(QT_TR_NOOP("the reader is not there"))},
        {FaultKind::UNPLUGGED_BEFORE, "unplugged-before",
         onUsb(QT_TR_NOOP("the reader goes before transfer N of a card read (1 to 6)")),
         number(1, LAST_TRANSFER)},
        {FaultKind::UNPLUGGED_DURING, "unplugged-during",
         onUsb(QT_TR_NOOP("the reader goes in the middle of transfer N (1 to 6)")),
         number(1, LAST_TRANSFER)},
        {FaultKind::PERMISSION_DENIED, "permission-denied",
         onUsb(QT_TR_NOOP("this user may not open the reader's node"))},
        {FaultKind::CLAIMED_ELSEWHERE, "claimed-elsewhere",
         onUsb(QT_TR_NOOP("another program holds the reader's interface"))},
        {FaultKind::RESET_REFUSED, "reset-refused",
         onUsb(QT_TR_NOOP("the reader cannot be reset"))},

        {FaultKind::ANSWER_REPLACED,
         "answer-replaced",
         onUsb(QT_TR_NOOP("other bytes come, two hexadecimal digits each, at most 4096")),
         {FaultArgument::BYTES}},
        {FaultKind::ANSWER_CUT, "answer-cut",
         onUsb(QT_TR_NOOP("only the first N bytes of the answer come (0 to 4095)")),
         number(0, LAST_ANSWER_BYTE)},
        {FaultKind::ANSWER_CORRUPTED, "answer-corrupted",
         onUsb(QT_TR_NOOP("the bits of the answer's byte at offset N come inverted (0 to 4095)")),
         number(0, LAST_ANSWER_BYTE)},
        {FaultKind::ANSWER_DELAYED, "answer-delayed",
         onUsb(QT_TR_NOOP("the answer comes after N milliseconds (0 to 60000)")),
         number(0, LONGEST_DELAY_MS)},
        {FaultKind::ANSWER_MISSING, "answer-missing", onUsb(QT_TR_NOOP("the answer never comes"))},
        {FaultKind::ANSWER_STALLED, "answer-stalled",
         onUsb(QT_TR_NOOP("the endpoint stalls instead of answering"))},
        {FaultKind::ANSWER_BROKEN, "answer-broken",
         onUsb(QT_TR_NOOP("the answer is garbled on the bus"))},
        {FaultKind::ANSWER_TOO_LONG, "answer-too-long",
         onUsb(QT_TR_NOOP("more comes than the host asks for"))},
        {FaultKind::COMMAND_STALLED, "command-stalled",
         onUsb(QT_TR_NOOP("the endpoint stalls instead of taking the command"))},
        {FaultKind::COMMAND_BROKEN, "command-broken",
         onUsb(QT_TR_NOOP("the command is garbled on the bus"))},
        {FaultKind::COMMAND_CUT, "command-cut",
         onUsb(QT_TR_NOOP("only the first N bytes of the command are taken (0 to 9)")),
         number(0, LAST_COMMAND_BYTE)},
        {FaultKind::COMMAND_MISSING, "command-missing",
         onUsb(QT_TR_NOOP("the command is never taken"))},
        {FaultKind::COMMAND_DELAYED, "command-delayed",
         onUsb(QT_TR_NOOP("the command is taken after N milliseconds (0 to 60000)")),
         number(0, LONGEST_DELAY_MS)},
    };
    return rules;
}

std::vector<FaultRule> faultRules(Road road)
{
    std::vector<FaultRule> rules;
    std::copy_if(faultRules().begin(), faultRules().end(), std::back_inserter(rules),
                 [road](const FaultRule &rule) { return rule.meaning(road) != nullptr; });
    return rules;
}

} // namespace simulator
