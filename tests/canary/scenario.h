#pragma once

// One run of a program with a canary card, and where its marks came out.

#include <map>
#include <string>

#include <QTemporaryDir>

#include "tests/canary/marks.h"
#include "tests/support/process.h"

namespace canary
{

/** Marks by the place where they were found: "stdout", "stderr", or a file of the run's folders. */
using Findings = std::map<std::string, MarkNames>;

/**
 * The folders of a run, all its own: working folder, home, temporary files, caches. What a program
 * leaves behind is found in them.
 */
class Surroundings
{
public:
    Surroundings();

    /** The working folder; the run begins there. */
    QString workFolder() const { return m_root.filePath("work"); }
    /** A file that the run is given; it is not searched. */
    QString input(const QString &name, const QByteArray &content) const;

    /** What a program needs in its environment to stay in these folders. */
    QMap<QString, QString> environment() const;
    ProcessInput processInput(QMap<QString, QString> more = {}) const;

    Findings findings(const ProcessResult &result, const std::vector<Mark> &marks) const;

private:
    QTemporaryDir m_root;
    QTemporaryDir m_inputs;
};

} // namespace canary
