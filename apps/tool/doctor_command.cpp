// The command "doctor".

#include "apps/doctor/report.h"
#include "apps/tool/commands.h"

namespace app
{

namespace
{

using namespace doctor;

Roads roadsOf(const QString &road)
{
    if (road == QLatin1String("library"))
        return Roads::Library;
    return road == QLatin1String("usb") ? Roads::Usb : Roads::Both;
}

Environment probe(const Options &options)
{
    Environment environment;
    environment.roads = roadsOf(options.road);
    environment.versions = probeVersions();
    environment.locale = probeLocale();
    // Those that take child processes go first, while this process is as it was started.
    environment.photoDecoder = probePhotoDecoder();
    if (environment.roads != Roads::Usb) {
        environment.readerLibrary = probeReaderLibrary();
        environment.pictures = probePictures();
    }
    if (environment.roads != Roads::Library) {
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
    if (roadsOf(options.road) == Roads::Library && options.isDeviceNamed) {
        tell(QStringLiteral("--device has no meaning together with --road library, which finds its "
                            "reader itself.\nSee \"idcard-reader doctor --help\"."));
        return ExitStatus::WrongUsage;
    }
    const Environment environment = probe(options);
    if (options.verbose)
        showLogs(environment);
    const std::vector<CheckedFinding> findings = judge(environment);
    output->write(options.json ? toReportJson(findings, environment.roads)
                               : toReport(findings, environment.roads).toUtf8());
    switch (worstOf(findings)) {
    case Level::Fine:
        return ExitStatus::Done;
    case Level::Warning:
        return ExitStatus::FoundWarnings;
    case Level::Failure:
        break;
    }
    return ExitStatus::FoundFailures;
}

} // namespace app
