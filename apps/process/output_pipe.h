#pragma once

// What a child prints, without the buffer that Qt keeps of it.

#include <array>
#include <functional>
#include <memory>

#include <QByteArray>

#include "apps/process/readable_notifier.h"

namespace app
{

class OutputPipe
{
public:
    /** `whenReadable`: called inside an event loop. */
    explicit OutputPipe(std::function<void()> whenReadable);
    ~OutputPipe() { close(); }
    OutputPipe(const OutputPipe &) = delete;
    OutputPipe(OutputPipe &&) = delete;
    OutputPipe &operator=(const OutputPipe &) = delete;
    OutputPipe &operator=(OutputPipe &&) = delete;

    /** To be called in the child. */
    void becomeStandardOutput() const;
    /** To be called once the child has its own. */
    void closeEndOfChild();
    void close();

    /** Adds what has come; whether there was any. */
    bool takeInto(QByteArray *output);

private:
    std::array<int, 2> m_ends = {-1, -1}; ///< to read from, to write to
    std::unique_ptr<ReadableNotifier> m_notifier;
};

} // namespace app
