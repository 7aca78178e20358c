// What changes on a reader that is looked at again and again.

#include <gmock/gmock.h>

#include "apps/reading/reader_presence.h"
#include "tests/card/card_samples.h"

using namespace app;
using testing::ElementsAre;
using testing::IsEmpty;
using Change = ReaderChange;

namespace
{

Look card(const char *digest)
{
    Look look;
    look.card.emplace(samples::residentCard());
    look.digest = digest;
    return look;
}

Look failure(ExitStatus status, int code, ReaderState reader = ReaderState::THERE)
{
    Failure failure = toolFailure(ToolFault::UNKNOWN_CODE, {});
    failure.exitStatus = status;
    failure.code = code;
    return failedLook(reader, failure);
}

Look noData()
{
    Look look = failure(ExitStatus::NO_CARD, -24);
    look.gotNoData = true;
    return look;
}

const Look NO_CARD = failure(ExitStatus::NO_CARD, -24);
const Look NO_DATA = noData();
const Look READ_FAILED = failure(ExitStatus::READ_FAILED, -23);
const Look NO_READER = failure(ExitStatus::READER_NOT_OPENED, -7, ReaderState::MISSING);
const Look UNPLUGGED = failure(ExitStatus::READ_FAILED, -12, ReaderState::MISSING);
const Look NO_USB = failure(ExitStatus::READER_NOT_OPENED, -1, ReaderState::UNKNOWN);

class Presence : public testing::Test
{
protected:
    std::vector<Change> see(const Look &look) { return asVector(m_presence.observe(look)); }
    std::vector<Change> take() { return asVector(m_presence.takeCard()); }

private:
    /** As the matchers print it. */
    static std::vector<Change> asVector(const QVector<Change> &changes)
    {
        return {changes.begin(), changes.end()};
    }

