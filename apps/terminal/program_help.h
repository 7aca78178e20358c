#pragma once

// The command line of a program without commands, and what the program says of itself when it is
// asked for help or its version.

#include <QString>
#include <QVector>

#include "apps/process/exit_status.h"
#include "apps/terminal/command_line.h"

namespace app
{

struct StatusMeaning {
    ExitStatus status;
    QString meaning;
};

struct ProgramHelp {
    QString description;
    QVector<StatusMeaning> statuses;
    QString sections = {}; ///< after the options, made by helpSection()
};

/** Empty when neither is asked for. `help` is called only when it is. */
QString askedText(const OptionParser &line, const QString &version, ProgramHelp (*help)());

/** Reads the arguments that follow the program's name. Needs a QCoreApplication. */
template <typename Options>
CommandLine<Options> parseProgramArguments(OptionParser line, const QStringList &arguments,
                                           const QString &version, ProgramHelp (*help)(),
                                           Options (*optionsIn)(const OptionParser &line))
{
    const QString problem = line.parse(arguments);
    const QString text = problem.isEmpty() ? askedText(line, version, help) : QString();
    if (problem.isEmpty() && text.isEmpty())
        return {optionsIn(line), {}, {}};
    return {{}, text, problem};
}

} // namespace app
