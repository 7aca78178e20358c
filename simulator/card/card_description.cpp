// Texts derived from a card's codes.

#include "simulator/card/card_description.h"

#include <array>

#include "common/ethnic_groups.h"
#include "common/sex_codes.h"

namespace simulator
{

QString sexText(const CardDescription &card)
{
    return QString::fromUtf8(sexLabel(card.sex.toInt()));
}

QString ethnicGroupText(const CardDescription &card)
{
    return QString::fromUtf8(ethnicGroupName(card.ethnicGroup.toInt()));
}

QString cardKindName(CardKind kind)
{
    constexpr std::array<const char *, CARD_KIND_COUNT> NAMES = {"resident", "hmt", "foreign-2017",
                                                                 "foreign-new"};
    return QLatin1String(NAMES.at(static_cast<std::size_t>(kind)));
}

} // namespace simulator
