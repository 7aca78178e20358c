#pragma once

// The text keys of a card description as a table: which kinds of card have them, how long they may
// be and what form they take. Lengths are those of the card's own text block; the record of the
// makers' library has room for just as many characters.

#include <array>
#include <cstddef>

#include "simulator/card/card_description.h"

namespace simulator
{

enum class TextForm { FREE, DATE, END_DATE, DIGITS, SEX_CODE, TWO_DIGITS, COUNTRY_CODE };

enum class KeyUse { ABSENT, OPTIONAL, REQUIRED };

struct KeyRule {
    KeyUse use = KeyUse::ABSENT;
    int characters = 0; ///< most UCS-2 characters
};

struct TextKey {
    const char *name;
    QString CardDescription::*text;
    TextForm form;
    std::array<KeyRule, CARD_KIND_COUNT> rules; ///< in the order of `CardKind`

    [[nodiscard]] const KeyRule &rule(CardKind kind) const
    {
        return rules[static_cast<std::size_t>(kind)];
    }
};

struct TextKeyList {
    const TextKey *first;
    const TextKey *last;
    [[nodiscard]] const TextKey *begin() const { return first; }
    [[nodiscard]] const TextKey *end() const { return last; }
};

TextKeyList textKeys();

/** The key named `name`, or nullptr. */
const TextKey *findTextKey(const QString &name);

/** Why `text` cannot be the text of `key` on a card of `kind`; empty when it can. */
QString textProblem(const TextKey &key, CardKind kind, const QString &text);

} // namespace simulator
