#pragma once

// One run of idcard-reader, which may crash, hang or print anything: within its time it ends, by
// force if need be.

#include <functional>

#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <QTimer>

namespace app
{

/** The environment variable by which the C library overwrites memory; a worker needs no such thing.
 */
constexpr const char *MALLOC_SETTINGS = "GLIBC_TUNABLES";

class Worker : private QProcess
{
public:
    enum class End {
        DONE,      ///< it ended by itself
        FAILED,    ///< it crashed, did not start, printed without end or had to be killed
        STOPPED,   ///< by `stop`
        TIMED_OUT, ///< its time was over
    };

    /** Takes what was printed so far, as much as it has a use for, out of the buffer. */
    using Take = std::function<void(QByteArray *output)>;
    /** Takes what is left at the end. The worker may be deleted later, not at once (`deleteLater`).
     */
    using Ended = std::function<void(End end, const QByteArray &output)>;

    Worker(Take take, Ended ended);
    /** Ends the program, and waits for that. */
    ~Worker() override;
    Worker(const Worker &) = delete;
    Worker(Worker &&) = delete;
    Worker &operator=(const Worker &) = delete;
    Worker &operator=(Worker &&) = delete;

    using QObject::deleteLater;

    /** `timeoutMs` 0: it may take as long as it likes. To be called once. */
    void run(const QStringList &arguments, int timeoutMs);
    void stop();
    /** As after a crash. */
    void fail();

protected:
    void setupChildProcess() override;

private:
    void endBy(End end);
    void force();
    void takeOutput();
    void finish(ExitStatus status);

    Take m_take;
    Ended m_ended;
    End m_end = End::DONE;
    QByteArray m_output;
    QTimer m_deadline;
    QTimer m_force;
};

} // namespace app
