#pragma once

// The name that somebody meant who typed another.

#include <algorithm>
#include <numeric>
#include <vector>

#include <QString>
#include <QStringList>

/** How many letters must be put in, left out or exchanged for others to make `wanted` of `typed`.
 */
inline int slipsBetween(const QString &typed, const QString &wanted)
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

/**
 * The one of `names` that `typed` begins or that is two slips away from it at most; the nearest of
 * several, empty when there is none.
 */
inline QString nearestName(const QString &typed, const QStringList &names)
{
    constexpr int MOST_SLIPS = 2;
    QString best;
    // As many slips as letters would make any word of it.
    int fewest = std::min(MOST_SLIPS + 1, typed.size());
    for (const QString &name : names) {
        if (typed.size() > name.size() + MOST_SLIPS)
            continue; // however long it is
        const int slips = name.startsWith(typed) ? 1 : slipsBetween(typed, name);
        if (slips < fewest) {
            best = name;
            fewest = slips;
        }
    }
    return best;
}
