#pragma once

// An adaptive binary range coder: codes yes/no decisions in the fewer bits the better their
// probabilities are known. Coder and decoder learn the probabilities alike.

#include <cstdint>

#include <QByteArray>

namespace simulator
{

/** How probable a "no" is, learnt from the decisions made with it: quickly at first. */
struct Probability {
    static constexpr int BITS = 15;
    static constexpr int FIRST_RATE = 1;
    static constexpr int LAST_RATE = 5;
    std::uint16_t ofNo = 1U << (BITS - 1);
    std::uint8_t rate = FIRST_RATE;
    std::uint8_t decisionsAtRate = 0;

    void learn(bool decision);
};

class RangeEncoder
{
public:
    void encode(Probability *probability, bool decision);

    /** Ends the coding and gives the bytes; zeros at their end are left out. */
    QByteArray finish();

private:
    void shiftLow();

    QByteArray m_bytes;
    std::uint64_t m_low = 0;
    std::uint32_t m_range = 0xFFFFFFFFU;
    std::uint8_t m_cache = 0;
    int m_pending = 0;      ///< bytes 0xFF that a carry may still turn over
    bool m_started = false; ///< the first byte out is always zero and is not kept
};

/** Reads what `RangeEncoder` wrote; behind the end of the bytes it reads zeros. */
class RangeDecoder
{
public:
    explicit RangeDecoder(const QByteArray &bytes);
    bool decode(Probability *probability);

private:
    std::uint8_t nextByte();

    const QByteArray &m_bytes;
    int m_position = 0;
    std::uint32_t m_range = 0xFFFFFFFFU;
    std::uint32_t m_code = 0;
};

} // namespace simulator
