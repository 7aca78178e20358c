#include "apps/tool/options.h"

#include <algorithm>
#include <array>
#include <vector>

#include <QCommandLineParser>
#include <QRegularExpression>

#include "apps/card/version_text.h"
#include "apps/process/unknown_option.h"
#include "apps/tool/help_text.h"
#include "apps/tool/option_table.h"

namespace app
{

namespace
{

CommandLine refused(const QString &problem, const CommandRow *command)
{
    const QString help =
        command == nullptr
            ? QStringLiteral("idcard-reader --help")
            : QStringLiteral("idcard-reader %1 --help").arg(QLatin1String(command->name));
    CommandLine line;
    line.problem = QStringLiteral("%1\nSee \"%2\".").arg(problem, help);
    return line;
}

CommandLine printed(const QString &text)
{
    CommandLine line;
    line.text = text;
    return line;
}

CommandLine readWithoutCommand(const QString &first)
{
    if (first == QLatin1String("--help") || first == QLatin1String("-h"))
        return printed(overallHelp());
    if (first == QLatin1String("--version"))
        return printed(versionText(QStringLiteral("idcard-reader")));
    if (first.startsWith(QLatin1Char('-')))
        return refused(
            QStringLiteral("The command comes before its options, and %1 is none.").arg(first),
            nullptr);
    QStringList names;
    for (const CommandRow &row : commandTable())
        names << QLatin1String(row.name);
    return refused(QStringLiteral("There is no command %1; the commands are %2.")
                       .arg(first, names.join(QStringLiteral(", "))),
                   nullptr);
}

/** Values of one command line that QCommandLineParser has taken apart. */
class Reader
{
public:
    Reader(const CommandRow &command, const QCommandLineParser &parser)
        : m_command(command), m_parser(parser)
    {
    }

    bool isSet(OptionId id) const { return times(id) > 0; }
    QStringList texts(OptionId id) const
    {
        // The parser complains when it is asked about an option of another command.
        return isSet(id) ? m_parser.values(name(id)) : QStringList();
    }
    QString text(OptionId id) const { return texts(id).value(0); }

    std::optional<int> number(OptionId id) const
    {
        return isSet(id) ? std::optional<int>(text(id).toInt()) : std::nullopt;
    }

    /** What is wrong with the values, or an empty text. */
    QString problem() const
    {
        QString wrong = problemOfArguments();
        if (!wrong.isEmpty())
            return wrong;
        for (const OptionRow &row : optionTable()) {
            if (!belongsTo(row, m_command.command))
                continue;
            if (isSet(row.id))
                wrong = problemOf(row);
            else if (row.isRequired && excluderOf(row.id) == nullptr)
                wrong =
                    QStringLiteral("%1 needs %2.")
                        .arg(QLatin1String(m_command.name),
                             requiredUsage(row, m_command.command).join(QStringLiteral(" or ")));
            if (!wrong.isEmpty())
                return wrong;
        }
        return {};
    }

private:
    qint64 times(OptionId id) const
    {
        const QStringList names = m_parser.optionNames();
        return std::count(names.begin(), names.end(), name(id));
    }

    QString problemOfArguments() const
    {
        const QString command = QLatin1String(m_command.name);
        const QStringList arguments = m_parser.positionalArguments();
        const int taken = m_command.argument == nullptr ? 0 : 1;
        if (arguments.size() > taken)
            return QStringLiteral("%1 takes no argument %2.").arg(command, arguments.at(taken));
        if (taken == 1 && !isArgumentOptional(m_command) &&
            arguments.value(0).trimmed().isEmpty()) {
            return QStringLiteral("%1 needs a %2: \"%3\".")
                .arg(command, QLatin1String(m_command.argument), commandUsage(m_command));
        }
        return {};
    }

    static QString name(OptionId id) { return QLatin1String(optionName(id)); }

