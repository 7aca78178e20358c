#pragma once

// Standard input as lines, as they come, inside a Qt event loop.

#include <functional>

#include <QByteArray>
#include <QTimer>

#include "apps/process/readable_notifier.h"

namespace app
{

/** Takes bytes apart into lines of a bounded length. */
class LineSplitter
{
public:
    /** Bytes of a line without its end; a longer one is dropped and reported. */
    static constexpr int LONGEST_LINE = 64 * 1024;

    struct Line {
        QByteArray text;
        bool isTooLong = false; ///< then `text` is empty
    };
    using Take = std::function<void(const Line &)>;

    explicit LineSplitter(Take take) : m_take(std::move(take)) {}

    void add(const QByteArray &bytes);
    /** No more bytes come: what is left is a line too. */
    void end();

private:
    void finishLine();

    Take m_take;
    QByteArray m_begun;
    bool m_isTooLong = false;
};

class LineInput
{
public:
    using End = std::function<void()>;

    /** Hands over the lines of standard input, and its end. */
    LineInput(LineSplitter::Take take, End end);

private:
    void read();

    LineSplitter m_splitter;
    End m_end;
    ReadableNotifier m_readable;
    QTimer m_retry; ///< while the program is in the background of its terminal
};

} // namespace app
