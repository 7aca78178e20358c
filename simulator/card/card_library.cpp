// Finds card descriptions in the compiled-in resource and in the file system.

#include "simulator/card/card_library.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

// At global scope: the macro declares a function of the generated code.
static void registerCards()
{
    Q_INIT_RESOURCE(simulator_cards);
}

namespace simulator
{

namespace
{

const QString &cardFolder()
{
    // A static library's resource is not registered by itself.
    static const QString folder = [] {
        registerCards();
        return QStringLiteral(":/idcard-simulator/cards/");
    }();
    return folder;
}

QString unknownCard()
{
    return QStringLiteral("is neither a built-in card nor a file; built-in cards: %1")
        .arg(builtInCardNames().join(QStringLiteral(", ")));
}

std::optional<CardDescription> loadFile(const QString &path, const QString &shownName,
                                        DescriptionError *error)
{
    *error = {shownName, {}, {}};
    // A pipe or a device could keep the reader waiting for ever.
    if (!QFileInfo(path).isFile()) {
        error->reason = QStringLiteral("is not a regular file");
        return std::nullopt;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error->reason = QStringLiteral("cannot be read: %1").arg(file.errorString());
        return std::nullopt;
    }
    return readDescription(file.read(LARGEST_DESCRIPTION + 1), shownName, error);
}

} // namespace

QStringList builtInCardNames()
{
    QStringList names;
    const QStringList files = QDir(cardFolder()).entryList(QDir::Files);
    for (const QString &file : files) {
        names << QFileInfo(file).completeBaseName();
    }
    names.sort();
    return names;
}

std::optional<CardDescription> loadCard(const QString &nameOrPath, DescriptionError *error)
{
    if (builtInCardNames().contains(nameOrPath)) {
        const QString file = nameOrPath + QStringLiteral(".json");
        return loadFile(cardFolder() + file, file, error);
    }
    if (!QFileInfo::exists(nameOrPath)) {
        *error = {nameOrPath.isEmpty() ? QStringLiteral("\"\"") : nameOrPath, {}, unknownCard()};
        return std::nullopt;
    }
    return loadFile(nameOrPath, nameOrPath, error);
}

} // namespace simulator
