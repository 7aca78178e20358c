#include "apps/process/readable_notifier.h"

#include <utility>

#include <QEvent>

namespace app
{

ReadableNotifier::ReadableNotifier(int descriptor, std::function<void()> whenReadable)
    : QSocketNotifier(descriptor, QSocketNotifier::Read), m_whenReadable(std::move(whenReadable))
{
}

bool ReadableNotifier::event(QEvent *event)
{
    if (event->type() != QEvent::SockAct)
        return QSocketNotifier::event(event);
    m_whenReadable();
    return true;
}

} // namespace app
