#include "apps/process/output_pipe.h"

#include <algorithm>
#include <utility>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace app
{

namespace
{

void closeEnd(int *end)
{
    if (*end >= 0)
        ::close(std::exchange(*end, -1));
}

} // namespace

OutputPipe::OutputPipe(std::function<void()> whenReadable)
{
    // Where no pipe can be had, the child prints into nothing.
    if (::pipe2(m_ends.data(), O_CLOEXEC) == 0)
        m_notifier = std::make_unique<ReadableNotifier>(m_ends[0], std::move(whenReadable));
}

void OutputPipe::becomeStandardOutput() const
{
    ::dup2(m_ends[1], STDOUT_FILENO);
}

void OutputPipe::closeEndOfChild()
{
    closeEnd(&m_ends[1]);
}

void OutputPipe::close()
{
    if (m_notifier)
        m_notifier->setEnabled(false);
    for (int &end : m_ends)
        closeEnd(&end);
}

bool OutputPipe::takeInto(QByteArray *output)
{
    int waiting = 0; // no more is asked for: a child of the child may print without end
    if (::ioctl(m_ends[0], FIONREAD, &waiting) != 0 || waiting == 0) {
        if (m_notifier)
            m_notifier->setEnabled(false); // it is the end
        return false;
    }
    const int before = output->size();
    output->resize(before + waiting);
    const ssize_t count = ::read(m_ends[0], output->data() + before, static_cast<size_t>(waiting));
    output->resize(before + static_cast<int>(std::max<ssize_t>(count, 0)));
    return count > 0;
}

} // namespace app
