#include "tests/support/files.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <sys/stat.h>

std::map<std::string, std::string> folderState(const QString &folder)
{
    std::map<std::string, std::string> state;
    const auto entries = QDir(folder).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                                    QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        const std::string content =
            entry.isDir() ? "<folder>" : readFile(entry.filePath()).toStdString();
        state.emplace(entry.fileName().toStdString(), content);
    }
    return state;
}

std::vector<std::string> namesIn(const QString &folder)
{
    std::vector<std::string> names;
    for (const auto &entry : folderState(folder))
        names.push_back(entry.first);
    return names;
}

int modeOf(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) {
        return -1;
    }
    return static_cast<int>(status.st_mode & 07777U);
}

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(file.write(content), content.size());
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

QString sourceText(const QString &path)
{
    return QString::fromUtf8(readFile(QStringLiteral(IDCARD_SOURCE_DIR "/") + path));
}
