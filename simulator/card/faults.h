#pragma once

// The faults a simulated reader can be given: one vocabulary for card descriptions, the environment
// and code. What a fault does is up to the reader that carries it out.

#include <array>
#include <cstddef>
#include <limits>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

namespace simulator
{

/** The exchanges of a card read over USB, in their order. */
enum class UsbExchange { LOOKUP, SELECT, READ };
constexpr int USB_EXCHANGE_COUNT = 3;

/** The roads to a simulated reader. */
enum class Road { MAKERS_LIBRARY, USB };
constexpr int ROAD_COUNT = 2;

enum class FaultKind {
    OPEN_FAILS,         ///< number: what opening the reader answers
    OPEN_FAILS_EVERY,   ///< number: of so many openings the last finds no reader
    NO_CARD,            ///< number: how many finds see no card, or `EVERY_TIME`
    TRANSIENT_FAILURES, ///< number: how many reads fail and may be tried again
    READ_FAILS,         ///< number: what reading answers
    DELAY_MS,           ///< number: pause before a read answers, in milliseconds
    PHOTO_UNDECODABLE,  ///< the compressed photo does not decode
    PHOTO_LENGTH,       ///< number: bytes of photo reported
    UNKNOWN_KIND,       ///< number: kind of card reported
    CARD_REMOVED,       ///< the card goes between find and read

    // Of a reader on USB alone.
    UNPLUGGED,         ///< the reader is not there
    UNPLUGGED_BEFORE,  ///< number: transfer of a card read, 1 to 6, that never begins
    UNPLUGGED_DURING,  ///< number: transfer of a card read, 1 to 6, that is torn
    PERMISSION_DENIED, ///< this user may not open the reader
    CLAIMED_ELSEWHERE, ///< another program holds the reader
    RESET_REFUSED,     ///< the reader cannot be reset

    // From here on of each exchange of a reader on USB.
    ANSWER_REPLACED,  ///< bytes: what comes instead of the answer
    ANSWER_CUT,       ///< number: bytes that come of the answer
    ANSWER_CORRUPTED, ///< number: offset of the byte whose bits are inverted
    ANSWER_DELAYED,   ///< number: milliseconds before the answer comes
    ANSWER_MISSING,   ///< the answer never comes
    ANSWER_STALLED,   ///< the endpoint refuses instead of answering
    ANSWER_BROKEN,    ///< the answer is garbled on the bus
    ANSWER_TOO_LONG,  ///< more comes than the host has room for
    COMMAND_STALLED,  ///< the endpoint refuses the command
    COMMAND_BROKEN,   ///< the command is garbled on the bus
    COMMAND_CUT,      ///< number: bytes that are taken of the command
    COMMAND_MISSING,  ///< the command is never taken
    COMMAND_DELAYED,  ///< number: milliseconds before the command is taken
};

/** Number of a fault that never ends. */
constexpr int EVERY_TIME = std::numeric_limits<int>::max();

/** Most bytes that a fault can carry. */
constexpr int LONGEST_FAULT_BYTES = 4096;

/** What a fault carries. */
struct FaultValue {
    int number = 0;
    QByteArray bytes;
};

/** The faults that are set; one of an exchange is asked for with the exchange. */
class Faults
{
public:
    using Exchange = std::optional<UsbExchange>;

    [[nodiscard]] bool has(FaultKind kind, Exchange exchange = {}) const
    {
        return m_values.count({kind, exchange}) != 0;
    }

    /** The number of a fault, nothing when it is not set. */
    [[nodiscard]] std::optional<int> number(FaultKind kind, Exchange exchange = {}) const;

    /** The bytes of a fault, null when it is not set. */
    [[nodiscard]] QByteArray bytes(FaultKind kind, Exchange exchange = {}) const;

    /** Sets a fault unless it is set already. Whether it was not. */
    bool add(FaultKind kind, Exchange exchange, const FaultValue &value)
    {
        return m_values.insert({{kind, exchange}, value}).second;
    }

    /** Sets those of `others` that are not set already. */
    void add(const Faults &others)
    {
        m_values.insert(others.m_values.begin(), others.m_values.end());
    }

private:
    std::map<std::pair<FaultKind, Exchange>, FaultValue> m_values;
};

/** What follows the name of a fault. */
struct FaultArgument {
    enum Form { NONE, OPTIONAL_NUMBER, NUMBER, BYTES };

    Form form = NONE;
    int minimum = 0;
    int maximum = 0;
    std::vector<int> refused = {}; ///< numbers inside the range that make no fault
    int numberIfNone = 0;          ///< of a fault that is named without a number
};

/** One word of the vocabulary, or one for each exchange: "name", "name=N", both, or "name=HEX". */
struct FaultRule {
    FaultKind kind;
    const char *name; ///< that of an exchange's fault follows the exchange's name and a dash
    /** By road, one line for people; null: the reader on that road does not have the fault. */
    std::array<const char *, ROAD_COUNT> meanings;
    FaultArgument argument = {};

    [[nodiscard]] const char *meaning(Road road) const
    {
        return meanings[static_cast<std::size_t>(road)];
    }
    /** Whether there is one for each exchange. */
    [[nodiscard]] bool isOfExchange() const { return kind >= FaultKind::ANSWER_REPLACED; }
};

/** The whole vocabulary, in the order of messages. */
const std::vector<FaultRule> &faultRules();

/** What the reader on this road has of it. */
std::vector<FaultRule> faultRules(Road road);

/** How an exchange is called in the name of a fault. */
QString exchangeName(UsbExchange exchange);

/** How a fault is written: "no-card or no-card=N", "E-answer-cut=N" for each exchange E. */
QString faultUsage(const FaultRule &rule);

/** Usage and meaning of what the reader on this road has, for a help text. */
QVector<QStringList> faultHelpRows(Road road);

/** A fault as it can be given, with a number where there must be one: "no-card", "read-fails=1". */
QString faultExample(const FaultRule &rule);

/**
 * Reads a list of faults, blanks around each ignored. Returns nothing and sets `reason` when one is
 * not known, lacks its number or bytes, has others than it may have or occurs twice.
 */
std::optional<Faults> parseFaults(const QStringList &list, QString *reason);

/**
 * As above for a text separated by commas and the reader on one road: a fault that it does not have
 * is refused, too. An empty or blank text means no fault.
 */
std::optional<Faults> parseFaults(const QString &text, Road road, QString *reason);

} // namespace simulator
