// idcard-viewer, the window program: takes the command line, opens the window and ends in good
// order.

#include <array>

#include <QApplication>
#include <QSessionManager>

#include "apps/process/child_process.h"
#include "apps/process/core_dumps.h"
#include "apps/process/interruption.h"
#include "apps/process/locale.h"
#include "apps/process/output.h"
#include "apps/process/program_name.h"
#include "apps/process/readable_notifier.h"
#include "apps/process/standard_streams.h"
#include "apps/process/translation.h"
#include "apps/viewer/main_window.h"

namespace
{

using app::ExitStatus;

// Qt takes its own arguments out of the ones it gets; this program's are not among them.
std::array<char, 14> programName = {"idcard-viewer"};
std::array<char *, 2> qtArguments = {programName.data(), nullptr};
int qtArgumentCount = 1;

app::CommandLine<viewer::ViewerOptions> commandLineOf(const QStringList &arguments)
{
    QCoreApplication application(qtArgumentCount, qtArguments.data());
    app::translateApplication();
    return viewer::parseCommandLine(QLatin1String(programName.data()), arguments);
}

/** By itself, Qt closes the window also when a session is only saved or its end is called off, and
 * has it begun again with an option that this program does not have. */
void takePartInSession(const QStringList &arguments)
{
    QGuiApplication::setFallbackSessionManagementEnabled(false);
    QObject::connect(qApp, &QGuiApplication::saveStateRequest,
                     [arguments](QSessionManager &session) {
                         session.setRestartCommand(
                             QStringList(QCoreApplication::applicationFilePath()) + arguments);
                     });
}

ExitStatus showWindow(const viewer::ViewerOptions &options, const QStringList &arguments)
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(qtArgumentCount, qtArguments.data());
    QCoreApplication::setOrganizationName(QStringLiteral("idcard-reader"));
    const QString language = viewer::ViewerSettings::load().language;
    if (!language.isEmpty())
        app::chooseLanguage(QLocale(language));
    app::translateApplication();
    // By which Wayland's desktops find the entry in the menu, and with it the icon.
    QGuiApplication::setDesktopFileName(QLatin1String(programName.data()));
    takePartInSession(arguments);
    app::catchInterruption(ExitStatus::DONE);
    const app::ReadableNotifier interruption(app::interruptionDescriptor(),
                                             [] { QApplication::quit(); });

    viewer::MainWindow window(options);
    window.show();
    QApplication::exec();
    window.close(); // before a reading that is under way is waited for
    QCoreApplication::processEvents();
    return ExitStatus::DONE;
}

ExitStatus serve(const QStringList &arguments, app::Output *output)
{
    const app::CommandLine<viewer::ViewerOptions> line = commandLineOf(arguments);
    if (line.options)
        return showWindow(*line.options, arguments);
    return app::answer(line.problem, line.text, output);
}

} // namespace

int main(int argc, char **argv)
{
    app::forbidCoreDumps();
    app::setProgramName(programName.data());
    app::Output output;
    app::installMessageHandler();
    app::learnHowChildrenEnd();
    app::useEncodingOfLocale();
    const ExitStatus status = serve(app::argumentsOf(argc, argv), &output);
    return static_cast<int>(app::closedWith(status, &output));
}