    QString problemOf(const OptionRow &row) const
    {
        const QString option = QStringLiteral("--") + name(row.id);
        if (row.times == Times::Once && row.valueName != nullptr && times(row.id) > 1)
            return QStringLiteral("%1 can be given only once.").arg(option);
        if (!row.needs.empty() && std::none_of(row.needs.begin(), row.needs.end(),
                                               [this](OptionId id) { return isSet(id); })) {
            QStringList needed;
            for (const OptionId id : row.needs)
                needed << QStringLiteral("--") + name(id);
            return QStringLiteral("%1 only has a meaning together with %2.")
                .arg(option, needed.join(QStringLiteral(" or ")));
        }
        const OptionRow *const excluder = excluderOf(row.id);
        if (excluder != nullptr) {
            return QStringLiteral("%1 has no meaning together with --%2.")
                .arg(option, name(excluder->id));
        }
        for (const QString &value : texts(row.id)) {
            if (value.trimmed().isEmpty())
                return QStringLiteral("%1 needs a value: \"%2\".").arg(option, optionUsage(row));
            if (row.pattern != nullptr && !matches(row, value)) {
                return QStringLiteral("%1 takes %2, not %3.")
                    .arg(option, QLatin1String(row.patternMeaning), value);
            }
            if (row.maximum != 0 && !isNumberFor(row, value)) {
                return QStringLiteral("%1 takes a whole number from %2 to %3, not %4.")
                    .arg(option)
                    .arg(row.minimum)
                    .arg(row.maximum)
                    .arg(value);
            }
        }
        return {};
    }

    /** The given option beside which `id` has no meaning; null when there is none. */
    const OptionRow *excluderOf(OptionId id) const
    {
        const auto &rows = optionTable();
        const auto found = std::find_if(rows.begin(), rows.end(), [&](const OptionRow &row) {
            return belongsTo(row, m_command.command) && isSet(row.id) &&
                   std::count(row.excludes.begin(), row.excludes.end(), id) > 0;
        });
        return found == rows.end() ? nullptr : &*found;
    }

    static bool matches(const OptionRow &row, const QString &value)
    {
        const QRegularExpression pattern(
            QStringLiteral("\\A(?:%1)\\z").arg(QLatin1String(row.pattern)));
        return pattern.match(value).hasMatch();
    }

    static bool isNumberFor(const OptionRow &row, const QString &value)
    {
        bool isNumber = false;
        const int number = value.toInt(&isNumber);
        return isNumber && number >= row.minimum && number <= row.maximum;
    }

    const CommandRow &m_command;
    const QCommandLineParser &m_parser;
};

CommandLine readForCommand(const CommandRow &command, const QStringList &arguments)
{
    QCommandLineParser parser;
    const QStringList names = addOptions(command, &parser);
    const bool isUnderstood = parser.parse(QStringList{QLatin1String(command.name)} + arguments);
    const auto unknown = unknownOption(parser, arguments, names);
    if (unknown)
        return refused(toText(*unknown, QLatin1String(command.name)), &command);
    if (!isUnderstood)
        return refused(parser.errorText(), &command);

    const Reader reader(command, parser);
    if (reader.isSet(OptionId::Help))
        return printed(commandHelp(command));
    if (reader.isSet(OptionId::Version))
        return printed(versionText(QStringLiteral("idcard-reader")));
    const QString problem = reader.problem();
    if (!problem.isEmpty())
        return refused(problem, &command);

    Options options;
    options.command = command.command;
    options.argument = parser.positionalArguments().value(0);
    options.list = reader.isSet(OptionId::List);
    options.simulatorPhotos = reader.isSet(OptionId::SimulatorPhotos);
    options.device = parseUsbIds(reader.text(OptionId::Device)).value_or(UsbIds());
    options.isDeviceNamed = reader.isSet(OptionId::Device);
    options.road = reader.text(OptionId::Road);
    options.rawFile = reader.text(OptionId::Raw);
    options.json = reader.isSet(OptionId::Json);
    options.force = reader.isSet(OptionId::Force);
    options.verbose = reader.isSet(OptionId::Verbose);
    options.outFolder = reader.text(OptionId::Out);
    options.simulate = reader.texts(OptionId::Simulate);
    options.faults = reader.text(OptionId::Fault);
    options.waitSeconds = reader.number(OptionId::Wait).value_or(options.waitSeconds);
    options.intervalMs = reader.number(OptionId::Interval).value_or(options.intervalMs);
    options.count = reader.number(OptionId::Count);
    CommandLine line;
    line.options = options;
    return line;
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return refused(QStringLiteral("A command is missing, for instance \"idcard-reader read\"."),
                       nullptr);
    for (const CommandRow &row : commandTable()) {
        if (arguments.first() == QLatin1String(row.name))
            return readForCommand(row, arguments.mid(1));
    }
    return readWithoutCommand(arguments.first());
}

} // namespace app
