// The command "usb".

#include <QElapsedTimer>
#include <QFileInfo>

#include "apps/card/message.h"
#include "apps/card/record_decoder.h"
#include "apps/card/usb_catalogue.h"
#include "apps/card/usb_list.h"
#include "apps/card/usb_reading.h"
#include "apps/process/interruption.h"
#include "apps/tool/card_delivery.h"
#include "apps/tool/commands.h"
#include "apps/tool/simulator_setup.h"
#include "apps/tool/verbose.h"
#include "apps/tool/waiting.h"

namespace app
{

namespace
{

/** The file of --raw. */
class RawFile
{
public:
    explicit RawFile(const Options &options)
        : m_file(options.rawFile), m_existing(existingFiles(options))
    {
    }

    /** Whether it could be written, as far as is known now; reports why not. */
    bool isPossible() const
    {
        return m_file.filePath().isEmpty() ||
               wentWell(obstacleTo(m_file.path(), {m_file.fileName()}, m_existing));
    }

    /** Whether it was written, or none was requested; reports why not. */
    bool write(const QByteArray &record, const Options &options) const
    {
        if (m_file.filePath().isEmpty())
            return true;
        if (!wentWell(writeFileSet(m_file.path(), {{m_file.fileName(), record}}, m_existing)))
            return false;
        tellIfVerbose(options, QStringLiteral("Kept the record in %1.").arg(m_file.filePath()));
        return true;
    }

private:
    static bool wentWell(const QString &problem)
    {
        if (!problem.isEmpty())
            printMessage(problem);
        return problem.isEmpty();
    }

    QFileInfo m_file;
    ExistingFiles m_existing;
};

ExitStatus listDevices(const Options &options, Output *output)
{
    const UsbDevices list = listUsbDevices();
    if (list.code != 0) {
        const ResultEntry *const entry = findUsbResult(list.code);
        printMessage(terminalText(messageOf(*entry)));
        return entry->exitStatus;
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

    catchInterruption(ExitStatus::READ_FAILED);
    const SimulatorProblem problem = prepareSimulatorPhotos(options);
    if (problem)
        return reported(problem);
    const RawFile raw(options);
    if (!canBeSaved(options) || !raw.isPossible())
        return ExitStatus::FILES_NOT_WRITTEN;

    QElapsedTimer time;
    time.start();
    UsbOutcome outcome;
    lookWithin(options.waitSeconds, [&] {
        outcome = readOverUsb(options.device);
        return outcome.exitStatus();
    });
    tellIfVerbose(options, QStringLiteral("Reading ended after %1 ms with the code %2.")
                               .arg(time.elapsed())
                               .arg(outcome.code));
    if (outcome.exitStatus() != ExitStatus::DONE) {
        tellFailedLook(outcome.exitStatus(), explain(outcome));
        return outcome.exitStatus();
    }

    const bool isKept = raw.write(outcome.record, options);
    const ExitStatus status =
        deliverRecord(outcome.record, outcome.prints, Road::USB, options, output);
    return status == ExitStatus::DONE && !isKept ? ExitStatus::FILES_NOT_WRITTEN : status;
}

} // namespace app