    ReaderPresence m_presence;
};

TEST_F(Presence, ReaderIsAddedByTheFirstLookThatFindsIt)
{
    EXPECT_THAT(see(NO_READER), ElementsAre(Change::READER_MISSING));
    EXPECT_THAT(see(NO_READER), IsEmpty());
    EXPECT_THAT(see(NO_CARD), ElementsAre(Change::READER_ADDED));
    EXPECT_THAT(see(NO_CARD), IsEmpty());
}

TEST_F(Presence, CardIsReadOnceAndRemovedOnceAlsoByAnother)
{
    EXPECT_THAT(see(card("a")), ElementsAre(Change::READER_ADDED, Change::CARD_READ));
    EXPECT_THAT(see(card("a")), IsEmpty());
    EXPECT_THAT(see(NO_CARD), ElementsAre(Change::CARD_REMOVED));
    EXPECT_THAT(see(NO_CARD), IsEmpty());
    EXPECT_THAT(see(card("a")), ElementsAre(Change::CARD_READ));
    EXPECT_THAT(see(card("b")), ElementsAre(Change::CARD_REMOVED, Change::CARD_READ));
}

TEST_F(Presence, CardThatGivesNoDataOnceIsNeitherRemovedNorReadASecondTime)
{
    see(card("a"));
    EXPECT_THAT(see(NO_DATA), IsEmpty());
    EXPECT_THAT(see(card("a")), IsEmpty());
    see(NO_DATA);
    EXPECT_THAT(see(NO_CARD), ElementsAre(Change::CARD_REMOVED));
}

TEST_F(Presence, CardThatGivesNoDataTwiceIsAnotherThanTheOneBefore)
{
    see(card("a"));
    see(NO_DATA);
    EXPECT_THAT(see(NO_DATA), ElementsAre(Change::CARD_REMOVED));
    EXPECT_THAT(see(NO_DATA), IsEmpty());
    EXPECT_THAT(see(card("a")), ElementsAre(Change::CARD_READ));
}

TEST_F(Presence, CardThatGivesNoDataAfterAFailureIsReadAgainAfterIt)
{
    see(card("a"));
    see(READ_FAILED);
    EXPECT_THAT(see(NO_DATA), IsEmpty());
    EXPECT_THAT(see(READ_FAILED), IsEmpty());
    EXPECT_THAT(see(card("a")), ElementsAre(Change::CARD_READ));
}

TEST_F(Presence, ReaderIsAddedAlsoByACardThatGivesNoData)
{
    EXPECT_THAT(see(NO_DATA), ElementsAre(Change::READER_ADDED));
    EXPECT_THAT(see(card("a")), ElementsAre(Change::CARD_READ));
}

TEST_F(Presence, ReaderThatGoesAndComesWithTheSameCardReadsItNoSecondTime)
{
    see(card("a"));
    EXPECT_THAT(see(UNPLUGGED), ElementsAre(Change::READER_REMOVED));
    EXPECT_THAT(see(NO_READER), IsEmpty());
    EXPECT_THAT(see(card("a")), ElementsAre(Change::READER_ADDED));
}

TEST_F(Presence, ReaderThatComesBackEmptyOrWithAnotherCardHasLostTheCard)
{
    see(card("a"));
    see(NO_READER);
    EXPECT_THAT(see(NO_CARD), ElementsAre(Change::READER_ADDED, Change::CARD_REMOVED));
    see(card("a"));
    see(NO_READER);
    EXPECT_THAT(see(card("b")),
                ElementsAre(Change::READER_ADDED, Change::CARD_REMOVED, Change::CARD_READ));
}

TEST_F(Presence, FailureIsReportedOnceAndTheCardReadAgainAfterIt)
{
    see(card("a"));
    EXPECT_THAT(see(READ_FAILED), ElementsAre(Change::READ_FAILED));
    EXPECT_THAT(see(READ_FAILED), IsEmpty());
    EXPECT_THAT(see(card("a")), ElementsAre(Change::CARD_READ));
    EXPECT_THAT(see(card("a")), IsEmpty());
    EXPECT_THAT(see(NO_CARD), ElementsAre(Change::CARD_REMOVED));
}

TEST_F(Presence, FailureLeavesTheCardToBeRemoved)
{
    see(card("a"));
    see(READ_FAILED);
    EXPECT_THAT(see(NO_CARD), ElementsAre(Change::CARD_REMOVED));
    see(card("a"));
    see(READ_FAILED);
    EXPECT_THAT(see(card("b")), ElementsAre(Change::CARD_REMOVED, Change::CARD_READ));
}

TEST_F(Presence, FailureIsReportedAgainAfterTheReaderWasMissing)
{
    see(READ_FAILED);
    see(NO_READER);
    EXPECT_THAT(see(READ_FAILED), ElementsAre(Change::READER_ADDED, Change::READ_FAILED));
}

TEST_F(Presence, FailureIsReportedAgainAfterTheReaderWasEmptyOrACardWasRead)
{
    see(READ_FAILED);
    see(NO_CARD);
    EXPECT_THAT(see(READ_FAILED), ElementsAre(Change::READ_FAILED));
    see(card("a"));
    EXPECT_THAT(see(READ_FAILED), ElementsAre(Change::READ_FAILED));
}

TEST_F(Presence, FailuresOfOneCodeThatEndDifferentlyAreTwo)
{
    see(failure(ExitStatus::PROGRAM_FAILED, 0));
    EXPECT_THAT(see(failure(ExitStatus::NOTHING_READ, 0)), ElementsAre(Change::READ_FAILED));
    EXPECT_THAT(see(failure(ExitStatus::NOTHING_READ, 0)), IsEmpty());
    EXPECT_THAT(see(failure(ExitStatus::NOTHING_READ, -1)), ElementsAre(Change::READ_FAILED));
}

TEST_F(Presence, FailureIsReportedAgainAfterTheCardWasTaken)
{
    see(READ_FAILED);
    take();
    EXPECT_THAT(see(READ_FAILED), ElementsAre(Change::READ_FAILED));
}

TEST_F(Presence, LookThatDoesNotReachTheReaderSaysNothingOfIt)
{
    EXPECT_THAT(see(NO_USB), ElementsAre(Change::READ_FAILED));
    EXPECT_THAT(see(NO_CARD), ElementsAre(Change::READER_ADDED));
    EXPECT_THAT(see(NO_USB), ElementsAre(Change::READ_FAILED));
    EXPECT_THAT(see(NO_CARD), IsEmpty());
    see(card("a"));
    see(NO_USB);
    EXPECT_THAT(see(card("a")), ElementsAre(Change::CARD_READ));
}

TEST_F(Presence, CardThatIsTakenIsRemovedAndTheNextOneNewWhateverItHolds)
{
    see(card("a"));
    EXPECT_THAT(take(), ElementsAre(Change::CARD_REMOVED));
    EXPECT_THAT(take(), IsEmpty());
    EXPECT_THAT(see(card("a")), ElementsAre(Change::CARD_READ));
}

TEST_F(Presence, MissingReaderIsReportedAgainAfterTheCardWasTaken)
{
    see(NO_READER);
    EXPECT_THAT(take(), IsEmpty());
    EXPECT_THAT(see(NO_READER), ElementsAre(Change::READER_MISSING));
}

} // namespace
