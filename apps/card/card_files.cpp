#include "apps/card/card_files.h"

#include <algorithm>
#include <iterator>

#include <QDir>

#include "apps/card/card_output.h"
#include "apps/process/translation.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Card)

QByteArray cardJson(const Card &card)
{
    return indentedJson(toJson(card, QString()));
}

QByteArray photoBmp(const Card &card)
{
    return card.photo();
}

QByteArray fingerprintData(const Card &card)
{
    return card.fingerprints();
}

template <CardSide side>
QByteArray pictureJpeg(const Card &card)
{
    return card.picture(side);
}

template <CardSide side>
QString pictureNote(const Card &card)
{
    return missingPictureNote(card, side);
}

const std::vector<CardFile> &allFiles()
{
    static const std::vector<CardFile> files = {
        {"card.json", FileGroup::DATA, nullptr, {}, cardJson, nullptr},
        {"photo.bmp", FileGroup::DATA, "photo", InlinePart::PHOTO, photoBmp, missingPhotoNote},
        {"fingerprints.dat", FileGroup::DATA, "fingerprints", InlinePart::FINGERPRINTS,
         fingerprintData, nullptr},
        {"front.jpg", FileGroup::PICTURES, "frontPicture", InlinePart::PICTURES,
         pictureJpeg<CardSide::FRONT>, pictureNote<CardSide::FRONT>},
        {"back.jpg", FileGroup::PICTURES, "backPicture", InlinePart::PICTURES,
         pictureJpeg<CardSide::BACK>, pictureNote<CardSide::BACK>},
    };
    return files;
}

QString saveInNewFolder(const Card &card, const QString &folder)
{
    QString problem = writeFileSet(folder, contentsOf(card, CardFiles::ALL), ExistingFiles::REFUSE);
    if (!problem.isEmpty())
        QDir().rmdir(folder);
    return problem;
}

// A name in a folder has at most 255 bytes, and a letter at most three; a number may be added to
// it.
constexpr int LONGEST_FILE_NAME = 80;

/** A dot at the beginning would hide a folder, and two of them name another. */
bool isKeptInFileName(uint character)
{
    constexpr uint MIDDLE_DOT = 0x00B7; // of a name
    return QChar::isLetterOrNumber(character) || character == ' ' || character == '-' ||
           character == MIDDLE_DOT;
}

} // namespace

std::vector<CardFile> cardFiles(CardFiles which)
{
    std::vector<CardFile> files;
    std::copy_if(allFiles().begin(), allFiles().end(), std::back_inserter(files),
                 [&](const CardFile &file) {
                     return which == CardFiles::ALL || file.group == FileGroup::PICTURES;
                 });
    return files;
}

QStringList cardFileNames(CardFiles which)
{
    QStringList names;
    for (const CardFile &file : cardFiles(which))
        names << QLatin1String(file.name);
    return names;
}

QVector<NamedContent> contentsOf(const Card &card, CardFiles which)
{
    QVector<NamedContent> contents;
    for (const CardFile &file : cardFiles(which))
        contents.append({QLatin1String(file.name), file.content(card)});
    return contents;
}

QStringList missingFileNotes(const Card &card, CardFiles which)
{
    QStringList notes;
    for (const CardFile &file : cardFiles(which)) {
        if (file.missingNote == nullptr || !file.content(card).isNull())
            continue;
        const QString note = file.missingNote(card);
        if (!note.isEmpty())
            notes << filledIn(tr("%1; %2 is not written."), note, QLatin1String(file.name));
    }
    return notes;
}

QString saveInNextFolder(const Card &card, const QString &parent, QString *folder)
{
    const QString problem = makeNextNumberedFolder(parent, folder);
    return problem.isEmpty() ? saveInNewFolder(card, *folder) : problem;
}

QString saveInHoldersFolder(const Card &card, const QString &parent, QString *folder)
{
    const QString problem = makeNewFolder(parent, holderFileName(card), folder);
    return problem.isEmpty() ? saveInNewFolder(card, *folder) : problem;
}

QString holderFileName(const Card &card)
{
    QVector<uint> characters = (holderName(card) + QLatin1Char(' ') + holderNumber(card))
                                   .left(LONGEST_FILE_NAME)
                                   .trimmed()
                                   .toUcs4();
    for (uint &character : characters) {
        if (!isKeptInFileName(character))
            character = '_';
    }
    QString name = QString::fromUcs4(characters.constData(), characters.size());
    if (name.startsWith(QLatin1Char('-')))
        name[0] = QLatin1Char('_'); // programs would take it for an option
    return name.isEmpty() ? QString(QLatin1String(card.kindKey())) : name;
}

} // namespace app
