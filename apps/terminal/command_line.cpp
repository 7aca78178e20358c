#include "apps/terminal/command_line.h"

#include <algorithm>
#include <utility>

#include "apps/terminal/text_layout.h"
#include "common/nearest_name.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(CommandLine)

QString dashed(const QString &name)
{
    return QStringLiteral("--") + name;
}

/** The option in `arguments` with its dashes, without a value. */
QString asTyped(const QString &name, const QStringList &arguments)
{
    for (const QString &option : {QStringLiteral("--") + name, QStringLiteral("-") + name}) {
        for (const QString &argument : arguments) {
            if (argument.section(QLatin1Char('='), 0, 0) == option)
                return option;
        }
    }
    return QLatin1String(name.size() == 1 ? "-" : "--") + name; // one of several letters in a row
}

} // namespace

Option &Option::value(QString nameOfValue, QString whatIsRight, Check check)
{
    valueName = std::move(nameOfValue);
    wanted = std::move(whatIsRight);
    accepts = std::move(check);
    return *this;
}

Option &Option::number(QString nameOfValue, int lowest, int highest)
{
    return value(std::move(nameOfValue),
                 tr("a whole number from %1 to %2").arg(lowest).arg(highest),
                 [=](const QString &typed) { return isWholeNumber(typed, lowest, highest); });
}

Option &Option::repeatable()
{
    isRepeatable = true;
    return *this;
}

Option &Option::required()
{
    isRequired = true;
    return *this;
}

Option &Option::needs(const QStringList &names)
{
    needed = names;
    return *this;
}

Option &Option::excludes(const QStringList &names)
{
    excluded = names;
    return *this;
}

QString Option::usage() const
{
    return valueName.isEmpty() ? dashed(name)
                               : filledIn(QStringLiteral("%1 <%2>"), dashed(name), valueName);
}

bool isWholeNumber(const QString &typed, int lowest, int highest)
{
    bool isNumber = false;
    const int number = typed.toInt(&isNumber);
    return isNumber && number >= lowest && number <= highest;
}

OptionParser::OptionParser(QString call, QString argument, std::vector<Option> options,
                           Phrases phrases)
    : m_call(std::move(call)), m_argument(std::move(argument)), m_options(std::move(options)),
      m_phrases(std::move(phrases))
{
    for (const Option &option : m_options) {
        QStringList names{option.name};
        m_names << option.name;
        if (option.name == QLatin1String("help"))
            names.prepend(QStringLiteral("h"));
        m_parser.addOption(QCommandLineOption(names, option.meaning, option.valueName));
    }
}

void OptionParser::acceptOneDash()
{
    m_parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
}

QString OptionParser::parse(const QStringList &arguments)
{
    const bool isUnderstood = m_parser.parse(QStringList{m_call} + arguments);
    QString problem = problemOfUnknown(arguments);
    if (problem.isEmpty() && !isUnderstood)
        problem = m_parser.errorText();
    const bool isToRun = !isSet("help") && !isSet("version");
    if (problem.isEmpty() && isToRun)
        problem = problemOfArguments();
    if (problem.isEmpty() && isToRun)
        problem = problemOfOptions();
    if (problem.isEmpty() && isToRun)
        problem = problemOfEncoding(arguments);
    return problem.isEmpty() ? QString() : refusal(problem);
}

QString OptionParser::refusal(const QString &problem) const
{
    return problem + QLatin1Char('\n') + m_phrases.seeHelp.arg(m_call + QStringLiteral(" --help"));
}

std::optional<int> OptionParser::number(const QString &name) const
{
    return isSet(name) ? std::make_optional(m_parser.value(name).toInt()) : std::nullopt;
}

QString OptionParser::usage() const
{
    QStringList words{m_call};
    if (!m_argument.isEmpty())
        words << m_argument;
    for (const Option &option : m_options) {
        if (!option.isRequired)
            continue;
        const QStringList ways = waysToGive(option);
        const QString usage = ways.join(QStringLiteral(" | "));
        words << (ways.size() > 1 ? QStringLiteral("(%1)").arg(usage) : usage);
    }
    return (words << tr("[options]")).join(QLatin1Char(' '));
}

QVector<QStringList> OptionParser::helpRows() const
{
    QVector<QStringList> rows;
    for (const Option &option : m_options) {
        const bool isHelp = option.name == QLatin1String("help");
        rows << QStringList{QLatin1String(isHelp ? "-h, " : "") + option.usage(), option.meaning};
    }
    return rows;
}

QString OptionParser::problemOfUnknown(const QStringList &arguments) const
{
    if (m_parser.unknownOptionNames().isEmpty())
        return {};
    const QString unknown = m_parser.unknownOptionNames().constFirst();
    const QString typed = printable(asTyped(unknown, arguments));
    const QString meant = nearestName(unknown, m_names);
    return meant.isEmpty() ? filledIn(m_phrases.noOption, subject(), typed)
                           : filledIn(m_phrases.noOptionButThis, subject(), typed, dashed(meant));
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
        return filledIn(tr("%1 needs a %2: \"%3\"."), subject(), m_argument, usage());
    return {};
}

QString OptionParser::problemOfOptions() const
{
    for (const Option &option : m_options) {
        if (isSet(option.name)) {
            QString problem = problemOf(option);
            if (!problem.isEmpty())
                return problem;
        } else if (option.isRequired && excluderOf(option) == nullptr) {
            return filledIn(tr("%1 needs %2."), subject(), waysToGive(option).join(tr(" or ")));
        }
    }
    return {};
}

QString OptionParser::problemOfEncoding(const QStringList &arguments)
{
    const QStringList lost = arguments.filter(QChar(QChar::ReplacementCharacter));
    return lost.isEmpty() ? QString()
                          : tr("%1 is not written in the encoding of the locale.")
                                .arg(printable(lost.first()));
}

QString OptionParser::problemOf(const Option &option) const
{
    const QString name = dashed(option.name);
    if (!option.valueName.isEmpty() && !option.isRepeatable &&
        m_parser.values(option.name).size() > 1)
        return tr("%1 can be given only once.").arg(name);
    if (!option.needed.isEmpty() && std::none_of(option.needed.begin(), option.needed.end(),
                                                 [this](const QString &o) { return isSet(o); })) {
        return filledIn(tr("%1 only has a meaning together with --%2."), name,
                        option.needed.join(tr(" or --")));
    }
    if (const Option *const excluder = excluderOf(option)) {
        return filledIn(tr("%1 has no meaning together with %2."), name, dashed(excluder->name));
    }
    for (const QString &value : m_parser.values(option.name)) {
        QString problem = problemOfValue(option, value);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

QString OptionParser::problemOfValue(const Option &option, const QString &value) const
{
    const QString name = dashed(option.name);
    if (value.trimmed().isEmpty() && !m_phrases.noValue.isEmpty())
        return filledIn(m_phrases.noValue, name, option.usage());
    return !option.accepts || option.accepts(value)
               ? QString()
               : filledIn(m_phrases.wrongValue, name, option.wanted, printable(value));
}

const Option *OptionParser::excluderOf(const Option &option) const
{
    const auto found = std::find_if(m_options.begin(), m_options.end(), [&](const Option &other) {
        return isSet(other.name) && other.excluded.contains(option.name);
    });
    return found == m_options.end() ? nullptr : &*found;
}

/** How an option is written, and then those that can stand in its place. */
QStringList OptionParser::waysToGive(const Option &option) const
{
    QStringList ways{option.usage()};
    for (const Option &other : m_options) {
        if (other.excluded.contains(option.name))
            ways << other.usage();
    }
    return ways;
}

} // namespace app
