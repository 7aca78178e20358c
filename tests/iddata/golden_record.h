#pragma once

// The golden records: for every card of the simulator the frame in which a reader on USB hands it
// out, and what the decoders must make of it. scripts/make/golden-records writes them.

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QStringList>

struct GoldenRecord {
    QByteArray frame;
    QJsonObject expected;
};

inline QDir goldenFolder()
{
    return {QStringLiteral(IDCARD_SOURCE_DIR "/tests/iddata/golden")};
}

/** Empty where a file is missing. */
inline GoldenRecord goldenRecord(const QString &card)
{
    const auto content = [&card](const char *suffix) {
        QFile file(goldenFolder().filePath(card + QLatin1String(suffix)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    return {content(".bin"), QJsonDocument::fromJson(content(".json")).object()};
}
