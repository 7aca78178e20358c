#pragma once

// Native messaging's frames: the length of the body in four bytes of the machine's own order, then
// the body, which is JSON.

#include <optional>

#include <QByteArray>

namespace app
{

/** Takes bytes as they come and gives them back as bodies. */
class FrameReader
{
public:
    /** A longer body is refused by its length alone: none of it is kept. */
    static constexpr quint32 LONGEST_REQUEST = 8 * 1024;

    void take(const QByteArray &bytes);

    /** The next body; nothing when it has not come completely, or is too long. */
    std::optional<QByteArray> next();

    /** No more is to be taken then: where the next frame begins is not known. */
    bool isTooLong() const { return m_isTooLong; }

private:
    QByteArray m_bytes;
    bool m_isTooLong = false;
};

/** The longest body that a browser takes; it ends a host that sends a longer one. */
constexpr int LONGEST_ANSWER = 1024 * 1024;

QByteArray frameOf(const QByteArray &body);

} // namespace app
