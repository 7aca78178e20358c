#pragma once

// FNV-1a, 32 bits: the checksum of compressed photos and the source of seeds. Not for secrets.

#include <cstdint>

#include <QByteArray>

namespace simulator
{

inline std::uint32_t fnv1a(const QByteArray &bytes)
{
    constexpr std::uint32_t OFFSET_BASIS = 2166136261U;
    constexpr std::uint32_t PRIME = 16777619U;
    std::uint32_t hash = OFFSET_BASIS;
    for (const char byte : bytes) {
        hash = (hash ^ static_cast<std::uint8_t>(byte)) * PRIME;
    }
    return hash;
}

} // namespace simulator
