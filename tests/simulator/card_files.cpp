#include "tests/simulator/card_files.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

static QDir cardFolder()
{
    return QDir(QStringLiteral(IDCARD_SOURCE_DIR "/simulator/cards"));
}

QStringList sourceCardNames()
{
    QStringList names = cardFolder().entryList({QStringLiteral("*.json")}, QDir::Files);
    for (QString &name : names)
        name.chop(5);
    names.sort();
    return names;
}

QJsonObject sourceCard(const QString &name)
{
    QFile file(cardFolder().filePath(name + QStringLiteral(".json")));
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                          : QJsonObject();
}
