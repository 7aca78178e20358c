#pragma once

// The command line: what it may hold, what it says, and the help texts.

#include <optional>

#include <QString>
#include <QStringList>

namespace app
{

enum class Command { Read, Watch, Render, Cards };

struct Options {
    Command command = Command::Read;
    bool json = false;
    bool force = false;
    bool verbose = false;
    QString card;         ///< what to render: name of a built-in card or path of a description
    QString outFolder;    ///< empty: write no files
    QStringList simulate; ///< cards for the simulator; empty: use the reader
    QString faults;
    int waitSeconds = 0;
    int intervalMs = 500;
    std::optional<int> count;
};

/** Exactly one of the three is set. */
struct CommandLine {
    std::optional<Options> options; ///< a command to carry out
    QString text;                   ///< help or version, to be printed
    QString problem;                ///< wrong usage: what is wrong and what to do
};

/**
 * Reads the arguments that follow the program's name. Needs a QCoreApplication, as
 * QCommandLineParser does.
 */
CommandLine parseCommandLine(const QStringList &arguments);

} // namespace app
