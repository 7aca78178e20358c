#include "apps/card_files.h"

#include "apps/card_output.h"

namespace app
{

namespace
{

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

} // namespace

const std::vector<CardFile> &cardFiles()
{
    static const std::vector<CardFile> files = {
        {"card.json", nullptr, cardJson},
        {"photo.bmp", "photo", photoBmp},
        {"fingerprints.dat", "fingerprints", fingerprintData},
    };
    return files;
}

QStringList cardFileNames()
{
    QStringList names;
    for (const CardFile &file : cardFiles())
        names << QLatin1String(file.name);
    return names;
}

QVector<NamedContent> contentsOf(const Card &card)
{
    QVector<NamedContent> contents;
    for (const CardFile &file : cardFiles())
        contents.append({QLatin1String(file.name), file.content(card)});
    return contents;
}

} // namespace app
