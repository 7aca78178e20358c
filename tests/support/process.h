#pragma once

// Runs a program of this build and collects what it printed. In a cross build the program is
// started under the emulator that runs the test itself.

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

struct ProcessResult {
    bool finished = false; ///< ended by itself before the time-out, without a signal
    int exitStatus = -1;
    int signal = 0; ///< that ended it; 0: none did
    QByteArray standardOutput;
    QByteArray standardError;
};

struct ProcessInput {
    QMap<QString, QString> environment; ///< set in addition; a null value removes the variable
    QByteArray standardInput;
    QString workingDirectory;
    int timeoutMs = 60000;
    bool emulated = true; ///< false for a program of the build machine, such as nm
};

/** Runs `program` (an absolute path, or a name in this build's folder of programs). */
ProcessResult runProcess(const QString &program, const QStringList &arguments,
                         const ProcessInput &input = {});
