#pragma once

// What fails between a web page and the tool: the one place where these texts are.

#include <vector>

#include "apps/process/error_object.h"

namespace app
{

enum class BrowserFault {
    EXTENSION_UNKNOWN,
    REQUEST_WRONG,
    LIST_REFUSED,
    ORIGIN_NOT_LISTED,
    TOOL_NOT_STARTED,
    TOOL_BROKEN,
    TOOL_HANGS,
    ANSWER_TOO_LONG,
};

struct BrowserFaultEntry {
    BrowserFault fault;
    const char *name;
    const char *headline;
    const char *remedy;
    ExitStatus exitStatus; ///< for a page to tell its own mistakes from those of the machine
};

/** All of them, in the order of the enumeration. */
const std::vector<BrowserFaultEntry> &browserFaultCatalogue();

/** In the language that is chosen. `cause` says in a sentence what failed and with which value. */
Failure browserFailure(BrowserFault fault, const QString &cause);

} // namespace app
