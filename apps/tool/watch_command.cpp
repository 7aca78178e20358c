// The command "watch".

#include <QCoreApplication>

#include "apps/card/card_output.h"
#include "apps/card/card_presence.h"
#include "apps/card/record_decoder.h"
#include "apps/process/interruption.h"
#include "apps/tool/card_delivery.h"
#include "apps/tool/commands.h"
#include "apps/tool/diagnosis.h"
#include "apps/tool/failure_report.h"
#include "apps/tool/simulator_setup.h"
#include "apps/tool/verbose.h"

namespace app
{

namespace
{

class Watch
{
public:
    Watch(const Options &options, Output *output) : m_options(options), m_output(output) {}

    /** Looks at the reader until there is nothing more to do. */
    ExitStatus watchReader()
    {
        bool isFirstLook = true;
        while (!isOver()) {
            const ReadOutcome outcome = look();
            if (isFirstLook && outcome.exitStatus() == ExitStatus::READER_NOT_OPENED)
                return outcome.exitStatus();
            isFirstLook = false;
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
            m_presence = CardPresence();
            if (isOver())
                return m_status;
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
            const ExitStatus seen = look().exitStatus();
            if (seen != ExitStatus::NO_CARD)
                return seen;
            pause();
        }
        return ExitStatus::DONE;
    }

    ReadOutcome look()
    {
        ReadOutcome outcome = readCard();
        switch (m_presence.observe(outcome)) {
        case Sighting::NEW_CARD:
            decodePhoto(&*outcome.card);
            deliverCard(*outcome.card);
            break;
        case Sighting::NEW_FAILURE:
            app::report(diagnosed(failureOf(outcome), m_options), m_options, m_output);
            if (!m_output->problem().isEmpty())
                m_status = ExitStatus::PROGRAM_FAILED;
            break;
        case Sighting::NOTHING:
        case Sighting::SAME_CARD:
        case Sighting::SAME_FAILURE:
            break;
        }
        return outcome;
    }

    void deliverCard(const Card &card)
    {
        ++m_cards;
        std::optional<QString> folder;
        std::optional<Failure> failure;
        if (!m_options.outFolder.isEmpty())
            folder = save(card, &failure);
        const std::optional<Failure> noPhoto = photoFailure(card);
        if (noPhoto)
            printFailure(*noPhoto);
        if (!failure)
            failure = noPhoto;
        QJsonObject object = toJson(card, folder, m_options.inlineParts);
        if (failure && m_options.json)
            object.insert("error", toJson(*failure));
        if (!m_output->write(jsonLine(object)))
            m_status = ExitStatus::PROGRAM_FAILED;
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
        tellIfVerbose(m_options, QStringLiteral("Saved card %1 in %2.").arg(m_cards).arg(folder));
        tellMissingFiles(card, CardFiles::ALL);
        return folder;
    }

    const Options &m_options;
    Output *m_output;
    CardPresence m_presence;
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

} // namespace

ExitStatus runWatch(const Options &options, Output *output)
{
    catchInterruption(ExitStatus::DONE);
    SimulatorLibrary simulator;
    const bool isSimulated = !options.simulate.isEmpty();
    SimulatorProblem problem = prepareSimulator(options, &simulator);
    if (!problem && isSimulated)
        problem = tryCards(options.simulate, &simulator);
    if (problem)
        return report(problem, options, output);

    if (!options.outFolder.isEmpty()) {
        const std::optional<Failure> notMade = fileFailure(makePrivateFolder(options.outFolder));
        if (notMade)
            return report(*notMade, options, output);
    }
    if (isStandardErrorTerminal())
        printMessage(QStringLiteral("Watching for cards; Ctrl-C ends."));

    Watch watch(options, output);
    return isSimulated ? watch.watchSimulator(&simulator) : watch.watchReader();
}

} // namespace app
