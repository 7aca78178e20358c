#pragma once

// Calls a function when a descriptor becomes readable, inside a Qt event loop.

#include <functional>

#include <QSocketNotifier>

namespace app
{

/** Overrides the event, since the signal of a newer Qt is another than that of an older one. */
class ReadableNotifier : public QSocketNotifier
{
public:
    ReadableNotifier(int descriptor, std::function<void()> whenReadable);

protected:
    bool event(QEvent *event) override;

private:
    std::function<void()> m_whenReadable;
};

} // namespace app
