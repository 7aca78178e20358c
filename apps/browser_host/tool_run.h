#pragma once

// One run of "idcard-reader read", which ends with this process at the latest.

#include <QByteArray>
#include <QString>

#include <sys/types.h>

#include "apps/browser_host/request.h"

namespace app
{

class ToolRun
{
public:
    /** Starts the program `tool` for what a page asks. */
    ToolRun(const QString &tool, const Request &request);
    /** Ends it if it still runs: it has a moment to finish what it is saying to the reader. */
    ~ToolRun();
    ToolRun(const ToolRun &) = delete;
    ToolRun(ToolRun &&) = delete;
    ToolRun &operator=(const ToolRun &) = delete;
    ToolRun &operator=(ToolRun &&) = delete;

    /** Why it did not start; empty when it did. */
    QString problem() const { return m_problem; }

    /** Becomes readable when there is something for `collect`. */
    int descriptor() const { return m_output; }

    /** Takes what the tool has printed. False: that was all, or is too much. */
    bool collect();

    const QByteArray &output() const { return m_collected; }
    bool isOutputTooLong() const;

    /** After all output, waits for its end. Returns how it failed, a sentence; empty: it did not.
     */
    QString end();

private:
    void start(const QString &tool, const Request &request);
    bool hasEndedWithin(int milliseconds);

    QString m_problem;
    QByteArray m_collected;
    pid_t m_process = -1;
    int m_output = -1;
    int m_status = 0;
};

} // namespace app
