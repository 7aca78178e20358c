#pragma once

// The faults a simulated reader can be given: one vocabulary for card descriptions, the environment
// and code. What a fault does is up to the reader that carries it out.

#include <array>
#include <cstddef>
#include <limits>
#include <optional>
#include <variant>
#include <vector>

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace simulator
{

/** What a reader on USB is asked for, one after the other, when a card is read. */
enum class UsbExchange { LOOKUP, SELECT, READ };
constexpr int USB_EXCHANGE_COUNT = 3;

/** Faults of one exchange; only a reader on USB has them. */
struct ExchangeFaults {
    std::optional<QByteArray> answerReplaced; ///< what comes instead of the answer
    std::optional<int> answerCut;             ///< bytes that come of the answer
    std::optional<int> answerCorrupted;       ///< offset of the byte whose bits are inverted
    std::optional<int> answerDelayed;         ///< milliseconds before the answer comes
    std::optional<int> answerMissing;         ///< set: the answer never comes
    std::optional<int> answerStalled;         ///< set: the endpoint refuses instead of answering
    std::optional<int> answerBroken;          ///< set: the answer is garbled on the bus
    std::optional<int> answerTooLong;         ///< set: more comes than the host has room for
    std::optional<int> commandStalled;        ///< set: the endpoint refuses the command
    std::optional<int> commandBroken;         ///< set: the command is garbled on the bus
    std::optional<int> commandCut;            ///< bytes that are taken of the command
    std::optional<int> commandMissing;        ///< set: the command is never taken
    std::optional<int> commandDelayed;        ///< milliseconds before the command is taken
};

/** The roads to a simulated reader. */
enum class Road { MAKERS_LIBRARY, USB };
constexpr int ROAD_COUNT = 2;

/** Every fault that is set carries its number; what the number means is told by `faultRules`. */
struct Faults {
    std::optional<int> openFails;         ///< what opening the reader answers
    std::optional<int> noCard;            ///< how many finds see no card, or `EVERY_TIME`
    std::optional<int> transientFailures; ///< how many reads fail and may be tried again
    std::optional<int> readFails;         ///< what reading answers
    std::optional<int> delayMs;           ///< pause before a read answers, in milliseconds
    std::optional<int> photoUndecodable;  ///< set: the compressed photo does not decode
    std::optional<int> photoLength;       ///< bytes of photo reported
    std::optional<int> unknownKind;       ///< kind of card reported
    std::optional<int> cardRemoved;       ///< set: the card goes between find and read

    // Of a reader on USB alone.
    std::optional<int> unplugged;        ///< set: the reader is not there
    std::optional<int> unpluggedBefore;  ///< transfer of a card read, 1 to 6, that never begins
    std::optional<int> unpluggedDuring;  ///< transfer of a card read, 1 to 6, that is torn
    std::optional<int> permissionDenied; ///< set: this user may not open the reader
    std::optional<int> claimedElsewhere; ///< set: another program holds the reader
    std::optional<int> resetRefused;     ///< set: the reader cannot be reset
    std::array<ExchangeFaults, USB_EXCHANGE_COUNT> exchanges; ///< in the order of `UsbExchange`

    [[nodiscard]] const ExchangeFaults &of(UsbExchange exchange) const
    {
        return exchanges[static_cast<std::size_t>(exchange)];
    }
};

/** Count of a fault that never ends. */
constexpr int EVERY_TIME = std::numeric_limits<int>::max();

/** Most bytes that a fault can carry. */
constexpr int LONGEST_FAULT_BYTES = 4096;

/** What follows the name of a fault. */
enum class FaultArgument { NONE, OPTIONAL_NUMBER, NUMBER, BYTES };

/** Where a fault is kept. */
using FaultPlace = std::variant<std::optional<int> Faults::*, std::optional<int> ExchangeFaults::*,
                                std::optional<QByteArray> ExchangeFaults::*>;

/** One word of the vocabulary, or one for each exchange: "name", "name=N", both, or "name=HEX". */
struct FaultRule {
    const char *name; ///< that of an exchange's fault follows the exchange's name and a dash
    /** By road, one English line; null: the reader on that road does not have the fault. */
    std::array<const char *, ROAD_COUNT> meanings;
    FaultPlace place;
    FaultArgument argument;
    int numberIfNone; ///< stored when the fault is named without a number
    int minimum;
    int maximum;
    bool (*refused)(int number); ///< numbers inside the range that make no fault; may be null

    [[nodiscard]] const char *meaning(Road road) const
    {
        return meanings[static_cast<std::size_t>(road)];
    }
};

struct FaultRuleList {
    const FaultRule *first;
    const FaultRule *last;
    [[nodiscard]] const FaultRule *begin() const { return first; }
    [[nodiscard]] const FaultRule *end() const { return last; }
};

/** The whole vocabulary, in the order of messages. */
FaultRuleList faultRules();

/** What the reader on this road has of it. */
std::vector<FaultRule> faultRules(Road road);

/** How an exchange is called in the name of a fault. */
QString exchangeName(UsbExchange exchange);

/** Whether there is a fault of this kind for each exchange. */
bool isExchangeFault(const FaultRule &rule);

/** How a fault is written: "no-card or no-card=N", "E-answer-cut=N" for each exchange E. */
QString faultUsage(const FaultRule &rule);

/** A fault as it can be given, with a number where there must be one: "no-card", "read-fails=1". */
QString faultExample(const FaultRule &rule);

/** Whether a fault, of any exchange, is set. */
bool isFaultSet(const Faults &faults, const FaultRule &rule);

/**
 * Reads a list of faults, blanks around each ignored. Gives nothing and tells `reason` when one is
 * not known, lacks its number or bytes, has others than it may have or stands twice.
 */
std::optional<Faults> parseFaults(const QStringList &list, QString *reason);

/**
 * As above for a text separated by commas and the reader on one road: a fault that it does not have
 * is refused, too. An empty or blank text means no fault.
 */
std::optional<Faults> parseFaults(const QString &text, Road road, QString *reason);

/** The faults of `base`, replaced by those set in `override`. */
Faults overlaidFaults(const Faults &base, const Faults &override);

} // namespace simulator
