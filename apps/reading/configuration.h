#pragma once

// What a machine and its user say once instead of on every command line: by which road cards are
// read, from which reader, and for how long. The files hold lines of "key = value", and comments
// after #.

#include <vector>

#include <QString>
#include <QStringList>
#include <QVector>

#include "apps/terminal/command_line.h"

namespace app
{

/** The words for the two roads to a reader. */
const QLatin1String LIBRARY_ROAD("library");
const QLatin1String USB_ROAD("usb");

/** The settings: options whose names are the keys, and which take the same values. */
const std::vector<Option> &settings();

/** The setting of this key with what it means to a command. */
Option settingOption(const char *key, const QString &meaning);

/** A line of a configuration file. */
struct Setting {
    QString key;
    QString value;
    int line;
};

struct ConfigurationFile {
    QString path;
    bool isThere = false;
    QVector<Setting> settings = {}; ///< those before the mistake
    /** What is wrong with it, and what to do; empty: nothing. */
    QString mistake = {};
    QString remedy = {};
    int mistakeLine = 0; ///< 0: it is wrong as a whole

    /** The mistake with the file and the line; empty without one. */
    QString placedMistake() const;
};

/** In the order of their files: a later one replaces what an earlier one says. */
using Configuration = QVector<ConfigurationFile>;

/** That of the machine, and that of the user, who may have none. */
QStringList configurationPaths();

/** Reads the files; one that is not there says nothing. */
Configuration readConfiguration(const QStringList &paths);

/** The value of a setting; empty when no file has it. */
QString valueIn(const Configuration &configuration, const QString &key);

} // namespace app
