// idcard-viewer, the window program: takes the command line, opens the window and ends in good
// order.

#include <array>
#include <cstdlib>

#include <QApplication>

#include "apps/process/core_dumps.h"
#include "apps/process/interruption.h"
#include "apps/process/locale.h"
#include "apps/process/readable_notifier.h"
#include "apps/process/standard_streams.h"
#include "apps/process/translation.h"
#include "apps/viewer/main_window.h"

namespace
{

using app::ExitStatus;

// A transfer over USB that goes well or not has ended by then; one that never ends is left alone.
constexpr int LONGEST_GOODBYE_MS = 6000;

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

ExitStatus showWindow(const viewer::ViewerOptions &options)
{
    // The library asks for this when it paints a card, which is too late then.
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(qtArgumentCount, qtArguments.data());
    app::translateApplication();
    // By which Wayland's desktops find the entry in the menu, and with it the icon.
    QGuiApplication::setDesktopFileName(QLatin1String(programName.data()));
    app::catchInterruption(ExitStatus::READ_FAILED);
    const app::ReadableNotifier interruption(app::interruptionDescriptor(),
                                             [] { QApplication::quit(); });

    viewer::MainWindow window(options);
    window.show();
    QApplication::exec();
    window.hide();
    QCoreApplication::processEvents();
    if (!window.endsWithin(LONGEST_GOODBYE_MS))
        std::_Exit(static_cast<int>(ExitStatus::READ_FAILED));
    return ExitStatus::DONE;
}

ExitStatus serve(const QStringList &arguments, app::Output *output)
{
    const app::CommandLine<viewer::ViewerOptions> line = commandLineOf(arguments);
    if (line.options)
        return showWindow(*line.options);
    return app::answer(line.problem, line.text, output);
}

} // namespace

int main(int argc, char **argv)
{
    app::forbidCoreDumps();
    app::setProgramName(programName.data());
    app::Output output;
    app::installMessageHandler();
    app::useUtf8InPlainLocale();
    const ExitStatus status = serve(app::argumentsOf(argc, argv), &output);
    return static_cast<int>(app::closedWith(status, &output));
}
