#include "apps/reading/simulator_library.h"

#include <array>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include "apps/process/translation.h"
#include "common/texts.h"

namespace app
{

namespace
{

constexpr const char *LIBRARY_NAME = "libidcard_simulator.so";
constexpr const char *LIBRARY_VARIABLE = "IDCARD_SIMULATOR_LIBRARY";

IDCARD_TEXTS(Simulator)

using MessageBuffer = std::array<char, 1024>;

QStringList libraryPlaces()
{
    const QString named = qEnvironmentVariable(LIBRARY_VARIABLE);
    if (!named.isEmpty())
        return {named};
    const QDir programFolder(QCoreApplication::applicationDirPath());
    QStringList places;
    for (const QString &folder :
         {programFolder.path(), programFolder.filePath(QStringLiteral("../lib")),
          QStringLiteral(IDCARD_INSTALL_LIBDIR)})
        places << QDir::cleanPath(QDir(folder).filePath(QLatin1String(LIBRARY_NAME)));
    places.removeDuplicates();
    return places;
}

SimulatorProblem loadProblem(const QString &reason)
{
    return {filledIn(tr("The simulator could not be loaded: %1. Build or install %2, or name it in "
                        "the environment variable %3."),
                     reason, QLatin1String(LIBRARY_NAME), QLatin1String(LIBRARY_VARIABLE)),
            ExitStatus::PROGRAM_FAILED};
}

SimulatorProblem refusal(const QString &sentence, const MessageBuffer &message)
{
    return {sentence.arg(QString::fromUtf8(message.data())), ExitStatus::WRONG_USAGE};
}

SimulatorProblem refusalOfCard(const MessageBuffer &message)
{
    return refusal(tr("The simulator refuses the card: %1"), message);
}

} // namespace

SimulatorProblem SimulatorLibrary::load()
{
    if (isLoaded())
        return {};
    const QStringList places = libraryPlaces();
    QString path;
    for (const QString &place : places) {
        if (QFileInfo::exists(place)) {
            path = place;
            break;
        }
    }
    if (path.isEmpty())
        return loadProblem(tr("there is no %1").arg(places.join(", ")));

    // The reader functions must be found by everything in the process.
    m_library.setFileName(QFileInfo(path).absoluteFilePath());
    m_library.setLoadHints(QLibrary::ExportExternalSymbolsHint);
    if (!m_library.load())
        return loadProblem(m_library.errorString());
    m_putCard =
        reinterpret_cast<decltype(m_putCard)>(m_library.resolve("idcard_simulator_put_card"));
    m_putPlainCard = reinterpret_cast<decltype(m_putPlainCard)>(
        m_library.resolve("idcard_simulator_put_plain_card"));
    m_takeCard =
        reinterpret_cast<decltype(m_takeCard)>(m_library.resolve("idcard_simulator_take_card"));
    m_setFaults =
        reinterpret_cast<decltype(m_setFaults)>(m_library.resolve("idcard_simulator_set_faults"));
    if (m_putCard == nullptr || m_putPlainCard == nullptr || m_takeCard == nullptr ||
        m_setFaults == nullptr)
        return loadProblem(tr("%1 is not a simulator of this version").arg(path));
    m_path = path;
    return {};
}

SimulatorProblem SimulatorLibrary::putCard(const QString &card)
{
    MessageBuffer message{};
    if (m_putCard(QFile::encodeName(card).constData(), message.data(), message.size()) == 0)
        return {};
    return refusalOfCard(message);
}

SimulatorProblem SimulatorLibrary::putPlainCard(const QString &card)
{
    MessageBuffer message{};
    if (m_putPlainCard(QFile::encodeName(card).constData(), message.data(), message.size()) == 0)
        return {};
    return refusalOfCard(message);
}

void SimulatorLibrary::takeCard()
{
    m_takeCard();
}

SimulatorProblem SimulatorLibrary::setFaults(const QString &faults)
{
    MessageBuffer message{};
    if (m_setFaults(faults.toUtf8().constData(), message.data(), message.size()) == 0)
        return {};
    return refusal(tr("The simulator refuses the faults: %1"), message);
}

} // namespace app
