#pragma once

// What every result of `readIDCard` and every exit status means to a person: the one place where
// these texts are. The tables of `docs/result-codes.md` are made from them.

#include <vector>

#include <QString>

#include "apps/process/exit_status.h"

namespace app
{

struct ResultEntry {
    int code;
    const char *constant; ///< name in api/result_codes.h
    const char *summary;  ///< what happened, a sentence
    const char *cause;
    const char *remedy;
    ExitStatus exitStatus;
};

struct ExitStatusEntry {
    ExitStatus status;
    const char *meaning;
};

/**
 * All results. Code 0 has two rows: a card was read (`ExitStatus::DONE`), and the call returned 0
 * without filling a record (`ExitStatus::NOTHING_READ`).
 */
const std::vector<ResultEntry> &resultCatalogue();

/** All exit statuses, ascending. */
const std::vector<ExitStatusEntry> &exitStatusCatalogue();

/**
 * The row of a result of `readIDCard`; `recordFilled` decides between the two rows of code 0. Null
 * for a number that is not one of its results.
 */
const ResultEntry *findResult(int code, bool recordFilled);

/** `text` of a catalogue in the user's language. */
QString resultText(const char *text);

} // namespace app
