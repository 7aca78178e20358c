#pragma once

// Where records have the texts of a card's description, for the tests that make such records
// without the simulator's code.

#include <algorithm>

#include <gtest/gtest.h>

#include <QByteArray>
#include <QString>

#include "tests/support/ucs2.h"

struct TextPlace {
    const char *key; ///< of the description
    int offset;      ///< bytes, as the size
    int size;
};

/** Puts the text at its place. */
inline void putText(QByteArray &record, const TextPlace &place, const QString &text)
{
    EXPECT_LE(text.size(), place.size / 2) << place.key;
    const std::vector<unsigned char> bytes = ucs2(text.toStdU16String());
    std::copy(bytes.begin(), bytes.end(), record.begin() + place.offset);
}
