#pragma once

// Numbers and bytes that follow from other bytes: the same on every machine. Not for secrets.

#include <cstddef>
#include <cstdint>

#include <QByteArray>

namespace simulator
{

/** FNV-1a, 32 bits. */
std::uint32_t seedOf(const QByteArray &bytes);

/** `head` and, up to `size`, bytes that are unlike those of any other head. */
QByteArray filledUp(const QByteArray &head, std::size_t size);

} // namespace simulator
