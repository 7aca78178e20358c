#pragma once

// The commands and their options as data, from which the parser and the help texts are made.

#include <vector>

#include "apps/tool/options.h"

class QCommandLineParser;

namespace app
{

struct CommandRow {
    Command command;
    const char *name;
    /** What must follow the name, or may if it stands in brackets; null: nothing may. */
    const char *argument;
    const char *summary; ///< one line
    const char *description;
    const char *examples; ///< lines of "command  what it does"
};

enum class OptionId {
    Json,
    Out,
    Force,
    Device,
    List,
    Road,
    Raw,
    SimulatorPhotos,
    Wait,
    Count,
    Interval,
    Simulate,
    Fault,
    Verbose,
    Help,
    Version,
};

enum class Times { Once, Often };

struct OptionRow {
    OptionId id;
    std::vector<Command> commands;
    const char *valueName; ///< null: the option takes no value
    const char *text;
    Times times = Times::Once;
    /** Of a whole number; both 0: the value is a text. */
    int minimum = 0;
    int maximum = 0;
    std::vector<OptionId> needs = {}; ///< one of them must be given too
    bool isRequired = false;
    const char *pattern = nullptr;        ///< of a text, a regular expression
    const char *patternMeaning = nullptr; ///< in words
    std::vector<OptionId> excludes = {};  ///< none of them may be given too
};

const std::vector<CommandRow> &commandTable();

/** Whether the command has the library paint pictures, for which it needs Qt's GUI. */
bool paintsCards(Command command);

/** An option that differs between commands has several rows. */
const std::vector<OptionRow> &optionTable();

/** The option's name without the dashes. */
const char *optionName(OptionId id);

/** How the option is written: "--out <folder>". */
QString optionUsage(const OptionRow &row);

/** How a required option is written, and then those that can stand in its place. */
QStringList requiredUsage(const OptionRow &row, Command command);

/** How the command is written: "idcard-reader read [options]". */
QString commandUsage(const CommandRow &command);

bool isArgumentOptional(const CommandRow &command);

bool belongsTo(const OptionRow &row, Command command);

/** Tells the parser about the options of a command. Returns their names without the dashes. */
QStringList addOptions(const CommandRow &command, QCommandLineParser *parser);

} // namespace app
