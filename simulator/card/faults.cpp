// Reading faults by the vocabulary's table.

#include "simulator/card/faults.h"

#include <algorithm>

#include "common/nearest_name.h"
#include "common/texts.h"
#include "simulator/translated_texts.h"

namespace simulator
{

namespace
{

SIMULATOR_TEXTS(Faults)

QString nameOf(const FaultRule &rule, Faults::Exchange exchange)
{
    const QString name = QLatin1String(rule.name);
    return exchange ? exchangeName(*exchange) + QLatin1Char('-') + name : name;
}

// Those that have the fault; nothing stands for the reader as a whole.
std::vector<Faults::Exchange> exchangesOf(const FaultRule &rule)
{
    if (rule.isOfExchange())
        return {UsbExchange::LOOKUP, UsbExchange::SELECT, UsbExchange::READ};
    return {std::nullopt};
}

std::pair<const FaultRule *, Faults::Exchange> faultNamed(const QString &name)
{
    for (const FaultRule &rule : faultRules()) {
        for (const Faults::Exchange exchange : exchangesOf(rule)) {
            if (name == nameOf(rule, exchange))
                return {&rule, exchange};
        }
    }
    return {nullptr, std::nullopt};
}

QString usageOf(const QString &name, const FaultArgument &argument)
{
    switch (argument.form) {
    case FaultArgument::NONE:
        return name;
    case FaultArgument::OPTIONAL_NUMBER:
        return tr("%1 or %1=N").arg(name);
    case FaultArgument::BYTES:
        return QStringLiteral("%1=HEX").arg(name);
    case FaultArgument::NUMBER:
        break;
    }
    return QStringLiteral("%1=N").arg(name);
}

QString shortened(const QString &text)
{
    constexpr int LONGEST_QUOTE = 60;
    return text.size() <= LONGEST_QUOTE ? text : text.left(LONGEST_QUOTE) + QStringLiteral("...");
}

// How the reader on each road is called, what simulates it, and what lists its faults.
struct RoadRow {
    const char *reader;
    const char *program;
    const char *help;
};

constexpr std::array<RoadRow, ROAD_COUNT> ROADS = {{
    {QT_TR_NOOP("the reader maker's library"), QT_TR_NOOP("\"idcard-reader read --simulate\""),
     "idcard-reader read --help"},
    {QT_TR_NOOP("the reader on USB"), "idcard-virtual-reader", "idcard-virtual-reader --help"},
}};

QString unknownFault(const QString &name, const QString &text, std::optional<Road> road)
{
    QStringList names;
    for (const FaultRule &rule : road ? faultRules(*road) : faultRules()) {
        for (const Faults::Exchange exchange : exchangesOf(rule))
            names << nameOf(rule, exchange);
    }
    const QString meant = nearestName(name, names);
    if (!meant.isEmpty())
        return filledIn(tr("fault \"%1\" is not known; did you mean %2?"), shortened(text), meant);
    QStringList lists;
    for (const Road each : {Road::MAKERS_LIBRARY, Road::USB}) {
        const RoadRow &row = ROADS.at(static_cast<std::size_t>(each));
        if (road.value_or(each) == each) {
            lists << filledIn(tr("\"%1\" lists those of %2"), QLatin1String(row.help),
                              tr(row.reader));
        }
    }
    return filledIn(tr("fault \"%1\" is not known; %2"), shortened(text), lists.join(tr(", ")));
}

QString wrongFault(const FaultRule &rule, const QString &name, const QString &text)
{
    const auto *const meaning = std::find_if(rule.meanings.begin(), rule.meanings.end(),
                                             [](const char *line) { return line != nullptr; });
    return filledIn(tr("fault \"%1\" is not of the form %2: %3"), shortened(text),
                    usageOf(name, rule.argument), tr(*meaning));
}

// The reader on `road` does not have the fault, that on the other one does.
QString faultOfOtherRoad(const QString &name, Road road)
{
    const auto own = static_cast<std::size_t>(road);
    const RoadRow &other = ROADS.at(ROAD_COUNT - 1 - own);
    return filledIn(tr("%1 has no fault \"%2\"; only %3 has it: use %4"), tr(ROADS.at(own).reader),
                    name, tr(other.reader), tr(other.program));
}

bool isHexadecimalDigit(QChar character)
{
    return QStringLiteral("0123456789ABCDEFabcdef").contains(character);
}

std::optional<FaultValue> bytesIn(const QString &digits)
{
    if (digits.isEmpty() || digits.size() % 2 != 0 || digits.size() > 2 * LONGEST_FAULT_BYTES ||
        !std::all_of(digits.cbegin(), digits.cend(), isHexadecimalDigit))
        return std::nullopt;
    return FaultValue{0, QByteArray::fromHex(digits.toLatin1())};
}

std::optional<FaultValue> numberIn(const QString &typed, const FaultArgument &argument)
{
    bool isNumber = false;
    const int number = typed.toInt(&isNumber);
    const auto &refused = argument.refused;
    if (!isNumber || number < argument.minimum || number > argument.maximum ||
        std::find(refused.begin(), refused.end(), number) != refused.end())
        return std::nullopt;
    return FaultValue{number, {}};
}

// What a fault carries; nothing when that is missing, too much or out of range.
std::optional<FaultValue> valueIn(const QString &text, const FaultArgument &argument)
{
    const int equals = text.indexOf(QLatin1Char('='));
    const bool isGiven = equals >= 0;
    const QString typed = text.mid(equals + 1).trimmed();
    switch (argument.form) {
    case FaultArgument::NONE:
        return isGiven ? std::nullopt : std::make_optional<FaultValue>();
    case FaultArgument::BYTES:
        return isGiven ? bytesIn(typed) : std::nullopt;
    case FaultArgument::OPTIONAL_NUMBER:
        return isGiven ? numberIn(typed, argument) : FaultValue{argument.numberIfNone, {}};
    case FaultArgument::NUMBER:
        break;
    }
    return isGiven ? numberIn(typed, argument) : std::nullopt;
}

// Sets the fault that `text` is; the reason when it cannot be set, an empty text otherwise.
QString addFault(Faults *faults, const QString &text, std::optional<Road> road)
{
    const QString name = text.section(QLatin1Char('='), 0, 0).trimmed();
    const auto [rule, exchange] = faultNamed(name);
    if (rule == nullptr)
        return unknownFault(name, text, road);
    if (road && rule->meaning(*road) == nullptr)
        return faultOfOtherRoad(name, *road);
    const std::optional<FaultValue> value = valueIn(text, rule->argument);
    if (!value)
        return wrongFault(*rule, name, text);
    return faults->add(rule->kind, exchange, *value) ? QString()
                                                     : tr("fault \"%1\" is given twice").arg(name);
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

} // namespace

std::optional<int> Faults::number(FaultKind kind, Exchange exchange) const
{
    const auto found = m_values.find({kind, exchange});
    return found == m_values.end() ? std::nullopt : std::make_optional(found->second.number);
}

QByteArray Faults::bytes(FaultKind kind, Exchange exchange) const
{
    const auto found = m_values.find({kind, exchange});
    return found == m_values.end() ? QByteArray() : found->second.bytes;
}

QString exchangeName(UsbExchange exchange)
{
    constexpr std::array<const char *, USB_EXCHANGE_COUNT> NAMES = {"lookup", "select", "read"};
    return QLatin1String(NAMES.at(static_cast<std::size_t>(exchange)));
}

QString faultUsage(const FaultRule &rule)
{
    const QString name = QLatin1String(rule.name);
    return usageOf(rule.isOfExchange() ? QStringLiteral("E-") + name : name, rule.argument);
}

QVector<QStringList> faultHelpRows(Road road)
{
    QVector<QStringList> rows;
    for (const FaultRule &rule : faultRules(road))
        rows << QStringList{faultUsage(rule), tr(rule.meaning(road))};
    return rows;
}

QString faultExample(const FaultRule &rule)
{
    QString name = nameOf(rule, exchangesOf(rule).front());
    if (rule.argument.form == FaultArgument::BYTES)
        return name + QStringLiteral("=00");
    if (rule.argument.form != FaultArgument::NUMBER)
        return name;
    return QStringLiteral("%1=%2").arg(name).arg(std::max(rule.argument.minimum, 1));
}

std::optional<Faults> parseFaults(const QStringList &list, QString *reason)
{
    return parsed(list, std::nullopt, reason);
}

std::optional<Faults> parseFaults(const QString &text, Road road, QString *reason)
{
    if (text.trimmed().isEmpty())
        return Faults();
    return parsed(splitAt(QLatin1Char(','), text), road, reason);
}

} // namespace simulator
