#pragma once

// Runs idcard-reader as a user does: the built program, on the simulator.

#include <gtest/gtest.h>

#include <QJsonObject>
#include <QTemporaryDir>

#include "tests/simulator/built_in_card.h"
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

/** The object printed by `read --json`. */
QJsonObject parsedObject(const QByteArray &json);

/** The objects printed by `watch`, one a line. */
QVector<QJsonObject> parsedLines(const QByteArray &lines);

/** The name of the failure that was printed with --json. */
QString errorNameIn(const QByteArray &json);

/** The raw record in which a reader on USB hands out this card. */
QByteArray recordOf(const QString &card);

/** A test with a folder of its own. */
class FolderTest : public testing::Test
{
protected:
    QString path(const QString &name) const { return m_base.filePath(name); }
    QString out() const { return path("card"); } ///< is not there yet

    /** A file with this raw record. */
    QString recordFile(const QByteArray &record) const;
    QString recordFile(const char *card) const { return recordFile(recordOf(card)); }

private:
    QTemporaryDir m_base;
};

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
