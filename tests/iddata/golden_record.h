#pragma once

// The golden records: for every card of the simulator the frame in which a reader on USB hands it
// out, and what the decoders must make of it. scripts/make/golden-records writes them.

#include <QByteArray>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include "tests/support/files.h"

struct GoldenRecord {
    QByteArray frame;
    QJsonObject expected;
};

inline QDir goldenFolder()
{
    return {QStringLiteral(IDCARD_SOURCE_DIR "/tests/iddata/golden")};
}

inline GoldenRecord goldenRecord(const QString &card)
{
    const QString path = goldenFolder().filePath(card);
    return {readFile(path + ".bin"), QJsonDocument::fromJson(readFile(path + ".json")).object()};
}
