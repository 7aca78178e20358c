// Texts derived from a card's codes.

#include "simulator/card/card_description.h"

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
    switch (kind) {
    case CardKind::RESIDENT:
        break;
    case CardKind::HMT:
        return QStringLiteral("hmt");
    case CardKind::FOREIGN2017:
        return QStringLiteral("foreign-2017");
    case CardKind::FOREIGN_NEW:
        return QStringLiteral("foreign-new");
    }
    return QStringLiteral("resident");
}

} // namespace simulator
