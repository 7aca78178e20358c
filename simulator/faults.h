#pragma once

// The faults a simulated reader can be given: one vocabulary for card descriptions, the environment
// and code. What a fault does is up to the reader that carries it out.

#include <limits>
#include <optional>

#include <QString>
#include <QStringList>

namespace simulator
{

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
};

/** Count of a fault that never ends. */
constexpr int EVERY_TIME = std::numeric_limits<int>::max();

enum class FaultNumber { None, Optional, Required };

/** One word of the vocabulary: "name", "name=N" or both, as `number` says. */
struct FaultRule {
    const char *name;
    const char *meaning; ///< one English line
    std::optional<int> Faults::*value;
    FaultNumber number;
    int numberIfNone; ///< stored when the fault is named without a number
    int minimum;
    int maximum;
    bool (*refused)(int number); ///< numbers inside the range that make no fault; may be null
};

struct FaultRuleList {
    const FaultRule *first;
    const FaultRule *last;
    [[nodiscard]] const FaultRule *begin() const { return first; }
    [[nodiscard]] const FaultRule *end() const { return last; }
};

/** The whole vocabulary, in the order in which messages and help list it. */
FaultRuleList faultRules();

/** How a fault is written: "no-card or no-card=N". */
QString faultUsage(const FaultRule &rule);

/**
 * Reads a list of faults, blanks around each ignored. Gives nothing and tells `reason` when one is
 * not known, lacks its number, has a number out of range or stands twice.
 */
std::optional<Faults> parseFaults(const QStringList &list, QString *reason);

/** As above for a text separated by commas; an empty or blank text means no fault. */
std::optional<Faults> parseFaults(const QString &text, QString *reason);

/** The faults of `base`, replaced by those set in `override`. */
Faults overlaidFaults(const Faults &base, const Faults &override);

} // namespace simulator
