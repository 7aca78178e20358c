#pragma once

// A text block of 256 bytes, made by a test: blanks everywhere but where something is put.

#include <algorithm>
#include <stdexcept>
#include <string>

#include "tests/iddata/guarded_bytes.h"
#include "tests/support/ucs2.h"

class TextBlock
{
public:
    static constexpr std::size_t SIZE = 256;

    explicit TextBlock(GuardedBytes::Side side = GuardedBytes::GUARD_AFTER) : m_bytes(SIZE, side)
    {
        for (std::size_t i = 0; i < SIZE; i += 2)
            m_bytes.data()[i] = ' ';
    }

    /** Puts the characters of `text` at `offset` bytes, low byte first. */
    TextBlock &put(std::size_t offset, const std::u16string &text)
    {
        if (offset + 2 * text.size() > SIZE)
            throw std::out_of_range("text reaches beyond the block");
        const std::vector<unsigned char> bytes = ucs2(text);
        std::copy(bytes.begin(), bytes.end(), m_bytes.begin() + offset);
        return *this;
    }

    unsigned char *data() { return m_bytes.data(); }

    /** Whether nobody has written to the block since it was like `other`. */
    friend bool operator==(const TextBlock &left, const TextBlock &right)
    {
        return std::equal(left.m_bytes.begin(), left.m_bytes.end(), right.m_bytes.begin());
    }

private:
    GuardedBytes m_bytes;
};

/** `text` followed by blanks up to `size` characters. */
inline std::string padded(const std::string &text, std::size_t blanks)
{
    return text + std::string(blanks, ' ');
}
