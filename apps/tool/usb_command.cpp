// The command "usb", which is "read --road usb" too.

#include <QElapsedTimer>
#include <QFileInfo>

#include "apps/card/raw_record.h"
#include "apps/card/record_decoder.h"
#include "apps/process/standard_streams.h"
#include "apps/process/translation.h"
#include "apps/reading/reader_choice.h"
#include "apps/reading/usb_list.h"
#include "apps/reading/usb_reading.h"
#include "apps/results/usb_catalogue.h"
#include "apps/tool/card_delivery.h"
#include "apps/tool/commands.h"
#include "apps/tool/failure_report.h"
#include "apps/tool/reading_limits.h"
#include "apps/tool/simulator_setup.h"
#include "apps/tool/verbose.h"
#include "apps/tool/waiting.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Tool)

/** The file of --raw. */
class RawFile
{
public:
    explicit RawFile(const Options &options)
        : m_file(options.rawFile), m_existing(existingFiles(options))
    {
    }

    /** Why it could not be written, as far as is known now. */
    std::optional<Failure> obstacle() const
    {
        if (m_file.filePath().isEmpty())
            return std::nullopt;
        return fileFailure(obstacleTo(m_file.path(), {m_file.fileName()}, m_existing));
    }

    /** Writes it if it was requested; returns why it was not written. */
    std::optional<Failure> write(const QByteArray &record, const Options &options) const
    {
        if (m_file.filePath().isEmpty())
            return std::nullopt;
        auto failure =
            fileFailure(writeFileSet(m_file.path(), {{m_file.fileName(), record}}, m_existing));
        if (!failure)
            tellIfVerbose(options, tr("Kept the record in %1.").arg(m_file.filePath()));
        return failure;
    }

private:
    QFileInfo m_file;
    ExistingFiles m_existing;
};

ReaderChoice chosenReader(const Options &options)
{
    return options.isDeviceNamed ? ReaderChoice{options.device, std::nullopt} : onlyReaderOnBus();
}

ExitStatus listDevices(const Options &options, Output *output)
{
    const UsbDevices list = listUsbDevices();
    if (list.code != 0) {
        const ResultEntry *const entry = findUsbResult(list.code);
        return report(resultFailure(*entry), options, output);
    }
    if (list.devices.isEmpty())
        printMessage(emptyListNote());
    output->write(options.json ? toJson(list.devices) : toTable(list.devices).toUtf8());
    return ExitStatus::DONE;
}

} // namespace

ExitStatus runUsb(const Options &options, Output *output)
{
    if (options.list)
        return listDevices(options, output);

    limitReadings(options, *output);
    const SimulatorProblem problem = prepareSimulatorPhotos(options);
    if (problem)
        return report(problem, options, output);
    const RawFile raw(options);
    std::optional<Failure> obstacle = obstacleToSaving(options);
    if (!obstacle)
        obstacle = raw.obstacle();
    if (obstacle)
        return report(*obstacle, options, output);
    const ReaderChoice reader = chosenReader(options);
    if (reader.failure)
        return report(*reader.failure, options, output);

    QElapsedTimer time;
    time.start();
    UsbOutcome outcome;
    lookWithin(options.waitSeconds, [&] {
        outcome = readOverUsb(*reader.ids);
        return outcome.exitStatus();
    });
    tellIfVerbose(
        options,
        tr("Reading ended after %1 ms with the code %2.").arg(time.elapsed()).arg(outcome.code));
    if (outcome.exitStatus() != ExitStatus::DONE)
        return report(failedLook(failureOf(outcome)), options, output);

    printRecordWarnings(checkRawRecord(outcome.record).warnings);
    const std::optional<Failure> notKept = raw.write(outcome.record, options);
    if (notKept)
        printMessage(notKept->words);
    return deliverRecord(outcome.record, {outcome.prints, Road::USB, notKept}, options, output);
}

} // namespace app
