#pragma once

// An option that a program does not have, and the one that was probably meant.

#include <optional>

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

namespace app
{

struct UnknownOption {
    QString typed;   ///< with its dashes, without a value
    QString nearest; ///< with its dashes; empty when the program has none like it
};

/**
 * The first option that `parser` has met in `arguments` and does not know; nothing when it knew
 * them all. `names`: those that it knows, without dashes.
 */
std::optional<UnknownOption> unknownOption(const QCommandLineParser &parser,
                                           const QStringList &arguments, const QStringList &names);

/** "`program` has no option --jso; did you mean --json?" */
QString toText(const UnknownOption &option, const QString &program);

} // namespace app
