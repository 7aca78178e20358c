#pragma once

// Files, what a folder holds, and the rights of what is in it.

#include <map>
#include <string>
#include <vector>

#include <QString>

/** Names and contents of all files of a folder, hidden ones too; "<folder>" for a folder. */
std::map<std::string, std::string> folderState(const QString &folder);

/** The names of all files and folders in a folder, ascending. */
std::vector<std::string> namesIn(const QString &folder);

/** Rights of a file or folder as `chmod` writes them, 0600 for instance; -1 when there is none. */
int modeOf(const QString &path);

void writeFile(const QString &path, const QByteArray &content);
QByteArray readFile(const QString &path);

/** The text of a file of this tree. */
QString sourceText(const QString &path);
