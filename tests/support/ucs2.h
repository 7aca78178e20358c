#pragma once

// Text as cards store it.

#include <string>
#include <vector>

/** Two bytes a character, the low one first. */
inline std::vector<unsigned char> ucs2(const std::u16string &text)
{
    std::vector<unsigned char> bytes;
    for (const char16_t character : text) {
        bytes.push_back(static_cast<unsigned char>(character & 0xff));
        bytes.push_back(static_cast<unsigned char>(character >> 8));
    }
    return bytes;
}
