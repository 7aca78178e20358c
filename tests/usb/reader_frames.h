#pragma once

// The reader's frames as they are on the wire, written out from the protocol: the library, the
// simulator and its server are all measured by them.

#include <QByteArray>

namespace frames
{
const QByteArray LOOKUP = QByteArray::fromHex("AAAAAA96690003200122");
const QByteArray LOOKUP_ANSWER = QByteArray::fromHex("AAAAAA9669000800009F0000000097");
const QByteArray NO_CARD_ANSWER = QByteArray::fromHex("AAAAAA966900080000800000000088");
const QByteArray SELECT = QByteArray::fromHex("AAAAAA96690003200221");
const QByteArray SELECT_ANSWER = QByteArray::fromHex("AAAAAA9669000C00009000000000000000009C");
const QByteArray READ = QByteArray::fromHex("AAAAAA96690003301023");
const QByteArray NO_DATA_ANSWER = QByteArray::fromHex("AAAAAA9669000400004145");

constexpr int READ_CAPACITY = 2321;

/** A read answer with `printBytes` of fingerprints; the content is a pattern. */
QByteArray readAnswer(int printBytes);
} // namespace frames
