// idcard-browser-setup: lets web pages read cards in the browsers of this machine.

#include <QCoreApplication>
#include <QDir>

#include <sys/stat.h>
#include <unistd.h>

#include "apps/browser_setup/browser_setup.h"
#include "apps/browser_setup/setup_options.h"
#include "apps/process/child_process.h"
#include "apps/process/locale.h"
#include "apps/process/output.h"
#include "apps/process/program_name.h"
#include "apps/process/standard_streams.h"
#include "apps/process/translation.h"
#include "apps/web_sites/browser_files.h"
#include "apps/web_sites/origin_list.h"
#include "common/texts.h"

namespace
{

using namespace app;

IDCARD_TEXTS(BrowserSetup)

constexpr uid_t ROOT = 0;

SetupPlaces places()
{
    SetupPlaces places;
    places.originList = originListPath();
    places.shipped = QDir::cleanPath(QDir(QCoreApplication::applicationDirPath())
                                         .filePath(QStringLiteral(IDCARD_BROWSER_FILES)));
    places.browserProgram = QStringLiteral("chromium");
    return places;
}

/** What this program cannot do itself. */
QString leftToDo(const Browser &browser)
{
    if (browser.isFirefox)
        return tr(
            "Start Firefox again. Only one that comes from Debian takes an extension from this "
            "machine that its maker has not signed.\n");
    QString text =
        tr("Load the site's page again in a browser that is open. One that is closed takes "
           "some hours from its next start to speak to a further site; give the same "
           "command again while it is open.\n"
           "Other browsers of Chromium's family look below other folders, such as "
           "/etc/opt/chrome or /etc/opt/edge: copy the two files there that --show "
           "names for chromium.\n");
    for (const QString &file : rivalPolicies(browser))
        text += tr("%1 sets the policy ExtensionSettings too, and the browser takes that of one "
                   "file alone: put the entry of this program's policy there.\n")
                    .arg(file);
    return text;
}

QString carryOut(const SetupOptions &options)
{
    if (::geteuid() != ROOT)
        return tr("Only root can do that: run it with sudo.");
    if (options.remove)
        return removeSites(places());
    return options.renew ? renewExtensions(places())
                         : allowSite(options.allow, options.browser, places());
}

ExitStatus run(const SetupOptions &options, Output *output)
{
    if (options.show) {
        output->write(shownSetup(places(), ROOT).toUtf8());
        return ExitStatus::DONE;
    }
    const QString problem = carryOut(options);
    if (!problem.isEmpty()) {
        printMessage(problem);
        return ExitStatus::PROGRAM_FAILED;
    }
    if (!options.allow.isEmpty())
        output->write(leftToDo(options.browser).toUtf8());
    return ExitStatus::DONE;
}

ExitStatus serve(const QStringList &arguments, Output *output)
{
    translateApplication();
    const CommandLine<SetupOptions> line = parseSetupArguments(arguments);
    return line.options ? run(*line.options, output) : answer(line.problem, line.text, output);
}

} // namespace

int main(int argc, char **argv)
{
    ::umask(S_IWGRP | S_IWOTH); // browsers run as their users, who look into the folders made here
    setProgramName(BROWSER_SETUP_NAME);
    Output output;
    installMessageHandler();
    learnHowChildrenEnd();
    useEncodingOfLocale();
    const QStringList arguments = argumentsOf(argc, argv);
    const QCoreApplication application(argc, argv);
    const ExitStatus status = serve(arguments, &output);
    return static_cast<int>(closedWith(status, &output));
}
