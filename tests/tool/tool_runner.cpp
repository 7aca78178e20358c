#include "tests/tool/tool_runner.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QJsonDocument>

#include <csignal>

#include "simulator/card/raw_record.h"
#include "tests/support/files.h"

namespace
{

const QString TOOL = QStringLiteral("idcard-reader");

ProcessInput cleaned(ProcessInput input)
{
    for (const char *name : {"IDCARD_SIMULATOR_CARD", "IDCARD_SIMULATOR_FAULTS",
                             "IDCARD_SIMULATOR_LIBRARY", "DISPLAY", "WAYLAND_DISPLAY"}) {
        if (!input.environment.contains(QLatin1String(name)))
            input.environment.insert(QLatin1String(name), QString());
    }
    return input;
}

} // namespace

ProcessResult runTool(const QStringList &arguments, const ProcessInput &input)
{
    return runProcess(TOOL, arguments, cleaned(input));
}

RunningTool::RunningTool(const QStringList &arguments, const ProcessInput &input)
    : RunningProcess(TOOL, arguments, cleaned(input))
{
}

ProcessResult RunningTool::endedBy(int number)
{
    signal(number);
    return result();
}

void expectEndByLossOfItsReader(const ProcessResult &run)
{
    EXPECT_EQ(run.signal, SIGPIPE);
    EXPECT_EQ(run.error(), "");
}

void expectNothingOf(const simulator::CardDescription &card, const QByteArray &text)
{
    for (const QString &part :
         {card.name, card.englishName, card.chineseName, card.address, card.idNumber,
          card.issuingAuthority, card.travelPermitNumber, card.birthDate, card.nationality})
        EXPECT_TRUE(part.isEmpty() || !text.contains(part.toUtf8())) << text.toStdString();
}

QJsonObject parsedObject(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << json.toStdString();
    return document.object();
}

QVector<QJsonObject> parsedLines(const QByteArray &lines)
{
    QVector<QJsonObject> objects;
    if (lines.isEmpty())
        return objects;
    EXPECT_TRUE(lines.endsWith('\n'));
    for (const QByteArray &line : lines.left(lines.size() - 1).split('\n'))
        objects << parsedObject(line);
    return objects;
}

QString errorNameIn(const QByteArray &json)
{
    return parsedObject(json)["error"].toObject()["name"].toString();
}

QByteArray recordOf(const QString &card)
{
    return simulator::readAnswer(builtInCard(card), {});
}

QString FolderTest::recordFile(const QByteArray &record) const
{
    QString file = path("card.rec");
    writeFile(file, record);
    return file;
}

InstalledReader::InstalledReader(const QString &fileName)
{
    const QString library = QDir(QStringLiteral(IDCARD_BUILD_LIB_DIR)).filePath(fileName);
    for (const char *name : {IDCARD_VENDOR_READER_LIBRARY, IDCARD_WLT_LIBRARY})
        EXPECT_TRUE(QFile::link(library, m_folder.filePath(QLatin1String(name))));
}

QMap<QString, QString> InstalledReader::variables(const QString &card, const QString &faults) const
{
    return {{QStringLiteral("LD_LIBRARY_PATH"), m_folder.path()},
            {QStringLiteral("IDCARD_SIMULATOR_CARD"), card},
            {QStringLiteral("IDCARD_SIMULATOR_FAULTS"), faults}};
}
