#pragma once

// The commands and their options as data, from which the parser and the help texts are made.

#include <optional>
#include <vector>

#include "apps/options.h"

class QCommandLineParser;

namespace app
{

struct CommandRow {
    Command command;
    const char *name;
    const char *argument; ///< what must follow the name; null: nothing may
    const char *summary;  ///< one line
    const char *description;
    const char *examples; ///< lines of "command  what it does"
};

enum class OptionId {
    Json,
    Out,
    Force,
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
    std::optional<OptionId> needs = std::nullopt;
    bool isRequired = false;
};

const std::vector<CommandRow> &commandTable();

/** An option that differs between commands has several rows. */
const std::vector<OptionRow> &optionTable();

/** The option's name without the dashes. */
const char *optionName(OptionId id);

/** How the option is written: "--out <folder>". */
QString optionUsage(const OptionRow &row);

/** How the command is written: "idcard-reader read [options]". */
QString commandUsage(const CommandRow &command);

bool belongsTo(const OptionRow &row, Command command);

/** Tells the parser about the options of a command. */
void addOptions(const CommandRow &command, QCommandLineParser *parser);

} // namespace app
