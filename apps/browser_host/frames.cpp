#include "apps/browser_host/frames.h"

#include <cstring>

namespace app
{

namespace
{

constexpr int LENGTH_BYTES = 4;

} // namespace

void FrameReader::take(const QByteArray &bytes)
{
    m_bytes += bytes;
}

std::optional<QByteArray> FrameReader::next()
{
    if (m_bytes.size() < LENGTH_BYTES)
        return std::nullopt;
    quint32 length = 0;
    std::memcpy(&length, m_bytes.constData(), LENGTH_BYTES);
    if (length > LONGEST_REQUEST) {
        m_isTooLong = true;
        m_bytes.clear();
        return std::nullopt;
    }
    const int size = static_cast<int>(length);
    if (m_bytes.size() < LENGTH_BYTES + size)
        return std::nullopt;
    const QByteArray body = m_bytes.mid(LENGTH_BYTES, size);
    m_bytes.remove(0, LENGTH_BYTES + size);
    return body;
}

QByteArray frameOf(const QByteArray &body)
{
    const auto length = static_cast<quint32>(body.size());
    return QByteArray(reinterpret_cast<const char *>(&length), LENGTH_BYTES) + body;
}

} // namespace app
