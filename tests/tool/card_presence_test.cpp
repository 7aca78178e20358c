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
    EXPECT_EQ(presence.observe(seen(samples::residentCard())), Sighting::NewCard);
}

TEST(CardPresence, CardThatStaysIsTheSame)
{
    CardPresence presence;
    presence.observe(seen(samples::residentCard()));
    EXPECT_EQ(presence.observe(seen(samples::residentCard())), Sighting::SameCard);
}

TEST(CardPresence, SameCardAfterAnEmptyReaderIsNew)
{
    CardPresence presence;
    presence.observe(seen(samples::residentCard()));
    EXPECT_EQ(presence.observe(failure(EMPTY)), Sighting::Nothing);
    EXPECT_EQ(presence.observe(seen(samples::residentCard())), Sighting::NewCard);
}

TEST(CardPresence, OtherCardWithoutAnEmptyReaderBetweenIsNew)
{
    CardPresence presence;
    presence.observe(seen(samples::residentCard()));
    EXPECT_EQ(presence.observe(seen(samples::cardOf(IDCARD_KIND_HMT))), Sighting::NewCard);
}

TEST(CardPresence, CardThatWasReadAgainAfterAFailureIsTheSame)
{
    CardPresence presence;
    presence.observe(seen(samples::residentCard()));
    presence.observe(failure(BROKEN_OFF));
    EXPECT_EQ(presence.observe(seen(samples::residentCard())), Sighting::SameCard);
}

TEST(CardPresence, FailureThatLastsIsNewOnce)
{
    CardPresence presence;
    EXPECT_EQ(presence.observe(failure(NOT_OPENED)), Sighting::NewFailure);
    EXPECT_EQ(presence.observe(failure(NOT_OPENED)), Sighting::SameFailure);
    EXPECT_EQ(presence.observe(failure(BROKEN_OFF)), Sighting::NewFailure);
}

TEST(CardPresence, FailureIsNewAgainAfterTheReaderWasEmptyOrACardWasRead)
{
    for (const ReadOutcome &between : {failure(EMPTY), seen(samples::residentCard())}) {
        CardPresence presence;
        presence.observe(failure(BROKEN_OFF));
        presence.observe(between);
        EXPECT_EQ(presence.observe(failure(BROKEN_OFF)), Sighting::NewFailure);
    }
}

TEST(CardPresence, FailuresOfOneCodeThatEndDifferentlyAreTwo)
{
    CardPresence presence;
    EXPECT_EQ(presence.observe(nullptr, ExitStatus::ProgramFailed, 0), Sighting::NewFailure);
    EXPECT_EQ(presence.observe(nullptr, ExitStatus::NothingRead, 0), Sighting::NewFailure);
    EXPECT_EQ(presence.observe(nullptr, ExitStatus::NothingRead, 0), Sighting::SameFailure);
}

TEST(CardPresence, NothingReadAlthoughTheCallSucceededIsAFailure)
{
    CardPresence presence;
    EXPECT_EQ(presence.observe(failure(0)), Sighting::NewFailure);
}

} // namespace
