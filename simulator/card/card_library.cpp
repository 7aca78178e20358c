// Finds card descriptions in the compiled-in resource and in the file system.

#include "simulator/card/card_library.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "common/card_records.h"
#include "common/nearest_name.h"
#include "common/texts.h"
#include "simulator/translated_texts.h"

// At global scope: the macro declares a function of the generated code.
static void registerCards()
{
    Q_INIT_RESOURCE(simulator_cards);
}

namespace simulator
{

namespace
{

SIMULATOR_TEXTS(Descriptions)

const QString &cardFolder()
{
    // A static library's resource is not registered by itself.
    static const QString folder = [] {
        registerCards();
        return QStringLiteral(":/idcard-simulator/cards/");
    }();
    return folder;
}

QString unknownCard(const QString &name)
{
    const QString meant = nearestName(name, builtInCardNames());
    return meant.isEmpty()
               ? tr("is neither a built-in card nor a file; \"idcard-reader cards\" lists the "
                    "built-in cards")
               : tr("is neither a built-in card nor a file; did you mean %1?").arg(meant);
}

// The content of a file, and one byte at most of what it has beyond `most`; null, and `problem`
// set, when it cannot be read.
QByteArray contentOf(const QString &path, int most, QString *problem)
{
    // A pipe or a device could keep the reader waiting for ever.
    if (!QFileInfo(path).isFile()) {
        *problem = tr("is not a regular file");
        return {};
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *problem = tr("cannot be read: %1").arg(file.errorString());
        return {};
    }
    return file.read(most + 1);
}

// Loads the photo's own file, which is in `folder`; false, and `problem` set, when it cannot be.
bool loadPhotoFile(CardDescription *card, const QString &folder, QString *problem)
{
    constexpr int LARGEST = int{IDCARD_PHOTO_SIZE};
    card->photoFileData = contentOf(folder + QLatin1Char('/') + card->photoFile, LARGEST, problem);
    if (problem->isEmpty() && card->photoFileData.size() > LARGEST)
        *problem = tr("is larger than a photo may be (%1 bytes)").arg(LARGEST);
    if (problem->isEmpty())
        return true;
    *problem = filledIn(tr("\"%1\" %2"), card->photoFile, *problem);
    return false;
}

std::optional<CardDescription> loadFile(const QString &path, const QString &shownName,
                                        DescriptionError *error)
{
    *error = {shownName, {}, {}};
    const QByteArray json = contentOf(path, LARGEST_DESCRIPTION, &error->reason);
    if (!error->reason.isEmpty())
        return std::nullopt;
    std::optional<CardDescription> card = readDescription(json, shownName, error);
    if (card && card->photoDelivery == PhotoDelivery::OWN_FILE &&
        !loadPhotoFile(&*card, QFileInfo(path).path(), &error->reason)) {
        error->key = QStringLiteral("photo.file");
        return std::nullopt;
    }
    return card;
}

} // namespace

QStringList builtInCardNames()
{
    QStringList names;
    const QStringList files = QDir(cardFolder()).entryList({QStringLiteral("*.json")}, QDir::Files);
    for (const QString &file : files)
        names << QFileInfo(file).completeBaseName();
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
        *error = {nameOrPath.isEmpty() ? QStringLiteral("\"\"") : nameOrPath,
                  {},
                  unknownCard(nameOrPath)};
        return std::nullopt;
    }
    return loadFile(nameOrPath, nameOrPath, error);
}

} // namespace simulator
