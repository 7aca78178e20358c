#pragma once

// Inputs of a fixed size, in memory of exactly that size so that a read beyond them is seen.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

/** The first `blockSize` bytes of an input, filled up with zeros. */
inline std::unique_ptr<unsigned char[]> blockOf(const std::uint8_t *data, std::size_t size,
                                                std::size_t blockSize)
{
    std::unique_ptr<unsigned char[]> block(new unsigned char[blockSize]());
    std::copy_n(data, std::min(size, blockSize), block.get());
    return block;
}

constexpr std::size_t TEXT_BLOCK_SIZE = 256;
