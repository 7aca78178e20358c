#pragma once

// The commands and their options, from which the parser and the help texts are made.

#include <vector>

#include "apps/process/command_line.h"
#include "apps/tool/options.h"

namespace app
{

struct CommandRow {
    Command command;
    std::vector<Option> (*ownOptions)(Options *options); ///< that not every command has
    const char *name;
    /** What must follow the name, or may if it stands in brackets; null: nothing may. */
    const char *argument;
    const char *summary; ///< one line
    const char *description;
    const char *examples; ///< lines of "command  what it does"
};

const std::vector<CommandRow> &commandTable();

/** Whether the command has the library paint pictures, for which it needs Qt's GUI. */
bool paintsCards(Command command);

/** The options of a command; their values go into `options`. */
std::vector<Option> optionsOf(const CommandRow &command, Options *options);

} // namespace app
