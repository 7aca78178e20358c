#include "tests/support/process.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>

namespace
{

/** What goes into the environment of `process`, and what goes to the emulator for its guest. */
QStringList setEnvironment(QProcess &process, const QMap<QString, QString> &variables,
                           bool emulated)
{
    QStringList guestOptions;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (auto it = variables.cbegin(); it != variables.cend(); ++it) {
        if (it.value().isNull())
            environment.remove(it.key());
        else if (emulated && it.key().startsWith(QLatin1String("LD_")))
            // For the loader inside; the emulator's own loader must not see it.
            guestOptions << QStringLiteral("-E") << it.key() + '=' + it.value();
        else
            environment.insert(it.key(), it.value());
    }
    process.setProcessEnvironment(environment);
    return guestOptions;
}

} // namespace

ProcessResult runProcess(const QString &program, const QStringList &arguments,
                         const ProcessInput &input)
{
    const QString path =
        QFileInfo(program).isAbsolute() ? program : QDir(IDCARD_BUILD_BIN_DIR).filePath(program);
    const QString emulator =
        input.emulated ? qEnvironmentVariable("IDCARD_TEST_EMULATOR") : QString();

    QProcess process;
    if (!input.workingDirectory.isEmpty())
        process.setWorkingDirectory(input.workingDirectory);
    const QStringList guestOptions =
        setEnvironment(process, input.environment, !emulator.isEmpty());
    if (emulator.isEmpty())
        process.start(path, arguments);
    else
        process.start(emulator, guestOptions + QStringList(path) + arguments);

    ProcessResult result;
    if (!process.waitForStarted())
        return result;
    process.write(input.standardInput);
    process.closeWriteChannel();
    if (!process.waitForFinished(input.timeoutMs)) {
        process.kill();
        process.waitForFinished();
    } else {
        result.finished = process.exitStatus() == QProcess::NormalExit;
        result.exitStatus = process.exitCode();
    }
    result.standardOutput = process.readAllStandardOutput();
    result.standardError = process.readAllStandardError();
    return result;
}
