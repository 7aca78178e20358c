#include "tests/simulator/card_files.h"
#include "tests/support/files.h"

#include <QDir>
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

std::vector<std::string> sourceCardParameters()
{
    std::vector<std::string> names;
    for (const QString &name : sourceCardNames())
        names.push_back(name.toStdString());
    return names;
}

QJsonObject sourceCard(const QString &name)
{
    return QJsonDocument::fromJson(readFile(cardFolder().filePath(name + ".json"))).object();
}
