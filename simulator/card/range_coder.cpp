// The arithmetic of the range coder: 32 bits of range, renewed a byte at a time.

#include "simulator/card/range_coder.h"

#include <algorithm>

namespace simulator
{

namespace
{

constexpr std::uint32_t SMALLEST_RANGE = 1U << 24;

std::uint32_t shareOfNo(std::uint32_t range, const Probability &probability)
{
    return (range >> Probability::BITS) * probability.ofNo;
}

} // namespace

void Probability::learn(bool decision)
{
    // Neither answer may become impossible.
    constexpr unsigned int LEAST = 1U << 5;
    const unsigned int yes = ofNo - (ofNo >> rate);
    const unsigned int no = ofNo + (((1U << BITS) - ofNo) >> rate);
    ofNo = static_cast<std::uint16_t>(std::clamp(decision ? yes : no, LEAST, (1U << BITS) - LEAST));
    if (rate < LAST_RATE && ++decisionsAtRate >= rate) {
        ++rate;
        decisionsAtRate = 0;
    }
}

void RangeEncoder::encode(Probability *probability, bool decision)
{
    const std::uint32_t share = shareOfNo(m_range, *probability);
    if (decision) {
        m_low += share;
        m_range -= share;
    } else {
        m_range = share;
    }
    probability->learn(decision);
    while (m_range < SMALLEST_RANGE) {
        m_range <<= 8;
        shiftLow();
    }
}

void RangeEncoder::shiftLow()
{
    const auto carry = static_cast<std::uint8_t>(m_low >> 32);
    if (m_low < 0xFF000000U || carry != 0) {
        if (m_started) {
            m_bytes.append(static_cast<char>(m_cache + carry));
        }
        m_started = true;
        m_bytes.append(QByteArray(m_pending, static_cast<char>(0xFF + carry)));
        m_pending = 0;
        m_cache = static_cast<std::uint8_t>(m_low >> 24);
    } else {
        ++m_pending;
    }
    m_low = (m_low & 0x00FFFFFFU) << 8;
}

QByteArray RangeEncoder::finish()
{
    constexpr int BYTES_OF_LOW = 5;
    for (int i = 0; i < BYTES_OF_LOW; ++i) {
        shiftLow();
    }
    while (m_bytes.endsWith('\0')) {
        m_bytes.chop(1);
    }
    return m_bytes;
}

RangeDecoder::RangeDecoder(const QByteArray &bytes) : m_bytes(bytes)
{
    for (int i = 0; i < 4; ++i) {
        m_code = (m_code << 8) | nextByte();
    }
}

std::uint8_t RangeDecoder::nextByte()
{
    return m_position < m_bytes.size() ? static_cast<std::uint8_t>(m_bytes.at(m_position++))
                                       : std::uint8_t{0};
}

bool RangeDecoder::decode(Probability *probability)
{
    const std::uint32_t share = shareOfNo(m_range, *probability);
    const bool decision = m_code >= share;
    if (decision) {
        m_code -= share;
        m_range -= share;
    } else {
        m_range = share;
    }
    probability->learn(decision);
    while (m_range < SMALLEST_RANGE) {
        m_range <<= 8;
        m_code = (m_code << 8) | nextByte();
    }
    return decision;
}

} // namespace simulator
