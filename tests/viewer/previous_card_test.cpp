// Who is shown once his card is not the one that was read last: nobody takes the guest before for
// the one at the counter.

#include <memory>

#include <gmock/gmock.h>

#include <QLabel>
#include <QLineEdit>
#include <QTime>

#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"
#include "tests/viewer/viewer_test.h"

using namespace viewer_test;
using testing::IsEmpty;

namespace
{

class PreviousCard : public ViewerTest
{
protected:
    /** Opens the window, with other settings, and reads this card. */
    void show(const QString &card,
              viewer::PreviousCard previous = viewer::PreviousCard::FADED_A_WHILE,
              int forgetAfterSeconds = 60)
    {
        viewer::ViewerSettings settings;
        settings.previousCard = previous;
        settings.forgetAfterSeconds = forgetAfterSeconds;
        settings.store();
        openWithCard(card);
        read();
        expectState(Kind::READ, "The card was read.");
    }

    void failToRead()
    {
        readNext("foreign-new", "unknown-kind");
        expectState(Kind::FAILED, "The call succeeded, but nothing was read.");
    }

    /** The one that was read is seen, but not as if he were there. */
    void expectGrey(const QString &card)
    {
        expectNobody();
        EXPECT_EQ(text("name"), builtInCard(card).name);
        EXPECT_FALSE(find("name")->isEnabled() || find("number")->isEnabled() ||
                     find("fields")->isEnabled());
        for (const char *const view : {"front", "photo"})
            EXPECT_TRUE(isGrey(view)) << view;
        const QString caption = text("caption");
        ASSERT_TRUE(caption.startsWith("Previous card, ")) << caption.toStdString();
        const QTime time = QTime::fromString(caption.right(5), "HH:mm");
        EXPECT_TRUE(time.isValid());
        EXPECT_LE(qAbs(time.secsTo(QTime::currentTime())), 120) << caption.toStdString();
    }

    void expectCleared()
    {
        expectNobody();
        EXPECT_THAT(rows("fields"), IsEmpty());
        for (const char *const label : {"caption", "name", "number", "notes"})
            EXPECT_EQ(text(label), QString()) << label;
    }

    bool isGrey(const char *view)
    {
        const QImage shown = picture(view);
        const QPoint middle = shown.rect().center();
        int colour = 0;
        for (int y = 0; y < shown.height(); y += 3) {
            for (int x = 0; x < shown.width(); x += 3)
                colour = std::max(colour, shown.pixelColor(x, y).saturation());
        }
        EXPECT_TRUE(shown.valid(middle));
        return colour < 40;
    }

