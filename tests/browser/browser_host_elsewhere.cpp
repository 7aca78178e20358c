// The browser's host with a list, an owner of the list and a tool that the environment names.

#include <QCoreApplication>

#include "apps/browser_host/browser_host.h"
#include "apps/process/locale.h"

int main(int argc, char **argv)
{
    using namespace app;
    Output output;
    const QStringList arguments = argumentsOf(argc, argv);
    const QCoreApplication application(argc, argv);
    HostSettings settings;
    settings.originList = qEnvironmentVariable("TEST_ORIGIN_LIST");
    settings.listOwner = qEnvironmentVariable("TEST_LIST_OWNER").toUInt();
    settings.tool = qEnvironmentVariable("TEST_TOOL");
    settings.graceMs = qEnvironmentVariable("TEST_GRACE_MS").toInt();
    const ExitStatus status = serveBrowser(arguments, settings, &output);
    return static_cast<int>(closedWith(status, &output));
}
