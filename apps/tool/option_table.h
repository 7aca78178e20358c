#pragma once

// The commands and their options, from which the parser and the help texts are made.

#include <vector>

#include "apps/terminal/command_line.h"
#include "apps/tool/commands.h"
#include "apps/tool/options.h"

namespace app
{

/** The one of Qt's application objects that must be there when a command runs. */
enum class Application {
    NONE, ///< nor may there be any: what may end a process is tried in children
    CORE,
    GUI, ///< the library paints pictures
};

/** By which road a command reads from a reader. */
enum class CommandRoad {
    NONE, ///< from none
    ANY,  ///< --road decides
    USB,
};

struct CommandRow {
    const char *name;
    ExitStatus (*run)(const Options &options, Output *output);
    Application application;
    bool hasSimulator; ///< may load the simulator's library
    /** What must follow the name, or may if it stands in brackets; null: nothing may. */
    const char *argument;
    const char *summary; ///< one line
    const char *description;
    const char *examples;           ///< lines of "command  what it does"
    QVector<ExitStatus> statuses;   ///< with which it can end
    std::vector<Option> ownOptions; ///< that not every command has
    CommandRoad road = CommandRoad::NONE;
};

const std::vector<CommandRow> &commandTable();

/** All options of a command. */
std::vector<Option> optionsOf(const CommandRow &command);

} // namespace app
