#pragma once

// What "idcard-reader watch" prints, as the signals of the service.

#include <optional>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariantList>

namespace app
{

/** The arguments of idcard-reader. */
QStringList watchArguments(const QStringList &parts);

struct ServiceSignal {
    QString name;
    QVariantList arguments;
};

/** The signal that a line, without its end, is; nothing when the tool would not print it. */
std::optional<ServiceSignal> signalOf(const QByteArray &line);

/** That of a tool which failed itself. */
ServiceSignal brokenWatchSignal();

} // namespace app
