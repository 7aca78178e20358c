#pragma once

// What a program says to people, in the user's language: what happened as a headline, and lines
// that belong to it, such as the code, the cause and what to do.

#include <QString>
#include <QStringList>

#include "apps/results/result_catalogue.h"

namespace app
{

struct Message {
    QString headline;
    QStringList lines = {}; ///< one that begins with a blank is a command
};

/** A row of a catalogue; `details` are lines such as "Device: ..." that follow the code. */
Message messageOf(const ResultEntry &entry, const QStringList &details = {});

/** Where more is said about a failure that ends a program like this; empty when nowhere. */
QString moreAbout(ExitStatus status);

/** A code that is in no catalogue. */
Message unknownCodeMessage(int code);

/** "What to do: ...", "Cause: ...", "Code: ..." */
QString remedyLine(const QString &remedy);
QString causeLine(const QString &cause);
QString codeLine(int code, const QString &name);

/** Over several lines that fit a terminal behind the program's name; a headline alone is one. */
QString terminalText(const Message &message);

} // namespace app
