#pragma once

// A failure of the tool as programs get it: the results of both roads from their catalogues, and
// what fails in the tool itself from `tool_faults.h`.

#include <QString>
#include <QStringList>

#include "apps/process/error_object.h"
#include "apps/reading/card_reader.h"
#include "apps/reading/usb_reading.h"
#include "apps/results/result_catalogue.h"
#include "apps/results/tool_faults.h"

namespace app
{

/** `words` say in one or two sentences what failed and with which value: they are the cause. */
Failure toolFailure(ToolFault fault, const QString &words);

/** As `toolFailure`, for a cause that needs headline and remedy to be understood. */
Failure explainedToolFailure(ToolFault fault, const QString &cause);

/** Of a raw record whose texts the decoder of its kind refused. */
Failure undecodedTextFailure();

Failure resultFailure(const ResultEntry &entry);

/** A result of a library with a better cause and remedy than its code has. */
struct Explanation {
    QString cause;
    QString remedy;
    QStringList commands; ///< of the remedy
};

Failure explainedBy(const Explanation &explanation, Failure failure);

/** Of a reading that gave no card. */
Failure failureOf(const ReadOutcome &outcome);
Failure failureOf(const UsbOutcome &outcome);

} // namespace app
