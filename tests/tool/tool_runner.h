#pragma once

// Runs idcard-reader as a user does: the built program, on the simulator.

#include <memory>

#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include "simulator/card/card_description.h"
#include "tests/support/process.h"

/** Runs the tool to its end. Settings of this machine that bear on it are taken away. */
ProcessResult runTool(const QStringList &arguments, const ProcessInput &input = {});

/** A run that the test looks into or meddles with. It is killed with the object. */
class RunningTool
{
public:
    explicit RunningTool(const QStringList &arguments,
                         const QMap<QString, QString> &variables = {});
    ~RunningTool();
    RunningTool(const RunningTool &) = delete;
    RunningTool(RunningTool &&) = delete;
    RunningTool &operator=(const RunningTool &) = delete;
    RunningTool &operator=(RunningTool &&) = delete;

    /** For settings before `start`. */
    QProcess &process();
    void closeStandardOutput();
    /** Makes it a pipe. Returns the end to read from, which is the caller's to close. */
    int pipeStandardOutput();
    /** SIGPIPE is then ignored by the program, as where a system's service starts it. */
    void ignoreLossOfReader();
    void start();

    /** Waits for a line on standard output and returns it; empty when none came in time. */
    QByteArray nextLine();
    void signal(int number);
    /** Waits for the end. */
    ProcessResult result();

private:
    class Process;
    std::unique_ptr<Process> m_process;
    QStringList m_command;
};

/** By SIGPIPE and without a word, as "yes" ends in "yes | head -1". */
void expectEndByLossOfItsReader(const ProcessResult &run);

/** The object printed by `read --json`. */
QJsonObject parsedObject(const QByteArray &json);

/** The objects printed by `watch`, one a line. */
QVector<QJsonObject> parsedLines(const QByteArray &lines);

/** The built-in card of this name. */
simulator::CardDescription builtInCard(const QString &name);

/**
 * Lets programs find a library, the simulator if none is named, under the file names of the makers'
 * libraries, as if a reader were installed.
 */
class InstalledReader
{
public:
    explicit InstalledReader(const QString &fileName = QStringLiteral("libidcard_simulator.so"));
    /** What a program needs in its environment to find it, with this card on the reader. */
    QMap<QString, QString> variables(const QString &card, const QString &faults = {}) const;

private:
    QTemporaryDir m_folder;
};
