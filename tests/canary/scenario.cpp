#include "tests/canary/scenario.h"

#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>

#include "tests/support/files.h"

namespace canary
{

namespace
{

/** Environment variables that lead programs to folders, and the folders. */
constexpr struct {
    const char *variable;
    const char *folder;
} FOLDERS[] = {
    {"HOME", "home"},
    {"TMPDIR", "tmp"},
    {"XDG_CACHE_HOME", "cache"},
    {"XDG_CONFIG_HOME", "config"},
    {"XDG_DATA_HOME", "data"},
    {"XDG_STATE_HOME", "state"},
    {"XDG_RUNTIME_DIR", "runtime"},
};

/** How long a reading took may be any number, also a card's. */
QByteArray withoutDurations(const QByteArray &messages)
{
    static const QRegularExpression duration(QStringLiteral("\\bafter [0-9]+ ms\\b"));
    return QString::fromLatin1(messages).remove(duration).toLatin1();
}

} // namespace

Surroundings::Surroundings()
{
    const QDir root(m_root.path());
    root.mkdir("work");
    for (const auto &row : FOLDERS) {
        root.mkdir(QLatin1String(row.folder));
        QFile::setPermissions(root.filePath(QLatin1String(row.folder)),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
}

QString Surroundings::input(const QString &name, const QByteArray &content) const
{
    QString path = m_inputs.filePath(name);
    writeFile(path, content);
    return path;
}

QMap<QString, QString> Surroundings::environment() const
{
    QMap<QString, QString> variables;
    for (const auto &row : FOLDERS)
        variables[QLatin1String(row.variable)] = m_root.filePath(QLatin1String(row.folder));
    return variables;
}

ProcessInput Surroundings::processInput(QMap<QString, QString> more) const
{
    ProcessInput input;
    input.environment = environment();
    for (auto it = more.cbegin(); it != more.cend(); ++it)
        input.environment[it.key()] = it.value();
    input.workingDirectory = workFolder();
    return input;
}

Findings Surroundings::findings(const ProcessResult &result, const std::vector<Mark> &marks) const
{
    Findings findings;
    const auto search = [&findings, &marks](const QString &place, const QByteArray &bytes) {
        const MarkNames names = found(bytes, marks);
        if (!names.empty())
            findings[place.toStdString()].insert(names.begin(), names.end());
    };
    search("stdout", result.standardOutput);
    search("stderr", withoutDurations(result.standardError));
    const QDir root(m_root.path());
    QDirIterator files(root.path(), QDir::Files | QDir::Hidden | QDir::System,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        search(root.relativeFilePath(path), readFile(path));
        search(root.relativeFilePath(path),
               QFile::encodeName(root.relativeFilePath(path))); // a name can reveal data too
    }
    return findings;
}

} // namespace canary
