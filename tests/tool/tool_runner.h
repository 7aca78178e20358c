#pragma once

// Runs idcard-reader as a user does: the built program, on the simulator.

#include <QJsonObject>
#include <QTemporaryDir>

#include "simulator/card/card_description.h"
#include "tests/support/process.h"

/** Runs the tool to its end. Settings of this machine that bear on it are taken away. */
ProcessResult runTool(const QStringList &arguments, const ProcessInput &input = {});

/** A run that the test looks into or meddles with. */
class RunningTool : public RunningProcess
{
public:
    explicit RunningTool(const QStringList &arguments, const ProcessInput &input = {});
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
