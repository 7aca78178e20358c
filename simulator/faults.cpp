// The vocabulary of faults as a table, and its parser.

#include "simulator/faults.h"

#include "common/card_info_struct.h"
#include "common/card_records.h"
#include "common/closed_functions.h"

namespace simulator
{

namespace
{

constexpr int ANY_MINIMUM = std::numeric_limits<int>::min();
constexpr int ANY_MAXIMUM = std::numeric_limits<int>::max();
constexpr int LONGEST_DELAY_MS = 60000;
constexpr int UNKNOWN_KIND = 9;

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

constexpr FaultRule RULES[] = {
    {"open-fails", "opening the reader answers N (not 144)", &Faults::openFails,
     FaultNumber::Required, 0, ANY_MINIMUM, ANY_MAXIMUM, isSuccess},
    {"no-card", "the first N finds, or all, see no card", &Faults::noCard, FaultNumber::Optional,
     EVERY_TIME, 0, ANY_MAXIMUM, nullptr},
    {"transient-failures", "the first N reads answer 65 (try again)", &Faults::transientFailures,
     FaultNumber::Required, 0, 0, ANY_MAXIMUM, nullptr},
    {"read-fails", "reading answers N (not 144 or 65)", &Faults::readFails, FaultNumber::Required,
     0, ANY_MINIMUM, ANY_MAXIMUM, isSuccessOrTransient},
    {"delay-ms", "a read answers after N milliseconds (0 to 60000)", &Faults::delayMs,
     FaultNumber::Required, 0, 0, LONGEST_DELAY_MS, nullptr},
    {"photo-undecodable", "the photo is compressed data that does not decode",
     &Faults::photoUndecodable, FaultNumber::None, 1, 0, 0, nullptr},
    {"photo-length", "N bytes of photo are reported (0 to 38862)", &Faults::photoLength,
     FaultNumber::Required, 0, 0, IDCARD_PHOTO_SIZE, nullptr},
    {"unknown-kind", "the card is of kind N (not 1 to 4; 9 if not given)", &Faults::unknownKind,
     FaultNumber::Optional, UNKNOWN_KIND, ANY_MINIMUM, ANY_MAXIMUM, isKnownKind},
    {"card-removed", "the card goes between being found and being read", &Faults::cardRemoved,
     FaultNumber::None, 1, 0, 0, nullptr},
};

const FaultRule *findRule(const QString &name)
{
    for (const FaultRule &rule : RULES) {
        if (name == QLatin1String(rule.name)) {
            return &rule;
        }
    }
    return nullptr;
}

QString shortened(const QString &text)
{
    constexpr int LONGEST_QUOTE = 60;
    return text.size() <= LONGEST_QUOTE ? text : text.left(LONGEST_QUOTE) + QStringLiteral("...");
}

QString unknownFault(const QString &fault)
{
    QStringList usages;
    for (const FaultRule &rule : RULES) {
        usages << faultUsage(rule);
    }
    return QStringLiteral("fault \"%1\" is not known; known faults: %2")
        .arg(shortened(fault), usages.join(QStringLiteral(", ")));
}

QString wrongFault(const QString &fault, const FaultRule &rule)
{
    return QStringLiteral("fault \"%1\" is not of the form %2: %3")
        .arg(shortened(fault), faultUsage(rule), QLatin1String(rule.meaning));
}

// The number of `fault`, which names `rule`; nothing when it is missing, too much or out of range.
std::optional<int> faultNumber(const QString &fault, const FaultRule &rule)
{
    const int equals = fault.indexOf(QLatin1Char('='));
    if (equals < 0) {
        return rule.number == FaultNumber::Required ? std::nullopt
                                                    : std::make_optional(rule.numberIfNone);
    }
    bool isNumber = false;
    const int number = fault.mid(equals + 1).trimmed().toInt(&isNumber);
    if (rule.number == FaultNumber::None || !isNumber || number < rule.minimum ||
        number > rule.maximum || (rule.refused != nullptr && rule.refused(number))) {
        return std::nullopt;
    }
    return number;
}

// Adds one fault to `faults`; the reason when it cannot be added, an empty text otherwise.
QString addFault(Faults *faults, const QString &fault)
{
    const QString name = fault.section(QLatin1Char('='), 0, 0).trimmed();
    const FaultRule *rule = findRule(name);
    if (rule == nullptr) {
        return unknownFault(fault);
    }
    const std::optional<int> number = faultNumber(fault, *rule);
    if (!number) {
        return wrongFault(fault, *rule);
    }
    std::optional<int> &value = faults->*rule->value;
    if (value) {
        return QStringLiteral("fault \"%1\" is given twice").arg(name);
    }
    value = number;
    return {};
}

} // namespace

FaultRuleList faultRules()
{
    return {std::begin(RULES), std::end(RULES)};
}

QString faultUsage(const FaultRule &rule)
{
    QString name = QLatin1String(rule.name);
    switch (rule.number) {
    case FaultNumber::None:
        return name;
    case FaultNumber::Optional:
        return QStringLiteral("%1 or %1=N").arg(name);
    case FaultNumber::Required:
        break;
    }
    return QStringLiteral("%1=N").arg(name);
}

std::optional<Faults> parseFaults(const QStringList &list, QString *reason)
{
    Faults faults;
    for (const QString &fault : list) {
        const QString problem = addFault(&faults, fault.trimmed());
        if (!problem.isEmpty()) {
            *reason = problem;
            return std::nullopt;
        }
    }
    return faults;
}

std::optional<Faults> parseFaults(const QString &text, QString *reason)
{
    if (text.trimmed().isEmpty()) {
        return Faults();
    }
    return parseFaults(text.split(QLatin1Char(',')), reason);
}

Faults overlaidFaults(const Faults &base, const Faults &override)
{
    Faults result = base;
    for (const FaultRule &rule : RULES) {
        if (override.*rule.value) {
            result.*rule.value = override.*rule.value;
        }
    }
    return result;
}

} // namespace simulator
