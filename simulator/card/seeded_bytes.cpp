#include "simulator/card/seeded_bytes.h"

#include <random>

namespace simulator
{

std::uint32_t seedOf(const QByteArray &bytes)
{
    constexpr std::uint32_t OFFSET_BASIS = 2166136261U;
    constexpr std::uint32_t PRIME = 16777619U;
    std::uint32_t hash = OFFSET_BASIS;
    for (const char byte : bytes)
        hash = (hash ^ static_cast<std::uint8_t>(byte)) * PRIME;
    return hash;
}

QByteArray filledUp(const QByteArray &head, std::size_t size)
{
    std::mt19937 random(seedOf(head));
    QByteArray bytes = head;
    while (bytes.size() < static_cast<int>(size))
        bytes.append(static_cast<char>(random() & 0xFFU));
    return bytes;
}

} // namespace simulator
