// The built-in cards: complete, invented beyond doubt, and together a case for everything that
// cards can differ in.

#include <algorithm>
#include <map>
#include <set>

#include <gmock/gmock.h>

#include "tests/simulator/built_in_card.h"
#include "tests/simulator/card_files.h"

using namespace simulator;
using testing::IsSupersetOf;

namespace
{

std::vector<CardDescription> allCards()
{
    std::vector<CardDescription> cards;
    for (const QString &name : builtInCardNames())
        cards.push_back(builtInCard(name));
    return cards;
}

// ISO 7064 MOD 11-2, the check character of numbers of 18 characters.
char mod11Check(const std::string &digits)
{
    // The pure system: the weighted sum of all characters, check included, is 1 modulo 11.
    int weight = 2;
    int weighted = 0;
    for (auto it = digits.rbegin(); it != digits.rend(); ++it) {
        weighted = (weighted + (*it - '0') * weight) % 11;
        weight = weight * 2 % 11;
    }
    const int check = (12 - weighted) % 11;
    return check == 10 ? 'X' : static_cast<char>('0' + check);
}

// ICAO 9303: weights 7, 3, 1 over digits and letters (A is 10), modulo 10.
char icaoCheck(const std::string &text)
{
    constexpr int WEIGHTS[] = {7, 3, 1};
    int sum = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int value = text[i] >= 'A' ? text[i] - 'A' + 10 : text[i] - '0';
        sum += value * WEIGHTS[i % 3];
    }
    return static_cast<char>('0' + sum % 10);
}

int most(const std::vector<CardDescription> &cards, CardKind kind, QString CardDescription::*text)
{
    int length = 0;
    for (const CardDescription &card : cards) {
        if (card.kind == kind)
            length = std::max(length, (card.*text).size());
    }
    return length;
}

template <typename Function>
auto collected(Function function)
{
    std::set<decltype(function(CardDescription()))> values;
    for (const CardDescription &card : allCards())
        values.insert(function(card));
    return values;
}

} // namespace

TEST(BuiltInCards, Names_AreThoseOfTheFilesInAlphabeticalOrder)
{
    EXPECT_GE(builtInCardNames().size(), 16);
    EXPECT_EQ(builtInCardNames(), sourceCardNames());
}

TEST(BuiltInCards, Numbers_EndInTheirCheckCharacters)
{
    // The standards' own examples.
    EXPECT_EQ(mod11Check("079"), 'X');
    EXPECT_EQ(mod11Check("0794"), '0');
    EXPECT_EQ(icaoCheck("520727"), '3');
    for (const CardDescription &card : allCards()) {
        const bool isShort = card.kind == CardKind::FOREIGN2017;
        const std::string number = card.idNumber.toStdString();
        ASSERT_EQ(number.size(), isShort ? 15U : 18U);
        const std::string checked = number.substr(0, number.size() - 1);
        EXPECT_EQ(number.back(), isShort ? icaoCheck(checked) : mod11Check(checked)) << number;
    }
}

TEST(BuiltInCards, Numbers_LieInRegionsAssignedToNobody)
{
    const std::map<CardKind, std::set<QString>> regions = {
        {CardKind::RESIDENT, {QStringLiteral("990000")}},
        {CardKind::HMT,
         {QStringLiteral("819999"), QStringLiteral("829999"), QStringLiteral("839999"),
          QStringLiteral("849999")}},
    };
    for (const CardDescription &card : allCards()) {
        const QString number = card.idNumber;
        switch (card.kind) {
        case CardKind::RESIDENT:
        case CardKind::HMT:
            EXPECT_EQ(regions.at(card.kind).count(number.left(6)), 1U) << number.toStdString();
            break;
        case CardKind::FOREIGN2017:
            EXPECT_EQ(number.left(7), card.nationality + QStringLiteral("9900"));
            break;
        case CardKind::FOREIGN_NEW:
            EXPECT_EQ(number.left(3), QStringLiteral("999"));
            break;
        }
    }
}

