// Reading faults by the vocabulary's table.

#include "simulator/card/faults.h"

#include <algorithm>
#include <array>

namespace simulator
{

namespace
{

constexpr UsbExchange EXCHANGES[] = {UsbExchange::LOOKUP, UsbExchange::SELECT, UsbExchange::READ};

// One fault as it is given, with the rule that its name stands for.
struct GivenFault {
    QString text;
    QString name;
    const FaultRule *rule = nullptr;
    UsbExchange exchange = UsbExchange::LOOKUP; ///< of an exchange's fault
};

// The name of a rule's fault, for the exchange named `exchange` when it is one of an exchange.
QString faultName(const FaultRule &rule, const QString &exchange)
{
    const QString name = QLatin1String(rule.name);
    return isExchangeFault(rule) ? exchange + QLatin1Char('-') + name : name;
}

QString usageOf(const QString &name, FaultArgument argument)
{
    switch (argument) {
    case FaultArgument::NONE:
        return name;
    case FaultArgument::OPTIONAL_NUMBER:
        return QStringLiteral("%1 or %1=N").arg(name);
    case FaultArgument::BYTES:
        return QStringLiteral("%1=HEX").arg(name);
    case FaultArgument::NUMBER:
        break;
    }
    return QStringLiteral("%1=N").arg(name);
}

GivenFault understood(const QString &text)
{
    GivenFault fault;
    fault.text = text;
    fault.name = text.section(QLatin1Char('='), 0, 0).trimmed();
    for (const FaultRule &rule : faultRules()) {
        for (const UsbExchange exchange : EXCHANGES) {
            if (fault.name == faultName(rule, exchangeName(exchange))) {
                fault.rule = &rule;
                fault.exchange = exchange;
                return fault;
            }
        }
    }
    return fault;
}

QString shortened(const QString &text)
{
    constexpr int LONGEST_QUOTE = 60;
    return text.size() <= LONGEST_QUOTE ? text : text.left(LONGEST_QUOTE) + QStringLiteral("...");
}

bool isFaultOf(const FaultRule &rule, std::optional<Road> road)
{
    return !road || rule.meaning(*road) != nullptr;
}

QString unknownFault(const QString &text, std::optional<Road> road)
{
    QStringList usages;
    bool hasExchanges = false;
    for (const FaultRule &rule : faultRules()) {
        if (isFaultOf(rule, road)) {
            usages << faultUsage(rule);
            hasExchanges = hasExchanges || isExchangeFault(rule);
        }
    }
    return QStringLiteral("fault \"%1\" is not known; known faults: %2%3")
        .arg(shortened(text), usages.join(QStringLiteral(", ")),
             QLatin1String(hasExchanges ? " (E: lookup, select or read)" : ""));
}

QString wrongFault(const GivenFault &fault)
{
    const auto &meanings = fault.rule->meanings;
    const auto *const meaning = std::find_if(meanings.begin(), meanings.end(),
                                             [](const char *text) { return text != nullptr; });
    return QStringLiteral("fault \"%1\" is not of the form %2: %3")
        .arg(shortened(fault.text), usageOf(fault.name, fault.rule->argument),
             QLatin1String(*meaning));
}

// How the reader on each road is called, and what simulates it.
struct RoadRow {
    const char *reader;
    const char *program;
};

constexpr std::array<RoadRow, ROAD_COUNT> ROADS = {{
    {"the reader maker's library", "\"idcard-reader read --simulate\""},
    {"the reader on USB", "idcard-virtual-reader"},
}};

// The reader on `road` does not have the fault, that on the other one does.
QString faultOfOtherRoad(const GivenFault &fault, Road road)
{
    const auto own = static_cast<std::size_t>(road);
    const RoadRow &other = ROADS.at(ROAD_COUNT - 1 - own);
    return QStringLiteral("%1 has no fault \"%2\"; only %3 has it: use %4")
        .arg(QLatin1String(ROADS.at(own).reader), fault.name, QLatin1String(other.reader),
             QLatin1String(other.program));
}

// The argument of `fault`; false when it is missing, too much or out of range.
bool readArgument(const GivenFault &fault, int *number)
{
    const FaultRule &rule = *fault.rule;
    const int equals = fault.text.indexOf(QLatin1Char('='));
    if (equals < 0) {
        *number = rule.numberIfNone;
        return rule.argument != FaultArgument::NUMBER;
    }
    bool isNumber = false;
    *number = fault.text.mid(equals + 1).trimmed().toInt(&isNumber);
    return rule.argument != FaultArgument::NONE && isNumber && *number >= rule.minimum &&
           *number <= rule.maximum && (rule.refused == nullptr || !rule.refused(*number));
}

bool isHexadecimalDigit(QChar character)
{
    return QStringLiteral("0123456789ABCDEFabcdef").contains(character);
}

bool readArgument(const GivenFault &fault, QByteArray *bytes)
{
    const int equals = fault.text.indexOf(QLatin1Char('='));
    const QString digits = equals < 0 ? QString() : fault.text.mid(equals + 1).trimmed();
    if (digits.isEmpty() || digits.size() % 2 != 0 || digits.size() > 2 * LONGEST_FAULT_BYTES ||
        !std::all_of(digits.cbegin(), digits.cend(), isHexadecimalDigit))
        return false;
    *bytes = QByteArray::fromHex(digits.toLatin1());
    return true;
}

template <typename Part, typename Value>
QString setFault(const GivenFault &fault, Part *part, std::optional<Value> Part::*place)
{
    Value value = {};
    if (!readArgument(fault, &value))
        return wrongFault(fault);
    if (part->*place)
        return QStringLiteral("fault \"%1\" is given twice").arg(fault.name);
    part->*place = value;
    return {};
}

// Sets a fault of `faults`; the reason when it cannot be set, an empty text otherwise.
struct Setter {
    const GivenFault &fault;
    Faults *faults;

