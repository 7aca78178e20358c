// The command "watch".

#include <functional>

#include <QCoreApplication>

#include "apps/card/card_output.h"
#include "apps/process/interruption.h"
#include "apps/process/program_name.h"
#include "apps/process/standard_streams.h"
#include "apps/process/translation.h"
#include "apps/reading/reader_choice.h"
#include "apps/reading/reader_presence.h"
#include "apps/tool/card_delivery.h"
#include "apps/tool/commands.h"
#include "apps/tool/diagnosis.h"
#include "apps/tool/failure_report.h"
#include "apps/tool/reading_limits.h"
#include "apps/tool/simulator_setup.h"
#include "apps/tool/verbose.h"
#include "apps/tool/watch_events.h"
#include "reader/usb_codes.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Tool)

/**
 * Looks at the reader on the USB bus: the named one, or else the only one once there is one. Until
 * a device has answered as a reader does, each look chooses again: it may be something else.
 */
class UsbReader
{
public:
    explicit UsbReader(const Options &options) : m_isNamed(options.isDeviceNamed)
    {
        if (m_isNamed)
            m_ids = options.device;
    }

    Look look()
    {
        if (!m_ids) {
            const ReaderChoice choice = onlyReaderOnBus();
            if (choice.failure)
                return failedLook(stateWithout(*choice.failure), *choice.failure);
            m_ids = choice.ids;
        }
        Look look = lookOverUsb(*m_ids);
        m_hasAnswered = look.reader != ReaderState::MISSING &&
                        (m_hasAnswered || !look.failure || look.foundNoCard());
        if (!m_hasAnswered && !m_isNamed)
            m_ids.reset();
        return look;
    }

private:
    static ReaderState stateWithout(const Failure &failure)
    {
        return failure.code == USB_READER_NOT_FOUND ? ReaderState::MISSING : ReaderState::UNKNOWN;
    }

    bool m_isNamed;
    bool m_hasAnswered = false; ///< since it was plugged in
    std::optional<UsbIds> m_ids;
};

class Watch
{
public:
    using LookAtReader = std::function<Look()>;

    Watch(const Options &options, LookAtReader lookAtReader, Output *output)
        : m_options(options), m_lookAtReader(std::move(lookAtReader)), m_output(output)
    {
    }

    /** Looks at the reader until there is nothing more to do. */
    ExitStatus watchReader()
    {
        while (!isOver()) {
            look();
            pause();
        }
        return m_status;
    }

    /** Puts one card after the other on the simulator and takes it off when it was seen. */
    ExitStatus watchSimulator(SimulatorLibrary *simulator)
    {
        ExitStatus firstFailure = ExitStatus::DONE;
        for (const QString &card : m_options.simulate) {
            SimulatorProblem problem = simulator->setFaults(m_options.faults);
            if (!problem)
                problem = simulator->putCard(card);
            if (problem)
                return app::report(problem, m_options, m_output);
            const ExitStatus seen = watchOneCard();
            simulator->takeCard();
            if (isOver())
                return m_status;
            for (const ReaderChange change : m_presence.takeCard())
                follow(change, {});
            if (firstFailure == ExitStatus::DONE)
                firstFailure = seen;
        }
        return firstFailure;
    }

private:
    bool isOver() const
    {
        return isInterrupted() || m_status != ExitStatus::DONE || m_output->isReaderGone() ||
               (m_options.count && m_cards >= *m_options.count);
    }

    void pause() const
    {
        QCoreApplication::processEvents();
        if (!isOver())
            pauseFor(m_options.intervalMs, m_output->descriptor());
    }

    ExitStatus watchOneCard()
    {
        while (!isOver()) {
            const Look seen = look();
            if (!seen.foundNoCard())
                return seen.failure ? seen.failure->exitStatus : ExitStatus::DONE;
            pause();
        }
        return ExitStatus::DONE;
    }

    Look look()
    {
        limitLook();
        Look look = m_lookAtReader();
        for (const ReaderChange change : m_presence.observe(look))
            follow(change, look);
        return look;
    }

    /** A look that takes too long ends the program with what is said here in advance. */
    void limitLook() const
    {
        if (!m_options.timeoutSeconds)
            return;
        const int seconds = *m_options.timeoutSeconds;
        const Failure failure = timedOutFailure(seconds);
        const QDateTime end = QDateTime::currentDateTime().addSecs(seconds);
        app::limitReadings(static_cast<unsigned int>(seconds),
                           {messageLine(failure.words), failureLine(failure, end),
                            m_output->descriptor(), failure.exitStatus});
    }

    void follow(ReaderChange change, const Look &look)
    {
        switch (change) {
        case ReaderChange::READER_ADDED:
            writeEvent("reader-added");
            break;
        case ReaderChange::READER_REMOVED:
            writeEvent("reader-removed");
            reportMissingReader(*look.failure, m_options.events);
            break;
        case ReaderChange::READER_MISSING: // from the start, for a cause that the doctor may see
            reportMissingReader(diagnosed(*look.failure, m_options), false);
            break;
        case ReaderChange::CARD_READ:
            printRecordWarnings(look.recordWarnings);
            deliverCard(*look.card);
            break;
        case ReaderChange::CARD_REMOVED:
            writeEvent("card-removed");
            break;
        case ReaderChange::READ_FAILED:
            reportFailure(diagnosed(*look.failure, m_options));
            break;
        }
    }

