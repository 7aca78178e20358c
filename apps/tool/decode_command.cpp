// The command "decode".

#include <QFile>

#include <unistd.h>

#include "apps/card/raw_record.h"
#include "apps/process/standard_streams.h"
#include "apps/process/translation.h"
#include "apps/tool/card_delivery.h"
#include "apps/tool/commands.h"
#include "apps/tool/failure_report.h"
#include "apps/tool/simulator_setup.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Tool)

/** What a command that takes bytes was given. */
struct Input {
    QString name; ///< for people
    QByteArray bytes;
    QString problem; ///< why it could not be read; empty when it was
};

/** Reads no more than is needed to recognise what is not a record. */
Input readInput(const QString &path)
{
    const bool isStandardInput = path.isEmpty() || path == QLatin1String("-");
    QFile file(path);
    Input input;
    input.name = isStandardInput ? tr("Standard input") : path;
    const QIODevice::OpenMode mode = QIODevice::ReadOnly | QIODevice::Unbuffered;
    const bool isOpen = isStandardInput ? file.open(STDIN_FILENO, mode) : file.open(mode);
    QByteArray part;
    do {
        part = isOpen ? file.read(RAW_RECORD_READ_LIMIT - input.bytes.size()) : QByteArray();
        input.bytes += part;
    } while (!part.isEmpty() && input.bytes.size() < RAW_RECORD_READ_LIMIT);
    if (file.error() != QFileDevice::NoError)
        input.problem = translatedSystemText(file.errorString());
    return input;
}

} // namespace

ExitStatus runDecode(const Options &options, Output *output)
{
    const SimulatorProblem problem = prepareSimulatorPhotos(options);
    if (problem)
        return report(problem, options, output);
    const std::optional<Failure> obstacle = obstacleToSaving(options);
    if (obstacle)
        return report(*obstacle, options, output);

    const Input input = readInput(options.argument);
    if (!input.problem.isEmpty()) {
        const QString words =
            tr("%1 could not be read: %2. Name a file that holds a raw card record.");
        return report(
            toolFailure(ToolFault::RECORD_NOT_READ, filledIn(words, input.name, input.problem)),
            options, output);
    }
    const RawRecordCheck check = checkRawRecord(input.bytes);
    if (!check.isRecord()) {
        const QString words = tr("%1 is not a raw card record: %2");
        return report(
            toolFailure(ToolFault::NOT_A_RECORD, filledIn(words, input.name, check.problem)),
            options, output);
    }
    printRecordWarnings(check.warnings, input.name);
    return deliverRecord(input.bytes, {check.prints, Road::FILE, std::nullopt}, options, output);
}

} // namespace app
