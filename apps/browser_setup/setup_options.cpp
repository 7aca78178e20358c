#include "apps/browser_setup/setup_options.h"

#include <vector>

#include "apps/process/translation.h"
#include "apps/terminal/program_help.h"
#include "apps/web_sites/origin_list.h"

namespace app
{

namespace
{

IDCARD_TEXTS(BrowserSetup)

std::vector<Option> declaredOptions()
{
    return {
        Option("allow", tr("Let the pages of this site read cards, beside those that are listed "
                           "already: https and the host, and the port unless it is the usual one. "
                           "Use http only for a site on your own network that cannot offer https."))
            .value("origin", tr("a site such as https://pms.example or https://pms.example:8443"),
                   isOrigin)
            .required(),
        Option("browser", tr("In this browser: chromium, if not given, or firefox."))
            .value("name", tr("chromium or firefox"),
                   [](const QString &value) { return findBrowser(value).has_value(); })
            .needs({"allow"}),
        Option("show", tr("Show the sites and what this program has written."))
            .excludes({"allow", "browser", "renew", "remove"}),
        Option("renew",
               tr("Make the extension again for the sites that are listed, in the browsers "
                  "that have it. An upgrade of the package does that too."))
            .excludes({"allow", "browser", "remove"}),
        Option("remove", tr("Remove all that this program has written, and all sites."))
            .excludes({"allow", "browser"}),
        Option("help", tr("Show this help.")),
        Option("version", tr("Show the version.")),
    };
}

ProgramHelp programHelp()
{
    return {tr("Lets web pages read cards in the browsers of this machine: writes the list of the "
               "sites that may, makes the browser's extension for these sites, and has the browser "
               "install it. It is run by root."),
            {{ExitStatus::DONE, tr("Done as asked.")},
             {ExitStatus::PROGRAM_FAILED,
              tr("This user is not root, the list has a mistake, or a file could not be written or "
                 "removed.")},
             {ExitStatus::WRONG_USAGE, tr("Wrong usage: an unknown option or value.")}}};
}

SetupOptions optionsIn(const OptionParser &line)
{
    return {line.value("allow"), findBrowser(line.value("browser")).value_or(browsers().first()),
            line.isSet("show"), line.isSet("renew"), line.isSet("remove")};
}

} // namespace

CommandLine<SetupOptions> parseSetupArguments(const QStringList &arguments)
{
    return parseProgramArguments(OptionParser(BROWSER_SETUP_NAME, {}, declaredOptions()), arguments,
                                 QStringLiteral(IDCARD_VERSION), programHelp, optionsIn);
}

} // namespace app
