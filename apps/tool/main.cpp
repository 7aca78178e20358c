// idcard-reader, the command-line tool: takes the command line, sets the process up for the command
// and ends with its status.

#include <array>
#include <memory>
#include <optional>

#include <QCoreApplication>
#include <QGuiApplication>

#include "apps/doctor/library.h"
#include "apps/doctor/pictures.h"
#include "apps/process/child_process.h"
#include "apps/process/core_dumps.h"
#include "apps/process/display.h"
#include "apps/process/locale.h"
#include "apps/process/output.h"
#include "apps/process/standard_streams.h"
#include "apps/process/translation.h"
#include "apps/tool/commands.h"
#include "apps/tool/failure_report.h"
#include "apps/tool/option_table.h"
#include "apps/tool/options.h"
#include "apps/tool/reader_options.h"
#include "apps/tool/verbose.h"

namespace
{

using namespace app;

IDCARD_TEXTS(Tool)

// Qt takes its own arguments out of the ones it gets; this program's are not among them.
std::array<char, 14> programName = {"idcard-reader"};
std::array<char *, 2> qtArguments = {programName.data(), nullptr};
int qtArgumentCount = 1;

/** Reading a card needs a GUI application, but no display. */
void choosePlatform(const Options &options)
{
    if (chooseOffscreenWithoutDisplay())
        tellIfVerbose(options, tr("There is no display; Qt's offscreen platform is used."));
}

/** Nothing is painted of a card that comes over USB. */
Application applicationFor(const Options &options)
{
    const Application usual = options.command->application;
    return usual == Application::GUI && options.road == USB_ROAD ? Application::CORE : usual;
}

ExitStatus run(Options options, Output *output)
{
    if (options.verbose)
        showForeignOutput();
    const std::optional<Failure> refused = completeReaderOptions(&options);
    if (refused)
        return report(*refused, options, output);
    const Application needed = applicationFor(options);
    std::unique_ptr<QCoreApplication> application;
    if (needed == Application::GUI) {
        choosePlatform(options);
        application = std::make_unique<QGuiApplication>(qtArgumentCount, qtArguments.data());
    } else if (needed == Application::CORE) {
        application = std::make_unique<QCoreApplication>(qtArgumentCount, qtArguments.data());
    }
    if (application != nullptr)
        translateApplication();
    return options.command->run(options, output);
}

CommandLine<Options> commandLineOf(const QStringList &arguments)
{
    const QCoreApplication application(qtArgumentCount, qtArguments.data());
    translateApplication();
    return parseCommandLine(arguments);
}

/** What is wrong in the first line, and in the last one where the help is. */
Failure usageFailure(const QString &problem)
{
    Failure failure = toolFailure(ToolFault::WRONG_USAGE, problem);
    failure.headline = problem.section(QLatin1Char('\n'), 0, 0);
    failure.remedy = problem.section(QLatin1Char('\n'), -1);
    return failure;
}

ExitStatus serve(const QStringList &arguments, Output *output)
{
    const CommandLine<Options> line = commandLineOf(arguments);
    if (line.options)
        return run(*line.options, output);
    const bool isJsonWanted =
        arguments.contains(QStringLiteral("--json")) || arguments.contains(QStringLiteral("-json"));
    if (!line.problem.isEmpty() && isJsonWanted)
        output->write(errorLine(usageFailure(line.problem)));
    return answer(line.problem, line.text, output);
}

} // namespace

int main(int argc, char **argv)
{
    forbidCoreDumps();
    installMessageHandler();
    useEncodingOfLocale();
    const QStringList arguments = argumentsOf(argc, argv);
    doctor::workIfChild(arguments,
                        {{"library", doctor::loadLibrary}, {"pictures", doctor::describePictures}});
    Output output;
    learnHowChildrenEnd();
    const ExitStatus status = serve(arguments, &output);
    return static_cast<int>(closedWith(status, &output));
}
