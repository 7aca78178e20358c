#pragma once

// What a program without commands says of itself when it is asked for help or its version.

#include <QString>
#include <QVector>

#include "apps/process/command_line.h"
#include "apps/process/exit_status.h"

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
QString askedText(const OptionParser &line, const QString &program, const QString &version,
                  ProgramHelp (*help)());

} // namespace app
