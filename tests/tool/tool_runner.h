#pragma once

// Runs idcard-reader as a user does: the built program, on the simulator.

#include <gtest/gtest.h>

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

    /** Sends the signal and waits for the end. */
    ProcessResult endedBy(int number);
};

/** By SIGPIPE and without a word, as "yes" ends in "yes | head -1". */
void expectEndByLossOfItsReader(const ProcessResult &run);

/** Expects nothing of what the card says in `text`. */
void expectNothingOf(const simulator::CardDescription &card, const QByteArray &text);

/** A test with a folder of its own. */
class FolderTest : public testing::Test
{
protected:
    QString path(const QString &name) const { return m_base.filePath(name); }
    QString out() const { return path("card"); } ///< is not there yet

private:
    QTemporaryDir m_base;
};

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