    void reportFailure(const Failure &failure)
    {
        printFailure(failure);
        write(failureLine(failure, QDateTime::currentDateTime()));
    }

    /** `isKnown`: an event has said so. */
    void reportMissingReader(const Failure &failure, bool isKnown)
    {
        printFailure(failure);
        if (m_options.simulate.isEmpty())
            printMessage(tr("Watching goes on until the reader is there."));
        if (!isKnown)
            write(failureLine(failure, QDateTime::currentDateTime()));
    }

    /** Empty when failures go to standard error alone. */
    QByteArray failureLine(const Failure &failure, const QDateTime &time) const
    {
        if (m_options.events)
            return eventLine("read-failed", time, {{"error", toJson(failure)}});
        return m_options.json ? errorLine(failure) : QByteArray();
    }

    void writeEvent(const char *event, const JsonObject &parts = {})
    {
        if (m_options.events)
            write(eventLine(event, QDateTime::currentDateTime(), parts));
    }

    void write(const QByteArray &line)
    {
        if (!line.isEmpty() && !m_output->write(line))
            m_status = ExitStatus::PROGRAM_FAILED;
    }

    void deliverCard(const Card &card)
    {
        ++m_cards;
        std::optional<QString> folder;
        std::optional<Failure> failure;
        if (!m_options.outFolder.isEmpty())
            folder = save(card, &failure);
        const std::optional<Failure> noPhoto = photoFailure(card, m_options);
        if (noPhoto)
            printPhotoFailure(*noPhoto, card, m_options);
        if (!failure)
            failure = noPhoto;
        JsonObject object = toJson(card, folder, m_options.inlineParts);
        if (failure && (m_options.json || m_options.events))
            object.insert("error", toJson(*failure));
        if (m_options.events)
            writeEvent("card-read", {{"card", object}});
        else
            write(jsonLine(object));
    }

    std::optional<QString> save(const Card &card, std::optional<Failure> *failure)
    {
        QString folder;
        *failure = fileFailure(saveInNextFolder(card, m_options.outFolder, &folder));
        if (*failure) {
            printFailure(**failure);
            m_status = ExitStatus::FILES_NOT_WRITTEN;
            return std::nullopt;
        }
        tellIfVerbose(m_options, tr("Saved card %1 in %2.").arg(m_cards).arg(folder));
        tellMissingFiles(card, CardFiles::ALL);
        return folder;
    }

    const Options &m_options;
    LookAtReader m_lookAtReader;
    Output *m_output;
    ReaderPresence m_presence;
    int m_cards = 0;
    ExitStatus m_status = ExitStatus::DONE; ///< anything else ends the watch
};

/** Every card is tried once before the first is read: wrong usage is reported at once. */
SimulatorProblem tryCards(const QStringList &cards, SimulatorLibrary *simulator)
{
    for (const QString &card : cards) {
        SimulatorProblem problem = simulator->putCard(card);
        if (problem)
            return problem;
    }
    simulator->takeCard();
    return {};
}

/** The failure by which a watch does not begin: which reader is meant is not known. */
std::optional<Failure> severalReaders(const Options &options)
{
    if (options.road != USB_ROAD || options.isDeviceNamed)
        return std::nullopt;
    const ReaderChoice choice = onlyReaderOnBus();
    return choice.failure && choice.failure->exitStatus == ExitStatus::WRONG_USAGE ? choice.failure
                                                                                   : std::nullopt;
}

} // namespace

ExitStatus runWatch(const Options &options, Output *output)
{
    catchInterruption(ExitStatus::DONE);
    SimulatorLibrary simulator;
    const bool isSimulated = !options.simulate.isEmpty();
    SimulatorProblem problem = prepareSimulator(options, &simulator);
    if (!problem)
        problem = prepareSimulatorPhotos(options);
    if (!problem && isSimulated)
        problem = tryCards(options.simulate, &simulator);
    if (problem)
        return report(problem, options, output);
    const std::optional<Failure> several = severalReaders(options);
    if (several)
        return report(*several, options, output);

    if (!options.outFolder.isEmpty()) {
        const std::optional<Failure> notMade = fileFailure(makePrivateFolder(options.outFolder));
        if (notMade)
            return report(*notMade, options, output);
    }
    if (isStandardErrorTerminal())
        printMessage(tr("Watching for cards; Ctrl-C ends."));

    if (options.road == USB_ROAD) {
        UsbReader reader(options);
        return Watch(
                   options, [&] { return reader.look(); }, output)
            .watchReader();
    }
    Watch watch(options, lookThroughLibrary, output);
    return isSimulated ? watch.watchSimulator(&simulator) : watch.watchReader();
}

} // namespace app
