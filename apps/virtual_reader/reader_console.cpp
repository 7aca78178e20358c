#include "apps/virtual_reader/reader_console.h"

#include "apps/process/translation.h"
#include "apps/terminal/text_layout.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(VirtualReader)

enum class Argument { NONE, NEEDED, OPTIONAL };

struct CommandRow {
    const char *name;
    const char *argumentName; ///< null: takes none
    Argument argument;
    const char *text;
    QString (*carryOut)(ReaderConsole *console, const QString &argument);
};

QString ok(const QString &text = {})
{
    return text.isEmpty() ? QStringLiteral("ok") : QStringLiteral("ok ") + text;
}

QString error(const QString &problem)
{
    return QStringLiteral("error: ") + problem;
}

QString withArgument(const CommandRow &row)
{
    const QString name = QLatin1String(row.name);
    return row.argumentName == nullptr
               ? name
               : filledIn(QStringLiteral("%1 %2"), name, QLatin1String(row.argumentName));
}

} // namespace

/** What the commands do. */
struct ConsoleCommands {
    static const CommandRow ROWS[];

    static QString card(ReaderConsole *console, const QString &argument)
    {
        const QString problem = console->putCard(argument);
        return problem.isEmpty() ? ok() : error(problem);
    }

    static QString take(ReaderConsole *console, const QString & /*argument*/)
    {
        console->m_reader.slot().takeCard();
        return ok();
    }

    static QString faults(ReaderConsole *console, const QString &argument)
    {
        const QString problem = console->setFaults(argument);
        return problem.isEmpty() ? ok(console->hiddenFaults()) : error(problem);
    }

    static QString unplug(ReaderConsole *console, const QString & /*argument*/)
    {
        console->m_reader.unplug();
        return ok();
    }

    static QString plug(ReaderConsole *console, const QString & /*argument*/)
    {
        console->m_reader.plugIn();
        if (console->m_reader.isPluggedIn())
            return ok();
        return error(
            tr(R"(the fault "unplugged" keeps the reader away; take it back with "faults")"));
    }

    static QString status(ReaderConsole *console, const QString & /*argument*/)
    {
        simulator::VirtualReader &reader = console->m_reader;
        const bool hasCard = reader.slot().card() != nullptr;
        return ok(
            filledIn(QStringLiteral("%1, %2, card: %3, faults: %4"),
                     QLatin1String(reader.isPluggedIn() ? "plugged in" : "unplugged"),
                     QLatin1String(console->m_isAttached() ? "attached" : "not attached"),
                     hasCard ? console->m_card : QStringLiteral("none"),
                     console->m_faults.isEmpty() ? QStringLiteral("none") : console->m_faults));
    }

    static QString help(ReaderConsole *console, const QString &argument);

    static QString quit(ReaderConsole *console, const QString & /*argument*/)
    {
        console->m_wantsToQuit = true;
        return ok();
    }

    static QStringList usages()
    {
        QStringList list;
        for (const QStringList &row : consoleCommandRows())
            list << row[0];
        return list;
    }
};

const CommandRow ConsoleCommands::ROWS[] = {
    {"card", "NAME|FILE", Argument::NEEDED,
     QT_TR_NOOP("Put a card on the reader, instead of the one that is there."), card},
    {"take", nullptr, Argument::NONE, QT_TR_NOOP("Take the card off the reader."), take},
    {"faults", "[LIST]", Argument::OPTIONAL,
     QT_TR_NOOP("Set the faults that apply besides the card's own, instead of the present ones; "
                "none if the list is left out."),
     faults},
    {"unplug", nullptr, Argument::NONE, QT_TR_NOOP("Unplug the reader; its client loses it."),
     unplug},
    {"plug", nullptr, Argument::NONE,
     QT_TR_NOOP("Plug the reader in again; it can then be attached."), plug},
    {"status", nullptr, Argument::NONE, QT_TR_NOOP("Report the state of the reader."), status},
    {"help", nullptr, Argument::NONE, QT_TR_NOOP("List the commands."), help},
    {"quit", nullptr, Argument::NONE, QT_TR_NOOP("End the program."), quit},
};

QString ConsoleCommands::help(ReaderConsole * /*console*/, const QString & /*argument*/)
{
    return ok(usages().join(QStringLiteral(", ")));
}

ReaderConsole::ReaderConsole(simulator::VirtualReader &reader, std::function<bool()> isAttached)
    : m_reader(reader), m_isAttached(std::move(isAttached))
{
}

QString ReaderConsole::answer(const QString &line)
{
    const QString command = line.trimmed();
    if (command.isEmpty())
        return {};
    int end = 0;
    while (end < command.size() && !command.at(end).isSpace())
        ++end;
    const QString name = command.left(end);
    const QString argument = command.mid(end).trimmed();
    for (const CommandRow &row : ConsoleCommands::ROWS) {
        if (name != QLatin1String(row.name))
            continue;
        if (row.argument == Argument::NONE && !argument.isEmpty())
            return error(printable(
                filledIn(tr(R"(%1 takes no argument "%2"; give "%1" alone)"), name, argument)));
        if (row.argument == Argument::NEEDED && argument.isEmpty())
            return error(filledIn(tr("%1 needs an argument: \"%2\""), name, withArgument(row)));
        // One line, even if names and files hold line feeds.
        return printable(row.carryOut(this, argument));
    }
    constexpr int LONGEST_QUOTE = 60;
    return error(
        printable(filledIn(tr("there is no command \"%1\"; the commands are %2"),
                           name.left(LONGEST_QUOTE), ConsoleCommands::usages().join(tr(", ")))));
}

QString ReaderConsole::putCard(const QString &nameOrFile)
{
    QString problem;
    if (m_reader.slot().putCard(nameOrFile, simulator::PutAs::DESCRIBED, &problem))
        m_card = nameOrFile;
    return problem;
}

QString ReaderConsole::setFaults(const QString &list)
{
    QString problem;
    if (m_reader.slot().setFaults(list, &problem))
        m_faults = list.trimmed();
    return problem;
}

QString ReaderConsole::hiddenFaults() const
{
    QStringList hidden;
    if (m_reader.failsToOpen())
        hidden << QStringLiteral("open-fails");
    if (m_reader.deniesAccess())
        hidden << QStringLiteral("permission-denied");
    if (m_reader.isClaimedElsewhere())
        hidden << QStringLiteral("claimed-elsewhere");
    return hidden.isEmpty() ? QString()
                            : tr("but no client will see %1: who may open or claim the reader is "
                                 "decided by the machine that it is attached to")
                                  .arg(hidden.join(tr(", ")));
}

QVector<QStringList> consoleCommandRows()
{
    QVector<QStringList> rows;
    for (const CommandRow &row : ConsoleCommands::ROWS)
        rows << QStringList{withArgument(row), tr(row.text)};
    return rows;
}

} // namespace app
