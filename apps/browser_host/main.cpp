// idcard-reader-browser-host: what a browser starts for the extension that reads cards.

#include <QCoreApplication>
#include <QDir>

#include "apps/browser_host/browser_host.h"
#include "apps/process/child_process.h"
#include "apps/process/core_dumps.h"
#include "apps/process/locale.h"
#include "apps/process/program_name.h"
#include "apps/process/standard_streams.h"
#include "apps/web_sites/origin_list.h"

int main(int argc, char **argv)
{
    using namespace app;
    forbidCoreDumps();
    setProgramName("idcard-reader-browser-host");
    Output output;
    installMessageHandler();
    learnHowChildrenEnd();
    useEncodingOfLocale();
    const QStringList arguments = argumentsOf(argc, argv);
    const QCoreApplication application(argc, argv);
    HostSettings settings;
    settings.originList = originListPath();
    settings.tool = QDir::cleanPath(
        QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral(IDCARD_TOOL)));
    const ExitStatus status = serveBrowser(arguments, settings, &output);
    return static_cast<int>(closedWith(status, &output));
}