    app::CardPointer cardOfHistory(int row)
    {
        return model("history")->index(row, 0).data(Qt::UserRole).value<app::CardPointer>();
    }
};

TEST_F(PreviousCard, AfterAFailedRead_IsGreyedAndNeitherSavedNorPrintedNorCopied)
{
    show("resident");
    EXPECT_FALSE(isGrey("front"));
    failToRead();
    expectGrey("resident");
    EXPECT_EQ(rows("history").size(), 1) << "the history still has the card";
    failToRead();
    expectGrey("resident");
}

TEST_F(PreviousCard, AfterACancelledRead_IsGreyedAndNeitherSavedNorPrintedNorCopied)
{
    show("resident");
    putCard("hmt-macao", "delay-ms=30000");
    click("read");
    expectGrey("resident");
    click("cancel");
    expectState(Kind::WAITING, "Reading was given up.");
    expectGrey("resident");
}

TEST_F(PreviousCard, OnceItIsTakenOff_IsGreyedAndNeitherSavedNorPrintedNorCopied)
{
    openWithCard("resident");
    check("automatic", true);
    EXPECT_TRUE(waitForHeadline("The card was read."));
    EXPECT_TRUE(find("save")->isEnabled());
    click("takeCard");
    expectState(Kind::WAITING, "Lay a card on the reader; it is read automatically.");
    expectGrey("resident");
}

TEST_F(PreviousCard, WhileTheNextIsRead_IsGreyed)
{
    show("resident");
    putCard("hmt-macao", "delay-ms=1500");
    click("read");
    expectGrey("resident");
    EXPECT_TRUE(waitForCards(2));
    EXPECT_EQ(text("name"), builtInCard("hmt-macao").name);
    EXPECT_FALSE(isGrey("photo"));
}

TEST_F(PreviousCard, OnceAnotherWayOfReadingIsChosen_IsGreyed)
{
    show("resident");
    chooseRoad("Over USB");
    expectState(Kind::WAITING, "Lay a card on the reader and press Read.");
    expectGrey("resident");
}

TEST_F(PreviousCard, ThatIsToBeClearedAtOnce_IsNotSeenAnyMore)
{
    show("resident", viewer::PreviousCard::CLEARED);
    failToRead();
    expectCleared();
    EXPECT_EQ(rows("history").size(), 1);
}

TEST_F(PreviousCard, ThatIsGreyWhenClearingAtOnceIsChosen_IsNotSeenOnceTheNextIsRead)
{
    show("resident", viewer::PreviousCard::FADED);
    failToRead();
    expectGrey("resident");
    changeSettings([](viewer::SettingsDialog *dialog) {
        choose(dialog->findChild<QComboBox *>("previousCard"), "Clear it at once");
    });
    failToRead();
    expectCleared();
}

TEST_F(PreviousCard, ThatIsToBeClearedAtOnce_IsHeldInMemoryByTheHistoryAlone)
{
    show("resident", viewer::PreviousCard::CLEARED);
    const std::weak_ptr<const app::Card> card = cardOfHistory(0);
    failToRead();
    EXPECT_FALSE(card.expired());
    EXPECT_EQ(card.use_count(), 1);
}

TEST_F(PreviousCard, ThatIsToBeClearedAfterAWhile_IsGreyedAndThenNotSeenAnyMore)
{
    show("resident", viewer::PreviousCard::FADED_A_WHILE, 1);
    QTest::qWait(1500);
    EXPECT_TRUE(find("save")->isEnabled()) << "the card that was read stays";
    failToRead();
    expectGrey("resident");
    EXPECT_TRUE(waitFor([this] { return text("name").isEmpty(); }, 3000));
    expectCleared();
}

TEST_F(PreviousCard, ThatIsToBeGreyed_StaysGrey)
{
    show("resident", viewer::PreviousCard::FADED, 1);
    failToRead();
    QTest::qWait(1600);
    expectGrey("resident");
}

TEST_F(PreviousCard, ClearedAfterAWhileThoughTheNextReadFailsTwice_IsNotKeptForLonger)
{
    show("resident", viewer::PreviousCard::FADED_A_WHILE, 2);
    failToRead();
    QTest::qWait(1000);
    failToRead();
    EXPECT_TRUE(waitFor([this] { return text("name").isEmpty(); }, 1800));
    failToRead();
    expectCleared();
}

TEST_F(PreviousCard, NextCardReadWhileItIsGreyed_IsNotCleared)
{
    show("resident", viewer::PreviousCard::FADED_A_WHILE, 1);
    failToRead();
    readNext("hmt-macao");
    QTest::qWait(1500);
    EXPECT_EQ(text("name"), builtInCard("hmt-macao").name);
    EXPECT_TRUE(find("save")->isEnabled());
}

TEST_F(PreviousCard, ChosenFromTheHistory_IsShownAsAnEarlierOneWithItsTimeAndCanBeSaved)
{
    show("resident");
    const QString time = rows("history")[0].section('\t', 3).left(5);
    failToRead();
    find<QTableView>("history")->selectRow(0);
    EXPECT_EQ(text("name"), builtInCard("resident").name);
    expectState(Kind::ATTENTION, "An earlier card is shown.",
                ("It was read at " + time + ".").toStdString());
    EXPECT_EQ(text("caption"), "Read at " + time + ", from the history");
    EXPECT_TRUE(find("save")->isEnabled());
    EXPECT_FALSE(isGrey("front"));
    trigger("Copy the number");
    EXPECT_EQ(clipboard(), builtInCard("resident").idNumber);
}

TEST_F(PreviousCard, ChosenFromTheHistoryWhileTheNextIsRead_GivesWayToIt)
{
    show("resident");
    putCard("hmt-macao", "delay-ms=1000");
    click("read");
    find<QTableView>("history")->selectRow(0);
    EXPECT_EQ(text("name"), builtInCard("resident").name);
    expectState(Kind::READING, "Reading…");
    EXPECT_TRUE(waitForCards(2));
    EXPECT_EQ(text("name"), builtInCard("hmt-macao").name);
    EXPECT_EQ(find<QTableView>("history")->currentIndex().row(), 0);
}

TEST_F(PreviousCard, ChosenFromTheHistoryWithKeysAndMouse_IsShown)
{
    show("resident");
    readNext("hmt-taiwan");
    const QImage front = picture("front");
    auto *const history = find<QTableView>("history");
    QTest::mouseClick(history->viewport(), Qt::LeftButton, {},
                      history->visualRect(model("history")->index(1, 0)).center());
    EXPECT_EQ(field("Name"), builtInCard("resident").name);
    EXPECT_GT(difference(front, picture("front")), 5);
    QTest::keyClick(history, Qt::Key_Up);
    EXPECT_EQ(field("Name"), builtInCard("hmt-taiwan").name);
    QTest::keyClick(history, Qt::Key_Down);
    read();
    EXPECT_EQ(history->currentIndex().row(), 0);
    EXPECT_EQ(field("Name"), builtInCard("hmt-taiwan").name);
}

TEST_F(PreviousCard, SearchThatLeavesOutTheOneThatIsShown_ChoosesNobodyElse)
{
    show("resident");
    readNext("hmt-taiwan");
    const std::string said = headline();
    auto *const search = find<QLineEdit>("search");
    auto *const history = find<QTableView>("history");
    QTest::keyClicks(search, builtInCard("resident").idNumber);
    EXPECT_EQ(rows("history").size(), 1);
    EXPECT_EQ(text("name"), builtInCard("hmt-taiwan").name);
    EXPECT_EQ(headline(), said);
    EXPECT_FALSE(history->selectionModel()->hasSelection());
    search->clear();
    EXPECT_EQ(text("name"), builtInCard("hmt-taiwan").name);
    history->selectRow(1);
    EXPECT_EQ(text("name"), builtInCard("resident").name);
    QTest::keyClicks(search, builtInCard("resident").idNumber);
    EXPECT_EQ(history->currentIndex().row(), 0) << "what is found stays marked";
    EXPECT_TRUE(history->selectionModel()->hasSelection());
}

TEST_F(PreviousCard, CoveringWhileTheListIsSearched_ChoosesNobodyElseAndEmptiesTheSearch)
{
    show("resident");
    readNext("hmt-taiwan");
    QTest::keyClicks(find<QLineEdit>("search"), builtInCard("hmt-taiwan").idNumber.left(1));
    const int found = rows("history").size();
    EXPECT_GE(found, 1);
    check("cover", true);
    EXPECT_EQ(find<QLineEdit>("search")->text(), QString());
    check("cover", false);
    EXPECT_EQ(text("name"), builtInCard("hmt-taiwan").name);
    EXPECT_EQ(rows("history").size(), 2);
}

TEST_F(PreviousCard, ThatWasChosenAlreadyAndGreyed_CanBeChosenOnceMore)
{
    show("resident");
    failToRead();
    auto *const history = find<QTableView>("history");
    const QPoint row = history->visualRect(model("history")->index(0, 0)).center();
    QTest::mouseClick(history->viewport(), Qt::LeftButton, {}, row);
    EXPECT_TRUE(find("save")->isEnabled());
    failToRead();
    expectNobody();
    QTest::mouseClick(history->viewport(), Qt::LeftButton, {}, row);
    EXPECT_TRUE(find("save")->isEnabled());
}

TEST_F(PreviousCard, HistoryThatIsCleared_HoldsNoCardInMemory)
{
    for (const bool isFaded : {false, true}) {
        show("resident");
        const std::weak_ptr<const app::Card> card = cardOfHistory(0);
        ASSERT_FALSE(card.expired());
        if (isFaded)
            failToRead();
        QTest::keyClick(&window(), Qt::Key_Delete, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_TRUE(card.expired());
        EXPECT_THAT(rows("history"), IsEmpty());
        expectCleared();
        close();
    }
}

TEST_F(PreviousCard, WindowThatIsClosed_HoldsNoCardInMemory)
{
    show("resident");
    const std::weak_ptr<const app::Card> card = cardOfHistory(0);
    close();
    EXPECT_TRUE(card.expired());
}

} // namespace
