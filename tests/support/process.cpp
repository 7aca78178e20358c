#include "tests/support/process.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>

QStringList emulatedCommand(const QString &program, const QStringList &arguments)
{
    const QString path =
        QFileInfo(program).isAbsolute() ? program : QDir(IDCARD_BUILD_BIN_DIR).filePath(program);
    QStringList command;
    const QString emulator = qEnvironmentVariable("IDCARD_TEST_EMULATOR");
    if (!emulator.isEmpty())
        command << emulator;
    return command << path << arguments;
}

ProcessResult runProcess(const QString &program, const QStringList &arguments,
                         const ProcessInput &input)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (auto it = input.environment.cbegin(); it != input.environment.cend(); ++it) {
        if (it.value().isNull())
            environment.remove(it.key());
        else
            environment.insert(it.key(), it.value());
    }

    QProcess process;
    process.setProcessEnvironment(environment);
    if (!input.workingDirectory.isEmpty())
        process.setWorkingDirectory(input.workingDirectory);
    QStringList command = emulatedCommand(program, arguments);
    const QString first = command.takeFirst();
    process.start(first, command);

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
