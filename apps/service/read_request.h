#pragma once

// What a program asks of a reading, and what idcard-reader made of it.

#include <optional>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "apps/service/service_errors.h"

namespace app
{

/** What is wrong with the parts of a card that are asked for; empty: nothing. */
QString problemOfParts(const QStringList &parts);

/** What is wrong with a time limit; empty: nothing. */
QString problemOfTimeout(unsigned int milliseconds);

/** The arguments of idcard-reader. */
QStringList readArguments(const QStringList &parts, unsigned int timeoutMs);

/** Why there is no card. */
struct ReadFailure {
    ServiceError error;
    ErrorTexts texts;
};

/** Nothing if the output is a card. */
std::optional<ReadFailure> failureIn(const QByteArray &output);

} // namespace app
