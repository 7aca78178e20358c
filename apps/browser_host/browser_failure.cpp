#include "apps/browser_host/browser_failure.h"

#include "apps/process/translation.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Browser)

} // namespace

const std::vector<BrowserFaultEntry> &browserFaultCatalogue()
{
    static const std::vector<BrowserFaultEntry> entries = {
        {BrowserFault::EXTENSION_UNKNOWN, "BROWSER_EXTENSION_UNKNOWN",
         QT_TR_NOOP("The browser's extension is not the one that reads cards."),
         QT_TR_NOOP("Install the extension and idcard-reader-browser of the same version."),
         ExitStatus::WRONG_USAGE},
        {BrowserFault::REQUEST_WRONG, "BROWSER_REQUEST_WRONG",
         QT_TR_NOOP("The page's request is wrong."),
         QT_TR_NOOP(
             "Correct the page: a request has the keys include, timeout and language alone."),
         ExitStatus::WRONG_USAGE},
        {BrowserFault::LIST_REFUSED, "BROWSER_LIST_REFUSED",
         QT_TR_NOOP("The list of the sites that may read cards cannot be used."),
         QT_TR_NOOP("Ask the administrator to correct the list."), ExitStatus::PROGRAM_FAILED},
        {BrowserFault::ORIGIN_NOT_LISTED, "BROWSER_ORIGIN_NOT_LISTED",
         QT_TR_NOOP("This site may not read cards here."),
         QT_TR_NOOP("Ask the administrator to allow the site, if it is to read cards."),
         ExitStatus::PROGRAM_FAILED},
        {BrowserFault::TOOL_NOT_STARTED, "BROWSER_TOOL_NOT_STARTED",
         QT_TR_NOOP("The program that reads cards could not be started."),
         QT_TR_NOOP("Install idcard-reader-tools again."), ExitStatus::PROGRAM_FAILED},
        {BrowserFault::TOOL_BROKEN, "BROWSER_TOOL_BROKEN",
         QT_TR_NOOP("The program that reads cards failed without saying why."),
         QT_TR_NOOP("Read once more; if it happens again, run \"idcard-reader doctor\" on this "
                    "machine."),
         ExitStatus::PROGRAM_FAILED},
        {BrowserFault::TOOL_HANGS, "BROWSER_TOOL_HANGS",
         QT_TR_NOOP("The program that reads cards did not end in time."),
         QT_TR_NOOP("Unplug the reader, plug it in again and read once more."),
         ExitStatus::READ_TIMED_OUT},
        {BrowserFault::ANSWER_TOO_LONG, "BROWSER_ANSWER_TOO_LONG",
         QT_TR_NOOP("The card's data is more than a browser takes."),
         QT_TR_NOOP("Ask for less: leave out the pictures, or the photo."),
         ExitStatus::PROGRAM_FAILED},
    };
    return entries;
}

Failure browserFailure(BrowserFault fault, const QString &cause)
{
    const BrowserFaultEntry &entry = browserFaultCatalogue().at(static_cast<std::size_t>(fault));
    return {std::nullopt,
            QString::fromLatin1(entry.name),
            tr(entry.headline),
            cause,
            tr(entry.remedy),
            entry.exitStatus,
            {}};
}

} // namespace app
