#include <gtest/gtest.h>

#include "apps/card/card_presence.h"
#include "tests/tool/card_samples.h"

using namespace app;

namespace
{

ReadOutcome seen(Card card)
{
    ReadOutcome outcome;
    outcome.card.emplace(std::move(card));
    return outcome;
}

ReadOutcome failure(int code)
{
    ReadOutcome outcome;
    outcome.code = code;
    return outcome;
}

constexpr int EMPTY = -24;
constexpr int NOT_OPENED = -5;
constexpr int BROKEN_OFF = -23;

TEST(CardPresence, FirstCardIsNew)
{
    CardPresence presence;
    EXPECT_EQ(presence.observe(seen(samples::residentCard())), Sighting::NEW_CARD);
}

TEST(CardPresence, CardThatStaysIsTheSame)
{
    CardPresence presence;
    presence.observe(seen(samples::residentCard()));
    EXPECT_EQ(presence.observe(seen(samples::residentCard())), Sighting::SAME_CARD);
}

TEST(CardPresence, SameCardAfterAnEmptyReaderIsNew)
{
    CardPresence presence;
    presence.observe(seen(samples::residentCard()));
    EXPECT_EQ(presence.observe(failure(EMPTY)), Sighting::NOTHING);
    EXPECT_EQ(presence.observe(seen(samples::residentCard())), Sighting::NEW_CARD);
}

TEST(CardPresence, OtherCardWithoutAnEmptyReaderBetweenIsNew)
{
    CardPresence presence;
    presence.observe(seen(samples::residentCard()));
    EXPECT_EQ(presence.observe(seen(samples::cardOf(IDCARD_KIND_HMT))), Sighting::NEW_CARD);
}

TEST(CardPresence, CardThatWasReadAgainAfterAFailureIsTheSame)
{
    CardPresence presence;
    presence.observe(seen(samples::residentCard()));
    presence.observe(failure(BROKEN_OFF));
    EXPECT_EQ(presence.observe(seen(samples::residentCard())), Sighting::SAME_CARD);
}

TEST(CardPresence, FailureThatLastsIsNewOnce)
{
    CardPresence presence;
    EXPECT_EQ(presence.observe(failure(NOT_OPENED)), Sighting::NEW_FAILURE);
    EXPECT_EQ(presence.observe(failure(NOT_OPENED)), Sighting::SAME_FAILURE);
    EXPECT_EQ(presence.observe(failure(BROKEN_OFF)), Sighting::NEW_FAILURE);
}

TEST(CardPresence, FailureIsNewAgainAfterTheReaderWasEmptyOrACardWasRead)
{
    for (const ReadOutcome &between : {failure(EMPTY), seen(samples::residentCard())}) {
        CardPresence presence;
        presence.observe(failure(BROKEN_OFF));
        presence.observe(between);
        EXPECT_EQ(presence.observe(failure(BROKEN_OFF)), Sighting::NEW_FAILURE);
    }
}

TEST(CardPresence, FailuresOfOneCodeThatEndDifferentlyAreTwo)
{
    CardPresence presence;
    EXPECT_EQ(presence.observe(nullptr, ExitStatus::PROGRAM_FAILED, 0), Sighting::NEW_FAILURE);
    EXPECT_EQ(presence.observe(nullptr, ExitStatus::NOTHING_READ, 0), Sighting::NEW_FAILURE);
    EXPECT_EQ(presence.observe(nullptr, ExitStatus::NOTHING_READ, 0), Sighting::SAME_FAILURE);
}

TEST(CardPresence, NothingReadAlthoughTheCallSucceededIsAFailure)
{
    CardPresence presence;
    EXPECT_EQ(presence.observe(failure(0)), Sighting::NEW_FAILURE);
}

} // namespace