TEST(BuiltInCards, NumbersHoldTheDateOfBirthAndOccurOnce_AndEachCardHasATitle)
{
    std::set<QString> numbers;
    for (const CardDescription &card : allCards()) {
        const bool shortDate = card.kind == CardKind::FOREIGN2017;
        const int position = shortDate ? 7 : 6;
        const QString date = shortDate ? card.birthDate.mid(2) : card.birthDate;
        EXPECT_EQ(card.idNumber.mid(position, date.size()), date) << card.idNumber.toStdString();
        EXPECT_TRUE(numbers.insert(card.idNumber).second) << card.idNumber.toStdString();
        EXPECT_FALSE(card.title.isEmpty()) << card.idNumber.toStdString();
    }
}

TEST(BuiltInCards, Together_CoverKindsDeliveriesPaddingsAndFingerprints)
{
    using Case = std::tuple<CardKind, PhotoDelivery>;
    std::set<Case> wanted;
    for (const CardKind kind :
         {CardKind::RESIDENT, CardKind::HMT, CardKind::FOREIGN2017, CardKind::FOREIGN_NEW}) {
        wanted.insert({kind, PhotoDelivery::BMP_FILE});
        wanted.insert({kind, PhotoDelivery::COMPRESSED});
    }
    for (const CardKind kind : {CardKind::RESIDENT, CardKind::HMT, CardKind::FOREIGN_NEW})
        wanted.insert({kind, PhotoDelivery::OWN_FILE});
    EXPECT_EQ(
        collected([](const CardDescription &card) { return Case(card.kind, card.photoDelivery); }),
        wanted);
    EXPECT_EQ(collected([](const CardDescription &card) {
                  return std::tuple(card.kind, card.padding);
              }).size(),
              8U);
    EXPECT_EQ(collected([](const CardDescription &card) { return card.fingerprints; }),
              (std::set<int>{0, 1, 2}));
}

TEST(BuiltInCards, HmtPermits_CoverEveryPrefixAndAnUnknownOne)
{
    std::set<std::string> prefixes;
    for (const CardDescription &card : allCards()) {
        if (card.kind == CardKind::HMT)
            prefixes.insert(card.idNumber.left(2).toStdString());
    }
    EXPECT_EQ(prefixes, (std::set<std::string>{"81", "82", "83", "84"}));
}

TEST(BuiltInCards, LongestTexts_AreThereForEveryKind)
{
    const std::vector<CardDescription> cards = allCards();
    for (const CardKind kind : {CardKind::RESIDENT, CardKind::HMT}) {
        EXPECT_EQ(most(cards, kind, &CardDescription::name), 15);
        EXPECT_EQ(most(cards, kind, &CardDescription::address), 35);
        EXPECT_EQ(most(cards, kind, &CardDescription::issuingAuthority), 15);
    }
    EXPECT_EQ(most(cards, CardKind::FOREIGN2017, &CardDescription::englishName), 60);
    EXPECT_EQ(most(cards, CardKind::FOREIGN2017, &CardDescription::chineseName), 15);
    EXPECT_EQ(most(cards, CardKind::FOREIGN_NEW, &CardDescription::englishName), 35);
    EXPECT_EQ(most(cards, CardKind::FOREIGN_NEW, &CardDescription::chineseName), 15);
}

TEST(BuiltInCards, Together_CoverTheUnusualTexts)
{
    EXPECT_THAT(collected([](const CardDescription &card) { return card.validTo; }),
                testing::Contains(QString::fromUtf8("长期")));
    EXPECT_THAT(collected([](const CardDescription &card) { return card.nationality; }),
                IsSupersetOf({QStringLiteral("XXX"), QStringLiteral("ZZZ")}));
    EXPECT_THAT(collected([](const CardDescription &card) { return card.ethnicGroup; }),
                IsSupersetOf({QStringLiteral("43"), QStringLiteral("29"), QStringLiteral("98")}));
    EXPECT_THAT(collected([](const CardDescription &card) { return card.name.size(); }),
                testing::Contains(2));
    EXPECT_THAT(collected([](const CardDescription &card) {
                    return std::any_of(card.name.cbegin(), card.name.cend(), [](QChar character) {
                        return character.unicode() >= 0x3400 && character.unicode() < 0x4DC0;
                    });
                }),
                testing::Contains(true));
}

TEST(BuiltInCards, BirthDates_HaveMonthsAndDaysWithAndWithoutALeadingZero)
{
    for (const int position : {4, 6}) {
        EXPECT_EQ(collected([position](const CardDescription &card) {
                      return card.birthDate.at(position) == QLatin1Char('0');
                  }).size(),
                  2U);
    }
}
