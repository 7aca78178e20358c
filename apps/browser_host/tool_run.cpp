#include "apps/browser_host/tool_run.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <QElapsedTimer>
#include <QFile>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "apps/browser_host/frames.h"
#include "apps/process/translation.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Browser)

constexpr int LOOK_MS = 5;
/** The tool needs two seconds at most to leave a reading. */
constexpr int PATIENCE_MS = 2500;
/** The tool's JSON is indented: it gets shorter before it is sent. */
constexpr int MOST_BYTES = 4 * LONGEST_ANSWER;

QStringList commandFor(const QString &tool, const Request &request)
{
    QStringList command = {tool, QStringLiteral("read"), QStringLiteral("--json"),
                           QStringLiteral("--timeout"), QString::number(request.timeoutSeconds)};
    if (!request.include.isEmpty())
        command << QStringLiteral("--inline") << request.include.join(QLatin1Char(','));
    return command;
}

/** In the child: nothing here may allocate. */
[[noreturn]] void becomeTool(char **command, const char *language, pid_t parent, int output)
{
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent)
        ::_exit(1);
    std::signal(SIGPIPE, SIG_DFL);
    const int null = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    ::dup2(null, STDIN_FILENO);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(null, STDERR_FILENO);
    ::setenv("LANGUAGE", language, 1);
    ::execv(command[0], command);
    ::_exit(1);
}

} // namespace

ToolRun::ToolRun(const QString &tool, const Request &request)
{
    if (::access(QFile::encodeName(tool).constData(), X_OK) == 0)
        start(tool, request);
    else
        m_problem = filledIn(tr("%1 cannot be started: %2."), tool, systemError(errno));
}

ToolRun::~ToolRun()
{
    if (m_output >= 0)
        ::close(m_output); // it may be waiting for room there
    if (m_process < 0)
        return;
    ::kill(-m_process, SIGTERM);
    if (hasEndedWithin(PATIENCE_MS))
        return;
    ::kill(-m_process, SIGKILL);
    ::waitpid(m_process, &m_status, 0);
}

void ToolRun::start(const QString &tool, const Request &request)
{
    std::vector<QByteArray> words;
    for (const QString &word : commandFor(tool, request))
        words.push_back(QFile::encodeName(word));
    std::vector<char *> pointers;
    pointers.reserve(words.size() + 1);
    for (QByteArray &word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const QByteArray language = request.language.toLatin1().replace('-', '_');

    std::array<int, 2> ends = {-1, -1};
    const pid_t parent = ::getpid();
    m_process = ::pipe2(ends.data(), O_CLOEXEC) == 0 ? ::fork() : -1;
    if (m_process == 0)
        becomeTool(pointers.data(), language.constData(), parent, ends[1]);
    if (m_process < 0)
        m_problem = filledIn(tr("%1 cannot be started: %2."), tool, systemError(errno));
    else
        ::setpgid(m_process, m_process); // whichever of the two is first
    ::close(ends[1]);
    m_output = ends[0];
}

bool ToolRun::collect()
{
    std::array<char, 65536> buffer{};
    const ssize_t count = ::read(m_output, buffer.data(), buffer.size());
    if (count < 0)
        return errno == EINTR;
    m_collected.append(buffer.data(), static_cast<int>(count));
    return count > 0 && !isOutputTooLong();
}

bool ToolRun::isOutputTooLong() const
{
    return m_collected.size() > MOST_BYTES;
}

QString ToolRun::end()
{
    if (!hasEndedWithin(PATIENCE_MS))
        return tr("It closed its output and went on.");
    if (WIFSIGNALED(m_status))
        return tr("It was ended by the signal %1.")
            .arg(translatedSystemText(QString::fromLocal8Bit(::strsignal(WTERMSIG(m_status)))));
    return {};
}

bool ToolRun::hasEndedWithin(int milliseconds)
{
    QElapsedTimer time;
    time.start();
    while (::waitpid(m_process, &m_status, WNOHANG) == 0) {
        if (time.hasExpired(milliseconds))
            return false;
        ::poll(nullptr, 0, LOOK_MS);
    }
    m_process = -1;
    return true;
}

} // namespace app
