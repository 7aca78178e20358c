#include "apps/process/standard_streams.h"

#include <cstdlib>
#include <utility>

#include <QtGlobal>

#include <unistd.h>

#include "apps/process/exit_status.h"
#include "apps/process/interruption.h"
#include "apps/process/program_name.h"
#include "apps/process/translation.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Process)

bool foreignOutputShown = false;
int hiddenLogs = 0;

/** Every text that is painted asks for the same attribute, and Qt warns each time. */
bool isRepeatedAttributeWarning(const QString &message)
{
    static bool isShown = false;
    return message.startsWith(QLatin1String("Attribute Qt::")) && std::exchange(isShown, true);
}

void handleMessage(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    switch (type) {
    case QtDebugMsg:
    case QtInfoMsg:
    case QtWarningMsg: // Qt's own, on matters that no user of this program can judge
        if (foreignOutputShown && hiddenLogs == 0 && !isRepeatedAttributeWarning(message))
            printToStandardError(message + QLatin1Char('\n'));
        break;
    case QtCriticalMsg:
        printMessage(message);
        break;
    case QtFatalMsg:
        // Qt ends the process with a core dump after this; no user is helped by one.
        printMessage(message);
        printMessage(tr("Qt could not start. If there is no display here, unset DISPLAY and "
                        "WAYLAND_DISPLAY or set QT_QPA_PLATFORM=offscreen."));
        std::_Exit(static_cast<int>(ExitStatus::PROGRAM_FAILED));
    }
}

} // namespace

void showForeignOutput()
{
    foreignOutputShown = true;
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
}

void installMessageHandler()
{
    qInstallMessageHandler(handleMessage);
}

HiddenLog::HiddenLog()
{
    ++hiddenLogs;
}

HiddenLog::~HiddenLog()
{
    --hiddenLogs;
}

void printMessage(const QString &message)
{
    printToStandardError(QString::fromUtf8(messageLine(message)));
}

void printToStandardError(const QString &text)
{
    // A failure of this cannot be reported any more.
    writeUnlessInterrupted(STDERR_FILENO, text.toUtf8());
}

bool isStandardErrorTerminal()
{
    return ::isatty(STDERR_FILENO) == 1;
}

} // namespace app
