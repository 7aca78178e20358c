#pragma once

// What the service has idcard-reader do, and what that prints as the bus carries it.

#include <optional>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include "apps/service/service_errors.h"

namespace app
{

/** What is wrong with the parts of a card that are asked for; empty: nothing. */
QString problemOfParts(const QStringList &parts);

/** What is wrong with a time limit; empty: nothing. */
QString problemOfTimeout(unsigned int milliseconds);

/** The arguments of idcard-reader. */
QStringList readArguments(const QStringList &parts, unsigned int timeoutMs);
QStringList watchArguments(const QStringList &parts);

/** Why there is no card. */
struct ReadFailure {
    ServiceError error;
    ErrorTexts texts;
};

/** Nothing if the output of "read" is a card. */
std::optional<ReadFailure> failureIn(const QByteArray &output);

struct ServiceSignal {
    QString name;
    QVariantList arguments;
};

/** That of a line of "watch", without its end; nothing when the tool would not print it. */
std::optional<ServiceSignal> signalOf(const QByteArray &line);

/** That of a tool which failed itself. */
ServiceSignal brokenWatchSignal();

} // namespace app
