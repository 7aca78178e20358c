#include "apps/process/unknown_option.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "apps/process/text_layout.h"

namespace app
{

namespace
{

constexpr int MOST_SLIPS = 2;

/** How many letters must be put in, left out or exchanged for others to make `wanted` of `typed`.
 */
int slipsBetween(const QString &typed, const QString &wanted)
{
    std::vector<int> row(static_cast<std::size_t>(wanted.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (const QChar letter : typed) {
        int diagonal = row[0]++;
        for (std::size_t at = 1; at < row.size(); ++at) {
            const int exchanged = diagonal + (letter == wanted[static_cast<int>(at) - 1] ? 0 : 1);
            diagonal = row[at];
            row[at] = std::min({exchanged, diagonal + 1, row[at - 1] + 1});
        }
    }
    return row.back();
}

QString nearest(const QString &typed, const QStringList &names)
{
    QString best;
    // As many slips as letters would make any word of it.
    int fewest = std::min(MOST_SLIPS + 1, typed.size());
    for (const QString &name : names) {
        const int slips = name.startsWith(typed) ? 1 : slipsBetween(typed, name);
        if (slips < fewest) {
            best = name;
            fewest = slips;
        }
    }
    return best;
}

QString asTyped(const QString &name, const QStringList &arguments)
{
    for (const QString &dashes : {QStringLiteral("--"), QStringLiteral("-")}) {
        QString option = dashes + name;
        const auto isIt = [&option](const QString &argument) {
            return argument == option || argument.startsWith(option + QLatin1Char('='));
        };
        if (std::any_of(arguments.begin(), arguments.end(), isIt))
            return option;
    }
    return QLatin1String(name.size() == 1 ? "-" : "--") + name; // one of several letters in a row
}

} // namespace

std::optional<UnknownOption> unknownOption(const QCommandLineParser &parser,
                                           const QStringList &arguments, const QStringList &names)
{
    if (parser.unknownOptionNames().isEmpty())
        return std::nullopt;
    const QString name = parser.unknownOptionNames().first();
    const QString meant = nearest(name, names);
    return UnknownOption{asTyped(name, arguments),
                         meant.isEmpty() ? QString() : QStringLiteral("--") + meant};
}

QString toText(const UnknownOption &option, const QString &program)
{
    return option.nearest.isEmpty()
               ? QStringLiteral("%1 has no option %2.").arg(program, printable(option.typed))
               : QStringLiteral("%1 has no option %2; did you mean %3?")
                     .arg(program, printable(option.typed), option.nearest);
}

} // namespace app
