#pragma once

// What fails in the tool itself, beside the results of the library: the one place where these
// texts are. A table of `docs/result-codes.md` is made from them.

#include <vector>

#include "apps/process/exit_status.h"

namespace app
{

/** What fails in the tool itself. */
enum class ToolFault {
    WRONG_USAGE,
    SIMULATOR_NOT_LOADED,
    SIMULATION_REFUSED,
    OPTIONS_CONTRADICT,
    SEVERAL_READERS,
    CONFIGURATION_WRONG,
    FILES_NOT_WRITTEN,
    RECORD_NOT_READ,
    NOT_A_RECORD,
    TEXT_NOT_DECODED,
    INTERRUPTED,
    READ_BROKEN_OFF,
    READ_TIMED_OUT,
    UNKNOWN_CODE,
    PROGRAM_BROKEN,
};

struct ToolFaultEntry {
    ToolFault fault;
    const char *name;
    const char *headline;
    const char *remedy;
    ExitStatus exitStatus;
};

/** All of them, in the order of the enumeration. */
const std::vector<ToolFaultEntry> &toolFaultCatalogue();

const ToolFaultEntry &findToolFault(ToolFault fault);

} // namespace app
