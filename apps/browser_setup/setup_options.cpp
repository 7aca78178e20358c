#include "apps/browser_setup/setup_options.h"

#include <vector>

#include "apps/process/exit_status.h"
#include "apps/process/text_layout.h"
#include "apps/process/translation.h"
#include "apps/web_sites/origin_list.h"
#include "common/texts.h"

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
                           "http is for a site within the house that has nothing better."))
            .value("origin", tr("a site such as https://pms.example or https://pms.example:8443"),
                   isOrigin)
            .required(),
        Option("browser", tr("In this browser: chromium, if not given, or firefox."))
            .value("name", tr("chromium or firefox"),
                   [](const QString &value) { return findBrowser(value).has_value(); })
            .needs({"allow"}),
        Option("show", tr("Show the sites and what this program has written."))
            .excludes({"allow", "browser", "remove"}),
        Option("remove", tr("Remove all that this program has written, and all sites."))
            .excludes({"allow", "browser"}),
        Option("help", tr("Show this help.")),
        Option("version", tr("Show the version.")),
    };
}

QString exitStatusSection()
{
    const auto row = [](ExitStatus status, const char *meaning) {
        return QStringList{QString::number(static_cast<int>(status)), tr(meaning)};
    };
    return helpSection(
        tr("Exit status"),
        {row(ExitStatus::DONE, QT_TR_NOOP("Done as asked.")),
         row(ExitStatus::PROGRAM_FAILED,
             QT_TR_NOOP("This user is not root, the list has a mistake, or a file "
                        "could not be written or removed.")),
         row(ExitStatus::WRONG_USAGE, QT_TR_NOOP("Wrong usage: an unknown option or value."))});
}

QString helpText(const OptionParser &parser)
{
    return tr("Usage: %1\n\n").arg(parser.usage()) +
           wrapped(tr("Lets web pages read cards in the browsers of this machine: writes the list "
                      "of the sites that may, makes the browser's extension for these sites, and "
                      "has the browser install it. It is run by root."),
                   HELP_WIDTH, 0) +
           QLatin1Char('\n') + helpSection(tr("Options"), parser.helpRows()) + exitStatusSection();
}

} // namespace

CommandLine<SetupOptions> parseSetupArguments(const QStringList &arguments)
{
    const QString program = QLatin1String(BROWSER_SETUP_NAME);
    OptionParser parser(program, {}, declaredOptions());
    const QString problem = parser.parse(arguments);
    if (!problem.isEmpty())
        return {{}, {}, problem};
    if (parser.isSet("help"))
        return {{}, helpText(parser), {}};
    if (parser.isSet("version"))
        return {
            {}, filledIn(QStringLiteral("%1 %2\n"), program, QStringLiteral(IDCARD_VERSION)), {}};
    const QString browser = parser.value("browser");
    return {SetupOptions{parser.value("allow"), findBrowser(browser).value_or(browsers().first()),
                         parser.isSet("show"), parser.isSet("remove")},
            {},
            {}};
}

} // namespace app
