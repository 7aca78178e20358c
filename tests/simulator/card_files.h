#pragma once

// The description files of the built-in cards as they stand in the source tree, read without the
// reader that is under test.

#include <string>
#include <vector>

#include <QJsonObject>
#include <QStringList>

/** Names of the files without their suffix, in alphabetical order. */
QStringList sourceCardNames();
std::vector<std::string> sourceCardParameters();

/** The content of one file. */
QJsonObject sourceCard(const QString &name);