    QString operator()(std::optional<int> Faults::*place) const
    {
        return setFault(fault, faults, place);
    }

    template <typename Value>
    QString operator()(std::optional<Value> ExchangeFaults::*place) const
    {
        return setFault(fault, &faults->exchanges[static_cast<std::size_t>(fault.exchange)], place);
    }
};

QString addFault(Faults *faults, const QString &text, std::optional<Road> road)
{
    const GivenFault fault = understood(text);
    if (fault.rule == nullptr)
        return unknownFault(text, road);
    if (!isFaultOf(*fault.rule, road))
        return faultOfOtherRoad(fault, *road);
    return std::visit(Setter{fault, faults}, fault.rule->place);
}

std::optional<Faults> parsed(const QStringList &list, std::optional<Road> road, QString *reason)
{
    Faults faults;
    for (const QString &fault : list) {
        const QString problem = addFault(&faults, fault.trimmed(), road);
        if (!problem.isEmpty()) {
            *reason = problem;
            return std::nullopt;
        }
    }
    return faults;
}

template <typename Part, typename Value>
void overlay(Part *base, const Part &override, std::optional<Value> Part::*place)
{
    if (override.*place)
        base->*place = override.*place;
}

struct Overlay {
    Faults *base;
    const Faults &override;

    void operator()(std::optional<int> Faults::*place) const { overlay(base, override, place); }

    template <typename Value>
    void operator()(std::optional<Value> ExchangeFaults::*place) const
    {
        for (std::size_t i = 0; i < base->exchanges.size(); ++i)
            overlay(&base->exchanges[i], override.exchanges[i], place);
    }
};

struct IsSet {
    const Faults &faults;

    bool operator()(std::optional<int> Faults::*place) const { return (faults.*place).has_value(); }

    template <typename Value>
    bool operator()(std::optional<Value> ExchangeFaults::*place) const
    {
        return std::any_of(
            faults.exchanges.begin(), faults.exchanges.end(),
            [place](const ExchangeFaults &exchange) { return (exchange.*place).has_value(); });
    }
};

} // namespace

QString faultUsage(const FaultRule &rule)
{
    return usageOf(faultName(rule, QStringLiteral("E")), rule.argument);
}

QString faultExample(const FaultRule &rule)
{
    QString name = faultName(rule, exchangeName(UsbExchange::LOOKUP));
    if (rule.argument == FaultArgument::BYTES)
        return name + QStringLiteral("=00");
    if (rule.argument != FaultArgument::NUMBER)
        return name;
    return QStringLiteral("%1=%2").arg(name).arg(std::max(rule.minimum, 1));
}

bool isFaultSet(const Faults &faults, const FaultRule &rule)
{
    return std::visit(IsSet{faults}, rule.place);
}

std::optional<Faults> parseFaults(const QStringList &list, QString *reason)
{
    return parsed(list, std::nullopt, reason);
}

std::optional<Faults> parseFaults(const QString &text, Road road, QString *reason)
{
    if (text.trimmed().isEmpty())
        return Faults();
    return parsed(text.split(QLatin1Char(',')), road, reason);
}

Faults overlaidFaults(const Faults &base, const Faults &override)
{
    Faults result = base;
    for (const FaultRule &rule : faultRules())
        std::visit(Overlay{&result, override}, rule.place);
    return result;
}

} // namespace simulator
