#include "apps/reading/failure.h"

#include "apps/process/translation.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Messages)

/** Two sentences, the second of which may be empty. What ends with a command is a line. */
QString joined(const QString &first, const QString &second)
{
    if (second.isEmpty())
        return first;
    return first.contains(QLatin1Char('\n')) ? first + QLatin1Char('\n') + second
                                             : filledIn(tr("%1 %2"), first, second);
}

} // namespace

Failure toolFailure(ToolFault fault, const QString &words)
{
    const ToolFaultEntry &entry = findToolFault(fault);
    return {std::nullopt, QString::fromUtf8(entry.name), resultText(entry.headline),
            words,        resultText(entry.remedy),      entry.exitStatus,
            words};
}

Failure explainedToolFailure(ToolFault fault, const QString &cause)
{
    Failure failure = toolFailure(fault, cause);
    failure.words =
        terminalText({failure.headline, {remedyLine(failure.remedy), causeLine(cause)}});
    return failure;
}

Failure undecodedTextFailure()
{
    const QString words = tr("The card's text could not be decoded: the sex code of a foreigner's "
                             "card must be 0, 1, 2 or 9. Read the card once more.");
    return toolFailure(ToolFault::TEXT_NOT_DECODED, words);
}

Failure resultFailure(const ResultEntry &entry)
{
    return {entry.code,
            QString::fromUtf8(entry.constant),
            resultText(entry.summary),
            resultText(entry.cause),
            joined(resultText(entry.remedy), moreAbout(entry.exitStatus)),
            entry.exitStatus,
            terminalText(messageOf(entry))};
}

Failure explainedBy(const Explanation &explanation, Failure failure)
{
    Message message{failure.headline};
    message.lines << remedyLine(explanation.remedy);
    for (const QString &command : explanation.commands)
        message.lines << QStringLiteral("      ") + command;
    message.lines << causeLine(explanation.cause);
    if (failure.code)
        message.lines << codeLine(*failure.code, failure.name);
    message.lines << moreAbout(failure.exitStatus);
    failure.cause = explanation.cause;
    failure.remedy = (QStringList(explanation.remedy) + explanation.commands).join('\n');
    failure.remedy = joined(failure.remedy, moreAbout(failure.exitStatus));
    failure.words = terminalText(message);
    return failure;
}

namespace
{

/** `entry` is null for a code that is in no catalogue. */
Failure failureOf(int code, const ResultEntry *entry, const QString &words)
{
    Failure failure =
        entry == nullptr ? toolFailure(ToolFault::UNKNOWN_CODE, words) : resultFailure(*entry);
    failure.code = code;
    failure.words = words;
    return failure;
}

} // namespace

Failure failureOf(const ReadOutcome &outcome)
{
    return failureOf(outcome.code, findResult(outcome.code, outcome.card.has_value()),
                     explain(outcome));
}

Failure failureOf(const UsbOutcome &outcome)
{
    const std::optional<ResultEntry> entry = resultOf(outcome);
    return failureOf(outcome.code, entry ? &*entry : nullptr, explain(outcome));
}

} // namespace app
