#include "apps/process/command_line.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "apps/process/text_layout.h"

namespace app
{

namespace
{

constexpr int MOST_SLIPS = 2;

/** How many letters must be put in, left out or exchanged for others to make `wanted` of `typed`.
 */
int slipsBetween(const QString &typed, const QString &wanted)
{
    std::vector<int> row(static_cast<std::size_t>(wanted.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (const QChar letter : typed) {
        int diagonal = row[0]++;
        for (std::size_t at = 1; at < row.size(); ++at) {
            const int exchanged = diagonal + (letter == wanted[static_cast<int>(at) - 1] ? 0 : 1);
            diagonal = row[at];
            row[at] = std::min({exchanged, diagonal + 1, row[at - 1] + 1});
        }
    }
    return row.back();
}

QString nearest(const QString &typed, const QStringList &names)
{
    QString best;
    // As many slips as letters would make any word of it.
    int fewest = std::min(MOST_SLIPS + 1, typed.size());
    for (const QString &name : names) {
        const int slips = name.startsWith(typed) ? 1 : slipsBetween(typed, name);
        if (slips < fewest) {
            best = name;
            fewest = slips;
        }
    }
    return best;
}

QString dashed(const QString &name)
{
    return QStringLiteral("--") + name;
}

/** The option in `arguments` with its dashes, without a value. */
QString asTyped(const QString &name, const QStringList &arguments)
{
    for (const QString &dashes : {QStringLiteral("--"), QStringLiteral("-")}) {
        QString option = dashes + name;
        const auto isIt = [&option](const QString &argument) {
            return argument == option || argument.startsWith(option + QLatin1Char('='));
        };
        if (std::any_of(arguments.begin(), arguments.end(), isIt))
            return option;
    }
    return QLatin1String(name.size() == 1 ? "-" : "--") + name; // one of several letters in a row
}

} // namespace

Option::Option(const char *name, QString meaning, bool *flag)
    : m_name(QLatin1String(name)), m_meaning(std::move(meaning)), m_flag(flag)
{
}

Option &Option::value(const char *valueName, Take take)
{
    m_valueName = QLatin1String(valueName);
    m_take = std::move(take);
    return *this;
}

Option &Option::text(const char *valueName, QString *target)
{
    return value(valueName, [target](const QString &typed) {
        *target = typed;
        return QString();
    });
}

Option &Option::repeatable()
{
    m_isRepeatable = true;
    return *this;
}

Option &Option::required()
{
    m_isRequired = true;
    return *this;
}

Option &Option::needs(const QStringList &names)
{
    m_needs = names;
    return *this;
}

Option &Option::excludes(const QStringList &names)
{
    m_excludes = names;
    return *this;
}

QString Option::usage() const
{
    return m_valueName.isEmpty() ? dashed(m_name)
                                 : QStringLiteral("%1 <%2>").arg(dashed(m_name), m_valueName);
}

QString Option::takeNumber(const QString &typed, int lowest, int highest, int *number)
{
    bool isNumber = false;
    *number = typed.toInt(&isNumber);
    return isNumber && *number >= lowest && *number <= highest
               ? QString()
               : QStringLiteral("a whole number from %1 to %2").arg(lowest).arg(highest);
}

OptionParser::OptionParser(QString call, QString argument, std::vector<Option> options,
                           Phrases phrases)
    : m_call(std::move(call)), m_argument(std::move(argument)), m_options(std::move(options)),
      m_phrases(std::move(phrases))
{
    for (const Option &option : m_options) {
        QStringList names{option.m_name};
        if (option.m_name == QLatin1String("help"))
            names.prepend(QStringLiteral("h"));
        m_parser.addOption(QCommandLineOption(names, option.m_meaning, option.m_valueName));
    }
}

void OptionParser::acceptOneDash()
{
    m_parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
}

OptionParser::Request OptionParser::parse(const QStringList &arguments)
{
    const bool isUnderstood = m_parser.parse(QStringList{m_call} + arguments);
    m_problem = problemOfUnknown(arguments);
    if (m_problem.isEmpty() && !isUnderstood)
        m_problem = m_parser.errorText();
    if (!m_problem.isEmpty())
        return Request::REFUSED;
    if (isSet(QStringLiteral("help")))
        return Request::HELP;
    if (isSet(QStringLiteral("version")))
        return Request::VERSION;
    m_problem = problemOfArguments();
    if (m_problem.isEmpty())
        m_problem = problemOfOptions();
    return m_problem.isEmpty() ? Request::RUN : Request::REFUSED;
}

QString OptionParser::refusal(const QString &problem) const
{
    return problem + QLatin1Char('\n') + m_phrases.seeHelp.arg(m_call + QStringLiteral(" --help"));
}

bool OptionParser::has(const QString &name) const
{
    return std::any_of(m_options.begin(), m_options.end(),
                       [&name](const Option &option) { return option.m_name == name; });
}

QString OptionParser::usage() const
{
    QStringList words{m_call};
    if (!m_argument.isEmpty())
        words << m_argument;
    for (const Option &option : m_options) {
        if (!option.m_isRequired)
            continue;
        const QStringList ways = waysToGive(option);
        const QString usage = ways.join(QStringLiteral(" | "));
        words << (ways.size() > 1 ? QStringLiteral("(%1)").arg(usage) : usage);
    }
    return (words << QStringLiteral("[options]")).join(QLatin1Char(' '));
}

QVector<QStringList> OptionParser::helpRows() const
{
    QVector<QStringList> rows;
    for (const Option &option : m_options) {
        const bool isHelp = option.m_name == QLatin1String("help");
        rows << QStringList{QLatin1String(isHelp ? "-h, " : "") + option.usage(), option.m_meaning};
    }
    return rows;
}

QString OptionParser::helpText(const QString &description)
{
    m_parser.setApplicationDescription(description);
    return m_parser.helpText();
}

QString OptionParser::problemOfUnknown(const QStringList &arguments) const
{
    if (m_parser.unknownOptionNames().isEmpty())
        return {};
    QStringList names;
    for (const Option &option : m_options)
        names << option.m_name;
    const QString unknown = m_parser.unknownOptionNames().constFirst();
    const QString typed = printable(asTyped(unknown, arguments));
    const QString meant = nearest(unknown, names);
    return meant.isEmpty() ? m_phrases.noOption.arg(subject(), typed)
                           : m_phrases.noOptionButThis.arg(subject(), typed, dashed(meant));
}

QString OptionParser::problemOfArguments() const
{
    const QStringList given = m_parser.positionalArguments();
    const int taken = m_argument.isEmpty() ? 0 : 1;
    if (given.size() > taken)
        return QString(m_phrases.noArgument)
            .replace(QStringLiteral("%2"), subject()) // not in every phrase
            .arg(printable(given.at(taken)));
    const bool isOptional = taken == 0 || m_argument.startsWith(QLatin1Char('['));
    if (!isOptional && argument().trimmed().isEmpty())
        return QStringLiteral("%1 needs a %2: \"%3\".").arg(subject(), m_argument, usage());
    return {};
}

QString OptionParser::problemOfOptions() const
{
    for (const Option &option : m_options) {
        if (isSet(option.m_name)) {
            QString problem = problemOf(option);
            if (!problem.isEmpty())
                return problem;
        } else if (option.m_isRequired && excluderOf(option) == nullptr) {
            return QStringLiteral("%1 needs %2.")
                .arg(subject(), waysToGive(option).join(QStringLiteral(" or ")));
        }
    }
    return {};
}

QString OptionParser::problemOf(const Option &option) const
{
    const QString name = dashed(option.m_name);
    if (option.m_flag != nullptr)
        *option.m_flag = true;
    if (option.m_take && !option.m_isRepeatable && m_parser.values(option.m_name).size() > 1)
        return QStringLiteral("%1 can be given only once.").arg(name);
    if (!option.m_needs.isEmpty() && std::none_of(option.m_needs.begin(), option.m_needs.end(),
                                                  [this](const QString &o) { return isSet(o); })) {
        return QStringLiteral("%1 only has a meaning together with --%2.")
            .arg(name, option.m_needs.join(QStringLiteral(" or --")));
    }
    if (const Option *const excluder = excluderOf(option)) {
        return QStringLiteral("%1 has no meaning together with %2.")
            .arg(name, dashed(excluder->m_name));
    }
    if (!option.m_take)
        return {};
    for (const QString &value : m_parser.values(option.m_name)) {
        QString problem = problemOfValue(option, value);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

QString OptionParser::problemOfValue(const Option &option, const QString &value) const
{
    const QString name = dashed(option.m_name);
    if (value.trimmed().isEmpty() && !m_phrases.noValue.isEmpty())
        return m_phrases.noValue.arg(name, option.usage());
    const QString wanted = option.m_take(value);
    return wanted.isEmpty() ? QString() : m_phrases.wrongValue.arg(name, wanted, printable(value));
}

const Option *OptionParser::excluderOf(const Option &option) const
{
    const auto found = std::find_if(m_options.begin(), m_options.end(), [&](const Option &other) {
        return isSet(other.m_name) && other.m_excludes.contains(option.m_name);
    });
    return found == m_options.end() ? nullptr : &*found;
}

/** How an option is written, and then those that can stand in its place. */
QStringList OptionParser::waysToGive(const Option &option) const
{
    QStringList ways{option.usage()};
    for (const Option &other : m_options) {
        if (other.m_excludes.contains(option.m_name))
            ways << other.usage();
    }
    return ways;
}

} // namespace app
