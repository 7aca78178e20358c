// Which text of a card goes where in the makers' record, as a table, and the code that walks it.

#include "simulator/card/vendor_record.h"

#include <cstddef>

#include "simulator/card/text_fields.h"

namespace simulator
{

namespace
{

using Card = CardDescription;
using Info = CardInfoStruct;

constexpr CardKind CN = CardKind::RESIDENT;
constexpr CardKind HMT = CardKind::HMT;
constexpr CardKind F17 = CardKind::FOREIGN2017;
constexpr CardKind NEW = CardKind::FOREIGN_NEW;

// clang-format off: one row a line.
constexpr TextField FIELDS[] = {
    {CN, offsetof(Info, cn.name), sizeof(Info::cn.name), from<&Card::name>},
    {CN, offsetof(Info, cn.sex), sizeof(Info::cn.sex), sexText},
    {CN, offsetof(Info, cn.nation), sizeof(Info::cn.nation), ethnicGroupText},
    {CN, offsetof(Info, cn.birthDate), sizeof(Info::cn.birthDate), from<&Card::birthDate>},
    {CN, offsetof(Info, cn.address), sizeof(Info::cn.address), from<&Card::address>},
    {CN, offsetof(Info, cn.id), sizeof(Info::cn.id), from<&Card::idNumber>},
    {CN, offsetof(Info, cn.dept), sizeof(Info::cn.dept), from<&Card::issuingAuthority>},
    {CN, offsetof(Info, cn.validStart), sizeof(Info::cn.validStart), from<&Card::validFrom>},
    {CN, offsetof(Info, cn.validEnd), sizeof(Info::cn.validEnd), from<&Card::validTo>},

    {HMT, offsetof(Info, hmt.name), sizeof(Info::hmt.name), from<&Card::name>},
    {HMT, offsetof(Info, hmt.sex), sizeof(Info::hmt.sex), sexText},
    {HMT, offsetof(Info, hmt.birthDate), sizeof(Info::hmt.birthDate), from<&Card::birthDate>},
    {HMT, offsetof(Info, hmt.address), sizeof(Info::hmt.address), from<&Card::address>},
    {HMT, offsetof(Info, hmt.id), sizeof(Info::hmt.id), from<&Card::idNumber>},
    {HMT, offsetof(Info, hmt.dept), sizeof(Info::hmt.dept), from<&Card::issuingAuthority>},
    {HMT, offsetof(Info, hmt.validStart), sizeof(Info::hmt.validStart), from<&Card::validFrom>},
    {HMT, offsetof(Info, hmt.validEnd), sizeof(Info::hmt.validEnd), from<&Card::validTo>},
    {HMT, offsetof(Info, hmt.passNumber), sizeof(Info::hmt.passNumber),
     from<&Card::travelPermitNumber>},

    {F17, offsetof(Info, foreign2017.englishName), sizeof(Info::foreign2017.englishName),
     from<&Card::englishName>},
    {F17, offsetof(Info, foreign2017.sex), sizeof(Info::foreign2017.sex), sexText},
    {F17, offsetof(Info, foreign2017.id), sizeof(Info::foreign2017.id), from<&Card::idNumber>},
    {F17, offsetof(Info, foreign2017.chineseName), sizeof(Info::foreign2017.chineseName),
     from<&Card::chineseName>},
    {F17, offsetof(Info, foreign2017.validStart), sizeof(Info::foreign2017.validStart),
     from<&Card::validFrom>},
    {F17, offsetof(Info, foreign2017.validEnd), sizeof(Info::foreign2017.validEnd),
     from<&Card::validTo>},
    {F17, offsetof(Info, foreign2017.birthDate), sizeof(Info::foreign2017.birthDate),
     from<&Card::birthDate>},
    {F17, offsetof(Info, nationality), sizeof(Info::nationality), from<&Card::nationality>},

    {NEW, offsetof(Info, foreignNew.chineseName), sizeof(Info::foreignNew.chineseName),
     from<&Card::chineseName>},
    {NEW, offsetof(Info, foreignNew.sex), sizeof(Info::foreignNew.sex), sexText},
    {NEW, offsetof(Info, foreignNew.extra), sizeof(Info::foreignNew.extra), from<&Card::cardExtra>},
    {NEW, offsetof(Info, foreignNew.birthDate), sizeof(Info::foreignNew.birthDate),
     from<&Card::birthDate>},
    {NEW, offsetof(Info, foreignNew.englishName), sizeof(Info::foreignNew.englishName),
     from<&Card::englishName>},
    {NEW, offsetof(Info, foreignNew.id), sizeof(Info::foreignNew.id), from<&Card::idNumber>},
    {NEW, offsetof(Info, foreignNew.validStart), sizeof(Info::foreignNew.validStart),
     from<&Card::validFrom>},
    {NEW, offsetof(Info, foreignNew.validEnd), sizeof(Info::foreignNew.validEnd),
     from<&Card::validTo>},
    {NEW, offsetof(Info, nationality), sizeof(Info::nationality), from<&Card::nationality>},
};
// clang-format on

std::int32_t kindWord(CardKind kind)
{
    switch (kind) {
    case CardKind::RESIDENT:
        break;
    case CardKind::HMT:
        return CARD_INFO_KIND_HMT;
    case CardKind::FOREIGN2017:
        return CARD_INFO_KIND_FOREIGN_2017;
    case CardKind::FOREIGN_NEW:
        return CARD_INFO_KIND_FOREIGN_NEW;
    }
    return CARD_INFO_KIND_CN;
}

} // namespace

CardInfoStruct vendorRecord(const CardDescription &card)
{
    CardInfoStruct info = {};
    info.kind = kindWord(card.kind);
    auto *bytes = reinterpret_cast<unsigned char *>(&info);
    const QChar rest = card.padding == Padding::SPACES ? QLatin1Char(' ') : QLatin1Char('\0');
    for (const TextField &field : FIELDS) {
        if (field.kind == card.kind)
            putText(bytes + field.offset, field.size, field.text(card), rest);
    }
    return info;
}

} // namespace simulator
