#include "apps/virtual_reader/line_input.h"

#include <cerrno>
#include <csignal>

#include <unistd.h>

namespace app
{

namespace
{

constexpr int BACKGROUND_PAUSE_MS = 500;

} // namespace

void LineSplitter::add(const QByteArray &bytes)
{
    int from = 0;
    while (from < bytes.size()) {
        const int lineEnd = bytes.indexOf('\n', from);
        const int to = lineEnd < 0 ? bytes.size() : lineEnd;
        m_isTooLong = m_isTooLong || to - from > LONGEST_LINE - m_begun.size();
        if (m_isTooLong)
            m_begun.clear();
        else
            m_begun.append(bytes.constData() + from, to - from);
        if (lineEnd >= 0)
            finishLine();
        from = to + 1;
    }
}

void LineSplitter::end()
{
    if (m_isTooLong || !m_begun.isEmpty())
        finishLine();
}

void LineSplitter::finishLine()
{
    Line line;
    line.text.swap(m_begun);
    line.isTooLong = m_isTooLong;
    m_isTooLong = false;
    m_take(line);
}

LineInput::LineInput(LineSplitter::Take take, End end)
    : m_splitter(std::move(take)), m_end(std::move(end)),
      m_readable(STDIN_FILENO, [this] { read(); })
{
    // In the background of a terminal, reading is to fail, not to stop the program.
    std::signal(SIGTTIN, SIG_IGN);
    m_retry.setSingleShot(true);
    QObject::connect(&m_retry, &QTimer::timeout, &m_readable,
                     [this] { m_readable.setEnabled(true); });
}

void LineInput::read()
{
    char buffer[4096];
    const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof buffer);
    if (count > 0) {
        m_splitter.add(QByteArray(buffer, static_cast<int>(count)));
        return;
    }
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    m_readable.setEnabled(false);
    if (count < 0 && errno == EIO && ::isatty(STDIN_FILENO) == 1) {
        m_retry.start(BACKGROUND_PAUSE_MS);
        return;
    }
    m_splitter.end();
    m_end();
}

} // namespace app
