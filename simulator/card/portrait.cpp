// Chooses a portrait and finds its file in the compiled-in resource.

#include "simulator/card/portrait.h"

#include <QFile>

#include "simulator/card/seeded_bytes.h"

// At global scope: the macro declares a function of the generated code.
static void registerPortraits()
{
    Q_INIT_RESOURCE(simulator_portraits);
}

namespace simulator
{

namespace
{

const QString &portraitPath()
{
    // A static library's resource is not registered by itself.
    static const QString path = [] {
        registerPortraits();
        return QStringLiteral(":/idcard-simulator/portraits/%1-%2.bmp");
    }();
    return path;
}

} // namespace

std::uint8_t portraitOf(const CardDescription &card)
{
    const std::uint32_t seed = card.photoSeed.value_or(seedOf(card.idNumber.toUtf8()));
    const unsigned int first = card.sex == QLatin1String("2") ? 0 : PORTRAITS_OF_ONE_SEX;
    return static_cast<std::uint8_t>(first + seed % PORTRAITS_OF_ONE_SEX);
}

QByteArray portraitFile(std::uint8_t portrait)
{
    const bool isWoman = portrait < PORTRAITS_OF_ONE_SEX;
    QFile file(portraitPath()
                   .arg(isWoman ? QStringLiteral("woman") : QStringLiteral("man"))
                   .arg(portrait % PORTRAITS_OF_ONE_SEX));
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

} // namespace simulator
