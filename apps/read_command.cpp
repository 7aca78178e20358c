// The command "read", and what the commands that read a card share.

#include <algorithm>

#include <QElapsedTimer>

#include "apps/card_output.h"
#include "apps/card_reader.h"
#include "apps/commands.h"
#include "apps/interruption.h"

namespace app
{

namespace
{

constexpr int MILLISECONDS = 1000;
constexpr int WAIT_INTERVAL_MS = 250;

/** A line on a terminal that is written anew while the program waits, and then goes away. */
class WaitingLine
{
public:
    WaitingLine() = default;
    ~WaitingLine()
    {
        if (m_isShown)
            printToStandardError(QStringLiteral("\r\033[K"));
    }
    WaitingLine(const WaitingLine &) = delete;
    WaitingLine(WaitingLine &&) = delete;
    WaitingLine &operator=(const WaitingLine &) = delete;
    WaitingLine &operator=(WaitingLine &&) = delete;

    void show(qint64 secondsLeft)
    {
        if (!isStandardErrorTerminal())
            return;
        printToStandardError(
            QStringLiteral("\rLay a card on the reader (%1 s left, Ctrl-C ends) \033[K")
                .arg(secondsLeft));
        m_isShown = true;
    }

private:
    bool m_isShown = false;
};

ReadOutcome readWithin(int seconds)
{
    QElapsedTimer time;
    time.start();
    WaitingLine line;
    while (true) {
        ReadOutcome outcome = readCard();
        const qint64 left = qint64(seconds) * MILLISECONDS - time.elapsed();
        if (outcome.exitStatus() != ExitStatus::NoCard || left <= 0 || isInterrupted())
            return outcome;
        line.show((left + MILLISECONDS - 1) / MILLISECONDS);
        pauseFor(static_cast<int>(std::min<qint64>(left, WAIT_INTERVAL_MS)));
    }
}

ExitStatus failed(const ReadOutcome &outcome)
{
    if (outcome.exitStatus() == ExitStatus::NoCard && isInterrupted())
        tell(QStringLiteral("Broken off before a card was found; nothing was read."));
    else
        tell(explain(outcome));
    return outcome.exitStatus();
}

} // namespace

void tellIfVerbose(const Options &options, const QString &message)
{
    if (options.verbose)
        tell(message);
}

ExitStatus told(const SimulatorProblem &problem)
{
    if (problem)
        tell(problem.message);
    return problem.exitStatus;
}

SimulatorProblem loadSimulator(const Options &options, SimulatorLibrary *simulator)
{
    SimulatorProblem problem = simulator->load();
    if (!problem)
        tellIfVerbose(options, QStringLiteral("The simulator is %1.").arg(simulator->path()));
    return problem;
}

SimulatorProblem prepareSimulator(const Options &options, SimulatorLibrary *simulator)
{
    if (options.simulate.isEmpty())
        return {};
    const SimulatorProblem problem = loadSimulator(options, simulator);
    return problem ? problem : simulator->setFaults(options.faults);
}

void tellMissingFiles(const Card &card, CardFiles which)
{
    for (const QString &note : missingFileNotes(card, which))
        tell(note);
}

ExitStatus runRead(const Options &options, Output *output)
{
    catchInterruption(ExitStatus::ReadFailed);
    SimulatorLibrary simulator;
    SimulatorProblem problem = prepareSimulator(options, &simulator);
    if (!problem && !options.simulate.isEmpty())
        problem = simulator.putCard(options.simulate.first());
    if (problem)
        return told(problem);

    const bool isSaved = !options.outFolder.isEmpty();
    const auto existing = options.force ? ExistingFiles::Replace : ExistingFiles::Refuse;
    if (isSaved) {
        const QString obstacle =
            obstacleTo(options.outFolder, cardFileNames(CardFiles::All), existing);
        if (!obstacle.isEmpty()) {
            tell(obstacle);
            return ExitStatus::FilesNotWritten;
        }
    }

    QElapsedTimer time;
    time.start();
    const ReadOutcome outcome = readWithin(options.waitSeconds);
    tellIfVerbose(options, QStringLiteral("Reading ended after %1 ms with the code %2.")
                               .arg(time.elapsed())
                               .arg(outcome.code));
    if (!outcome.card)
        return failed(outcome);

    ExitStatus status = ExitStatus::Done;
    std::optional<QString> folder;
    if (isSaved) {
        const QString notWritten =
            writeFileSet(options.outFolder, contentsOf(*outcome.card, CardFiles::All), existing);
        if (notWritten.isEmpty()) {
            folder = options.outFolder;
            tellIfVerbose(options, QStringLiteral("Saved the card in %1.").arg(*folder));
            tellMissingFiles(*outcome.card, CardFiles::All);
        } else {
            tell(notWritten);
            status = ExitStatus::FilesNotWritten;
        }
    }
    output->write(options.json ? indentedJson(toJson(*outcome.card, folder))
                               : toTable(*outcome.card, folder).toUtf8());
    return status;
}

} // namespace app
