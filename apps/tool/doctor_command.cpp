// The command "doctor".

#include "apps/doctor/report.h"
#include "apps/process/standard_streams.h"
#include "apps/process/translation.h"
#include "apps/tool/commands.h"
#include "apps/tool/failure_report.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Tool)

using namespace doctor;

constexpr uid_t ROOT = 0;

Roads roadsOf(const QString &road)
{
    if (road == QLatin1String("library"))
        return Roads::LIBRARY;
    return road == QLatin1String("usb") ? Roads::USB : Roads::BOTH;
}

Environment probe(const Options &options)
{
    Environment environment;
    environment.roads = roadsOf(options.road);
    environment.versions = probeVersions();
    environment.locale = probeLocale();
    environment.configuration = readConfiguration(configurationPaths());
    environment.webPages = probeWebPages(originListPath(), ROOT);
    // Those that take child processes go first, while this process is as it was started.
    if (options.comparesService)
        environment.service = probeService();
    environment.photoDecoder = probePhotoDecoder();
    if (environment.roads != Roads::USB) {
        environment.readerLibrary = probeReaderLibrary();
        environment.pictures = probePictures();
    }
    if (environment.roads != Roads::LIBRARY) {
        environment.usb =
            probeUsb(options.isDeviceNamed ? std::optional<UsbIds>(options.device) : std::nullopt);
    }
    return environment;
}

/** What was printed by what the probes loaded and started. */
void showLogs(const Environment &environment)
{
    for (const QByteArray &log :
         {environment.photoDecoder.log, environment.readerLibrary.log, environment.pictures.log})
        printToStandardError(QString::fromLocal8Bit(log));
}

} // namespace

ExitStatus runDoctor(const Options &options, Output *output)
{
    if (roadsOf(options.road) == Roads::LIBRARY && options.isDeviceNamed) {
        const QString words = tr("--device has no meaning together with --road library, which "
                                 "finds its reader itself.\nSee \"idcard-reader doctor --help\".");
        return report(toolFailure(ToolFault::OPTIONS_CONTRADICT, words), options, output);
    }
    const Environment environment = probe(options);
    if (options.verbose)
        showLogs(environment);
    const std::vector<CheckedFinding> findings = judge(environment);
    output->write(
        options.json
            ? toReportJson(findings, environment.roads)
            : toReport(findings, environment.roads, coloursOf(output->descriptor())).toUtf8());
    switch (worstOf(findings)) {
    case Level::FINE:
        return ExitStatus::DONE;
    case Level::WARNING:
        return ExitStatus::FOUND_WARNINGS;
    case Level::FAILURE:
        break;
    }
    return ExitStatus::FOUND_FAILURES;
}

} // namespace app
