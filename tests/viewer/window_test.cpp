// The window as it is used at a counter, with cards of the simulator.

#include <iostream>
#include <set>

#include <gmock/gmock.h>

#include <QAccessible>
#include <QAction>
#include <QClipboard>
#include <QFileDialog>
#include <QLabel>
#include <QLibraryInfo>
#include <QLineEdit>
#include <QMenu>
#include <QPrintDialog>
#include <QPrinter>
#include <QRegularExpression>
#include <QScreen>
#include <QTemporaryDir>
#include <QVersionNumber>

#include "apps/card/card_files.h"
#include "apps/viewer/card_sheet.h"
#include "apps/viewer/road_panel.h"
#include "simulator/card/card_library.h"
#include "tests/support/files.h"
#include "tests/support/test_name.h"
#include "tests/tool/tool_runner.h"
#include "tests/viewer/viewer_test.h"

using namespace viewer_test;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

const QString COVER = QString(8, QChar(0x2022));

class Window : public ViewerTest
{
protected:
    /** Opens the window and reads this card. */
    void show(const QString &card)
    {
        openWithCard(card);
        read();
        expectMessage(Kind::NOTE, "The card was read.");
    }

    /** Neither seen nor to be booked; only the history may still have somebody. */
    void expectNobody()
    {
        EXPECT_EQ(rows("fields"), QStringList());
        for (const char *const view : {"photo", "front", "back"})
            EXPECT_TRUE(find(view)->property("pixmap").value<QPixmap>().isNull()) << view;
        for (const QAction *const action : window().findChildren<QAction *>()) {
            const QString name = action->objectName();
            if (name.startsWith("action") && name != "actionRead" && name != "actionQuit") {
                EXPECT_FALSE(action->isEnabled()) << name.toStdString();
            }
        }
    }

    app::CardPointer cardOfHistory(int row)
    {
        return static_cast<app::CardHistory *>(model("history"))->card(row);
    }

    /** Answers the dialog that is open as a user does who types a name. */
    void answerFileDialog(const QString &path)
    {
        auto *const dialog = window().findChild<QFileDialog *>();
        ASSERT_NE(dialog, nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog));
        auto *const edit = dialog->findChild<QLineEdit *>();
        edit->setText(path);
        QTest::keyClick(edit, Qt::Key_Return);
        EXPECT_TRUE(waitFor([&] { return window().findChild<QFileDialog *>() == nullptr; }));
    }

    QTemporaryDir m_folder;
};

QString clipboard()
{
    return QApplication::clipboard()->text();
}

class EveryCard : public Window, public testing::WithParamInterface<std::string>
{
};

std::vector<std::string> cardNames()
{
    std::vector<std::string> names;
    for (const QString &name : simulator::builtInCardNames())
        names.push_back(name.toStdString());
    return names;
}

TEST_P(EveryCard, IsReadAndShownAsDescribed)
{
    const QString name = QString::fromStdString(GetParam());
    const simulator::CardDescription card = builtInCard(name);
    show(name);
    const bool isForeign = card.kind == simulator::CardKind::FOREIGN2017 ||
                           card.kind == simulator::CardKind::FOREIGN_NEW;
    const QString holder = isForeign ? card.englishName : card.name;
    EXPECT_EQ(field("Name"), holder);
    EXPECT_EQ(field(isForeign ? "Card number" : "Identity number"), card.idNumber);
    EXPECT_TRUE(rows("history").value(0).startsWith(
        QStringList({holder, card.idNumber, field("Kind"), QString()}).join('\t')));

    const app::CardPointer shown = cardOfHistory(0);
    const auto scaled = [](const QImage &image, const QImage &like) {
        return image.scaled(like.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    };
    constexpr double ALIKE = 12; // of 255, for two ways of scaling
    QImage photo;
    if (shown->photoFormat() == app::PhotoFormat::UNKNOWN) {
        EXPECT_EQ(find("photo")->accessibleDescription().toStdString(),
                  "The reader delivered the photo in a form that is not known");
    } else {
        ASSERT_TRUE(photo.loadFromData(shown->photo()));
        EXPECT_LT(difference(picture("photo"), scaled(photo, picture("photo"))), ALIKE);
    }
    for (const auto &[side, view] :
         {std::pair(app::CardSide::FRONT, "front"), std::pair(app::CardSide::BACK, "back")}) {
        QImage image;
        if (image.loadFromData(shown->picture(side))) {
            EXPECT_LT(difference(picture(view), scaled(image, picture(view))), ALIKE) << view;
        } else {
            EXPECT_EQ(find(view)->accessibleDescription().toStdString(),
                      "The library painted no picture.");
        }
        EXPECT_EQ(find(view)->toolTip(), find(view)->accessibleDescription());
    }
}

INSTANTIATE_TEST_SUITE_P(BuiltIn, EveryCard, testing::ValuesIn(cardNames()), testNameOf);

struct FaultOutcome {
    const char *fault;
    int code;
    bool recordFilled = false;
};

class EveryFault : public Window, public testing::WithParamInterface<FaultOutcome>
{
};

TEST_P(EveryFault, IsReportedWithCauseAndRemedyAndNoCard)
{
    openWithCard("resident-compressed-photo", GetParam().fault);
    read();
    const app::ResultEntry *const entry = app::findResult(GetParam().code, false);
    EXPECT_EQ(headline(), entry->summary);
    EXPECT_THAT(details(),
                testing::StartsWith(QStringLiteral("What to do: %1\nCause: %2\nCode: %3 (%4)")
                                        .arg(entry->remedy, entry->cause)
                                        .arg(entry->code)
                                        .arg(QLatin1String(entry->constant))
                                        .toStdString()));
    expectMessage(Kind::FAILURE);
    EXPECT_THAT(rows("history"), IsEmpty());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Simulator, EveryFault,
                         testing::Values(FaultOutcome{"open-fails=7", -5},
                                         FaultOutcome{"no-card", -24},
                                         FaultOutcome{"photo-undecodable", -26},
                                         FaultOutcome{"unknown-kind", 0}));

TEST_F(Window, FaultThatTheSimulatorRefuses_IsReportedWithItsReason)
{
    openWithCard("resident", "no-such-fault");
    EXPECT_EQ(headline(), "The simulator cannot be used as it was asked to.");
    EXPECT_THAT(details(), HasSubstr("no-such-fault"));
}

TEST_F(Window, CardPutOnAndTakenOff_IsReadAndNotFound)
{
    open();
    choose("road", "Simulator");
    choose("card", "hmt-macao");
    click("putCard");
    read();
    EXPECT_EQ(field("Name"), builtInCard("hmt-macao").name);
    click("takeCard");
    read();
    EXPECT_EQ(headline(), "No card was found on the reader.");
}

TEST_F(Window, PreviousGuestAfterAFailedRead_IsNeitherShownNorSavedNorPrintedNorCopied)
{
    show("resident");
    choose("card", "foreign-new");
    find<QComboBox>("faults")->setEditText("unknown-kind");
    click("putCard");
    read();
    expectMessage(Kind::FAILURE, "The call succeeded, but nothing was read.");
    expectNobody();
    EXPECT_EQ(rows("history").size(), 1) << "the history still has the card";
}

TEST_F(Window, GuestWhoseCardWasTakenOff_IsShownNoLonger)
{
    openWithCard("resident");
    check("automatic", true);
    EXPECT_TRUE(waitForHeadline("The card was read."));
    EXPECT_NE(field("Name"), QString());
    click("takeCard");
    EXPECT_TRUE(waitForHeadline("Lay a card on the reader; it is read automatically."));
    expectNobody();
}

TEST_F(Window, EarlierGuestChosenFromTheHistoryAfterAFailure_IsShownAndCanBeSaved)
{
    show("resident");
    find<QComboBox>("faults")->setEditText("read-fails=7");
    click("putCard");
    read();
    expectMessage(Kind::FAILURE);
    expectNobody();
    find<QTableView>("history")->selectRow(0);
    EXPECT_EQ(field("Name"), builtInCard("resident").name);
    EXPECT_TRUE(window().findChild<QAction *>("actionSave")->isEnabled());
}

TEST_F(Window, CardOfAFile_IsReadByItsPath)
{
    const QString path = m_folder.filePath("mine.json");
    writeFile(path, R"({"kind": "resident", "name": "测试", "sex": "1", "ethnicGroup": "01",
        "birthDate": "19900307", "address": "某地", "idNumber": "110101199003070038",
        "issuingAuthority": "某局", "validFrom": "20200101", "validTo": "20400101"})");
    open();
    choose("road", "Simulator");
    click("cardFile");
    answerFileDialog(path);
    EXPECT_EQ(find<QComboBox>("card")->currentText().toStdString(), "mine.json");
    click("putCard");
    read();
    EXPECT_EQ(field("Name").toStdString(), "测试");
}

TEST_F(Window, SpaceFromReadTableAndHistory_Reads)
{
    openWithCard("resident");
    EXPECT_TRUE(waitFor([&] { return QApplication::focusWidget() == find("read"); }));
    int cards = 0;
    for (const char *name : {"read", "fields", "history"}) {
        find(name)->setFocus();
        press(name, Qt::Key_Space);
        ++cards;
        EXPECT_TRUE(waitFor([&] { return model("history")->rowCount() == cards; })) << name;
    }
    QTest::keyClick(&window(), Qt::Key_F5);
    EXPECT_TRUE(waitFor([&] { return model("history")->rowCount() == cards + 1; }));
}

/** Notes what the headline said whenever it was painted. */
class PaintWatch : public QObject
{
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            m_painted << static_cast<QLabel *>(watched)->text();
        return false;
    }
    QStringList m_painted;
};

TEST_F(Window, ReadingThatHoldsTheWindow_WasAnnouncedOnTheScreenBefore)
{
    openWithCard("resident", "delay-ms=100");
    PaintWatch watch;
    find("headline")->installEventFilter(&watch);
    QTest::mouseClick(find("read"), Qt::LeftButton);
    EXPECT_THAT(watch.m_painted, testing::Contains(QStringLiteral("Reading…")));
}

TEST_F(Window, EachNewCardByItself_IsReadOnceAndTheWindowStaysUsable)
{
    open();
    choose("road", "Simulator");
    for (int times = 0; times < 2; ++times) {
        check("automatic", false);
        click("takeCard");
        EXPECT_EQ(headline(), "No card lies on the simulator.");
        check("automatic", true);
        EXPECT_TRUE(waitForHeadline("Lay a card on the reader; it is read automatically."));
    }
    click("putCard");
    EXPECT_TRUE(waitFor([&] { return model("history")->rowCount() == 1; }));
    click("read");
    EXPECT_EQ(model("history")->rowCount(), 2) << "asked for once more";
    QTest::qWait(1200);
    EXPECT_EQ(model("history")->rowCount(), 2) << "the card still lies there";
    EXPECT_EQ(headline(), "The card was read.");
    choose("card", "foreign-new");
    click("putCard");
    EXPECT_TRUE(waitFor([&] { return model("history")->rowCount() == 3; }));
    click("takeCard");
    EXPECT_TRUE(waitForHeadline("Lay a card on the reader; it is read automatically."));
    click("putCard");
    EXPECT_TRUE(waitFor([&] { return model("history")->rowCount() == 4; }));
    check("automatic", false);
    click("takeCard");
    choose("card", "resident");
    click("putCard");
    QTest::qWait(700);
    EXPECT_EQ(model("history")->rowCount(), 4);
}

TEST_F(Window, ReadPressedOnceMoreWhileItReads_ReadsOnce)
{
    openWithCard("resident", "delay-ms=200");
    QTimer::singleShot(50, &window(), [&] { click("read"); }); // comes while the window is held
    click("read");
    QTest::qWait(500);
    EXPECT_EQ(model("history")->rowCount(), 1);
}

TEST_F(Window, FailureWhileItReadsByItself_StaysUntilACardIsRead)
{
    openWithCard("resident", "open-fails=7");
    check("automatic", true);
    EXPECT_TRUE(waitForHeadline("The reader could not be opened."));
    find<QComboBox>("faults")->setEditText(QString());
    click("putCard");
    EXPECT_TRUE(waitForHeadline("The card was read."));
    expectMessage(Kind::NOTE);
}

TEST_F(Window, SelectedRows_AreCopiedWithATabulatorAndNoSelectionLeavesTheClipboard)
{
    show("resident");
    auto *const table = find<QTableView>("fields");
    table->selectRow(1);
    press("fields", Qt::Key_Down, Qt::ShiftModifier);
    press("fields", Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard().split('\n'), rows("fields").mid(1, 2));
    table->clearSelection();
    QApplication::clipboard()->setText("mine");
    press("fields", Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard().toStdString(), "mine");
}

TEST_F(Window, AllRows_AreCopiedLineByLine)
{
    show("resident");
    trigger("Copy all rows");
    EXPECT_EQ(clipboard().split('\n'), rows("fields"));
    EXPECT_GE(clipboard().count('\n'), 9);
}

TEST_F(Window, ContextMenuOfTheTable_OffersBothCopies)
{
    show("resident");
    auto *const table = find("fields");
    EXPECT_EQ(table->contextMenuPolicy(), Qt::ActionsContextMenu);
    QStringList texts;
    for (const QAction *const action : table->actions())
        texts << action->text().remove('&');
    EXPECT_EQ(texts, QStringList({"Copy the selected rows", "Copy all rows"}));
}

TEST_F(Window, EarlierCardOfTheHistory_IsShownAgain)
{
    show("resident");
    choose("card", "hmt-taiwan");
    click("putCard");
    read();
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

TEST_F(Window, ClearedHistory_HoldsNoCardInMemory)
{
    show("resident");
    const std::weak_ptr<const app::Card> card = cardOfHistory(0);
    ASSERT_FALSE(card.expired());
    click("clearHistory");
    EXPECT_TRUE(card.expired());
    EXPECT_THAT(rows("history"), IsEmpty());
    EXPECT_THAT(rows("fields"), IsEmpty());
}

/** Of eight digits. */
QString dateForPeople(const QString &date)
{
    return QStringList({date.mid(0, 4), date.mid(4, 2), date.mid(6)}).join('-');
}

TEST_F(Window, Covered_NamesNumbersBirthAndAddressAreInNoViewAndNoCopy)
{
    for (const char *const name : {"hmt-taiwan", "foreign-2017"}) {
        viewer::ViewerOptions options;
        options.card = name;
        options.isCovered = true;
        open(options);
        read();
        const simulator::CardDescription card = builtInCard(name);
        trigger("Copy all rows");
        const QString covered = everyText() + clipboard();
        check("cover", false);
        const QString open = everyText();
        for (const QString &text :
             {card.name, card.idNumber, card.travelPermitNumber, card.englishName, card.chineseName,
              card.address, dateForPeople(card.birthDate)}) {
            EXPECT_FALSE(!text.isEmpty() && covered.contains(text)) << text.toStdString();
            EXPECT_TRUE(open.contains(text)) << text.toStdString();
        }
        close();
    }
}

TEST_F(Window, CoveringAndUncovering_KeepsTheSelectedRow)
{
    show("resident");
    find<QTableView>("fields")->selectRow(1);
    for (const bool covered : {true, false}) {
        check("cover", covered);
        press("fields", Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(clipboard(), "Name\t" + (covered ? COVER : builtInCard("resident").name));
    }
}

/** What of a widget is on the screen. */
QImage onScreen(const QWidget *widget)
{
    QCoreApplication::processEvents();
    const QPoint place = widget->mapToGlobal(QPoint(0, 0));
    return QApplication::primaryScreen()
        ->grabWindow(0, place.x(), place.y(), widget->width(), widget->height())
        .toImage();
}

TEST_F(Window, Covered_ScreenshotsOfTwoCardsAreTheSameToThePixel)
{
    show("resident");
    window().move(0, 0);
    check("cover", true);
    std::map<std::string, QImage> first;
    for (const char *name : {"front", "back", "photo"})
        first[name] = onScreen(find(name));
    choose("card", "resident-longest-texts");
    click("putCard");
    read();
    for (const char *name : {"front", "back", "photo"})
        EXPECT_EQ(first[name], onScreen(find(name))) << name;
    check("cover", false);
    for (const char *name : {"front", "photo"})
        EXPECT_NE(first[name], onScreen(find(name))) << name;
}

TEST_F(Window, Saved_AreTheFilesOfTheCardForTheirOwnerAlone)
{
    show("resident");
    trigger("Save…");
    answerFileDialog(m_folder.path());
    const QString folder = m_folder.filePath("0001");
    EXPECT_EQ(headline(), ("The card was saved in " + folder + ".").toStdString());
    EXPECT_EQ(modeOf(folder), 0700);
    const app::CardPointer card = cardOfHistory(0);
    for (const app::NamedContent &file : app::contentsOf(*card, app::CardFiles::ALL)) {
        EXPECT_EQ(readFile(folder + '/' + file.name), file.content) << file.name.toStdString();
        EXPECT_EQ(modeOf(folder + '/' + file.name), 0600) << file.name.toStdString();
    }
    EXPECT_EQ(namesIn(folder).size(), 5U);
}

TEST_F(Window, SavedWhileCovered_IsTheWholeCardAndReportedAsSuch)
{
    show("resident");
    check("cover", true);
    trigger("Save…");
    answerFileDialog(m_folder.path());
    EXPECT_EQ(details(), "It is the whole card: nothing is covered there.");
    EXPECT_THAT(readFile(m_folder.filePath("0001/card.json")).toStdString(),
                HasSubstr(builtInCard("resident").name.toStdString()));
}

/** How a title stands in a PDF file: UTF-16, the higher byte first. */
QByteArray pdfTitle(const QString &text)
{
    QByteArray bytes;
    for (const QChar character : text)
        bytes.append(char(character.row())).append(char(character.cell()));
    return bytes;
}

TEST_F(Window, NextCardReadAndHistoryClearedWhileADialogIsOpen_TheCardBeforeIsKept)
{
    const QString pdf = m_folder.filePath("card.pdf");
    const QString json = m_folder.filePath("0001/card.json");
    const auto print = [&] {
        auto *const dialog = window().findChild<QPrintDialog *>();
        dialog->printer()->setOutputFileName(pdf);
        emit dialog->accepted(dialog->printer());
        static_cast<QDialog *>(dialog)->done(QDialog::Accepted);
    };
    const struct {
        const char *action;
        QString file;
        std::function<void()> answer;
        std::function<QByteArray(const QString &)> mark; ///< what a card of this name leaves there
    } ways[] = {
        {"Save…", json, [&] { answerFileDialog(m_folder.path()); },
         [](const QString &card) { return builtInCard(card).idNumber.toUtf8(); }},
        {"Export as PDF…", pdf, [&] { answerFileDialog(pdf); }, pdfTitle},
        {"Print…", pdf, print, pdfTitle},
    };
    for (const auto &way : ways) {
        SCOPED_TRACE(way.action);
        show("resident");
        const QString kind = field("Kind");
        check("automatic", true);
        trigger(QString::fromUtf8(way.action));
        find<viewer::RoadPanel>("roadPanel")->putCard("hmt-macao", {});
        EXPECT_TRUE(waitFor([&] { return model("history")->rowCount() == 2; }));
        const QString nextKind = field("Kind");
        find<QAbstractButton>("clearHistory")->click();
        way.answer();
        const QByteArray kept = readFile(way.file);
        const bool isJson = way.file == json;
        EXPECT_TRUE(kept.contains(way.mark(isJson ? "resident" : kind)));
        EXPECT_FALSE(kept.contains(way.mark(isJson ? "hmt-macao" : nextKind)));
        close();
        QFile::remove(way.file);
    }
}

TEST_F(Window, SavingThatFails_IsReportedAndLeavesNothing)
{
    for (const auto &[action, failure] :
         {std::pair("Save…", "The card could not be saved."),
          std::pair("Export as PDF…", "The PDF file could not be written.")}) {
        show("resident");
        trigger(QString::fromUtf8(action));
        auto *const dialog = window().findChild<QFileDialog *>();
        // The folder goes while the user looks at the dialog.
        emit dialog->fileSelected("/proc/no-folder/card");
        dialog->close();
        EXPECT_EQ(headline(), failure);
        EXPECT_THAT(details(), HasSubstr("/proc/no-folder"));
        expectMessage(Kind::FAILURE);
        close();
    }
}

/** What a PDF file holds beside the time of its making. */
QByteArray timelessPdf(const QString &path)
{
    const QByteArray file = readFile(path); // with zeros in it
    QString text = QString::fromLatin1(file.constData(), file.size());
    EXPECT_THAT(text.left(5).toStdString(), "%PDF-");
    return text.remove(QRegularExpression("/CreationDate \\(D:[^)]*\\)")).toLatin1();
}

TEST_F(Window, Pdf_IsTheCardsSheetForItsOwnerAloneAndNamedSo)
{
    show("resident");
    trigger("Export as PDF…");
    EXPECT_EQ(window().findChild<QFileDialog *>()->acceptMode(), QFileDialog::AcceptSave);
    answerFileDialog(m_folder.filePath("card"));
    const QString path = m_folder.filePath("card.pdf");
    EXPECT_EQ(headline(), ("The card was exported to " + path + ".").toStdString());
    EXPECT_EQ(modeOf(path), 0600);
    const app::CardPointer card = cardOfHistory(0);
    const QString expected = m_folder.filePath("expected.pdf");
    QString problem;
    app::writeSheetPdf({card->picture(app::CardSide::FRONT), card->picture(app::CardSide::BACK),
                        "Resident identity card"},
                       expected, &problem);
    EXPECT_EQ(timelessPdf(path), timelessPdf(expected));
}

TEST_F(Window, Print_OpensTheSystemsDialogAndPrintsOrReportsThatItCouldNot)
{
    show("resident");
    const auto print = [this](const QString &path) {
        trigger("Print…");
        auto *const dialog = window().findChild<QPrintDialog *>();
        ASSERT_NE(dialog, nullptr);
        dialog->printer()->setOutputFileName(path);
        emit dialog->accepted(dialog->printer());
        static_cast<QDialog *>(dialog)->done(QDialog::Accepted);
        EXPECT_TRUE(waitFor([this] { return window().findChild<QDialog *>() == nullptr; }));
    };
    print("/proc/no-folder/printed.pdf");
    EXPECT_EQ(headline(), "The card could not be printed.");
    EXPECT_EQ(details(), "See that the printer is ready and that the card has "
                         "pictures, and print once more.");
    expectMessage(Kind::FAILURE);
    print(m_folder.filePath("printed.pdf"));
    EXPECT_EQ(headline(), "The card was sent to the printer.");
    EXPECT_GT(readFile(m_folder.filePath("printed.pdf")).size(), 1000);
}

/** Counts the requests to close a window. */
class CloseWatch : public QObject
{
public:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        m_count += event->type() == QEvent::Close ? 1 : 0;
        return false;
    }
    int m_count = 0;
};

TEST_F(Window, Keys_DoWhatTheirActionsDo)
{
    show("resident");
    QStringList dialogs;
    for (const Qt::Key key : {Qt::Key_S, Qt::Key_E, Qt::Key_P}) {
        QTest::keyClick(&window(), key, Qt::ControlModifier);
        auto *const dialog = window().findChild<QDialog *>();
        ASSERT_NE(dialog, nullptr) << key;
        dialogs << dialog->windowTitle();
        delete dialog;
    }
    EXPECT_EQ(dialogs, QStringList({"Save in a new folder of", "Export as PDF", "Print"}));
    QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(clipboard().split('\n'), rows("fields"));
    CloseWatch watch;
    window().installEventFilter(&watch);
    QTest::keyClick(&window(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(watch.m_count, 1) << "which ends the program";
    EXPECT_FALSE(window().isVisible());
}

TEST_F(Window, WithoutACard_NothingCanBeSavedPrintedOrCopied)
{
    open();
    QStringList enabled;
    for (const QAction *const action : window().findChildren<QAction *>()) {
        if (action->isEnabled() && action->menu() == nullptr && !action->text().isEmpty())
            enabled << action->text().remove('&');
    }
    EXPECT_EQ(enabled, QStringList({"Read", "Quit"}));
}

/** The picture's size in the screen's own pixels. */
QSizeF devicePixels(const QWidget *widget)
{
    return QSizeF(widget->size()) * widget->devicePixelRatioF();
}

TEST_F(Window, Pictures_HaveTheSizeOfACardAtAnyScale)
{
    show("resident");
    constexpr double PIXELS_PER_MM = 96 / 25.4; // of the X server
    const double tolerance = window().devicePixelRatioF();
    for (const char *name : {"front", "back"}) {
        EXPECT_NEAR(devicePixels(find(name)).width(), 85.6 * PIXELS_PER_MM, tolerance) << name;
        EXPECT_NEAR(devicePixels(find(name)).height(), 54 * PIXELS_PER_MM, tolerance) << name;
    }
    EXPECT_NEAR(devicePixels(find("photo")).width(), 26 * PIXELS_PER_MM, tolerance);
    EXPECT_NEAR(devicePixels(find("photo")).height(), 32 * PIXELS_PER_MM, tolerance);
    EXPECT_FALSE(find("scaleNote")->isVisible());
    if (const double scale = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble(); scale > 0) {
        EXPECT_EQ(window().devicePixelRatioF(), scale);
    }
}

TEST_F(Window, SmallWindow_KeepsEveryControlInsideAtAnyScale)
{
    openWithCard("resident", "open-fails=7");
    read();
    window().resize(900, 500);
    QCoreApplication::processEvents();
    const QSize screen = QApplication::primaryScreen()->size();
    EXPECT_LE(window().width(), screen.width());
    EXPECT_LE(window().height(), screen.height());
    for (const char *name : {"road", "putCard", "takeCard", "read", "cover", "clearHistory"}) {
        const QWidget *const widget = find(name);
        const QRect place(widget->mapTo(&window(), QPoint(0, 0)), widget->size());
        EXPECT_TRUE(window().rect().contains(place)) << name;
        EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << name;
    }
}

/** A palette of light texts on dark grounds, as a dark theme has it. */
class DarkTheme
{
public:
    DarkTheme()
    {
        QPalette dark(QColor(45, 45, 45));
        dark.setColor(QPalette::Base, QColor(30, 30, 30));
        dark.setColor(QPalette::Text, Qt::white);
        dark.setColor(QPalette::WindowText, Qt::white);
        dark.setColor(QPalette::ButtonText, Qt::white);
        QApplication::setPalette(dark);
    }
    ~DarkTheme() { QApplication::setPalette(QPalette()); }
    DarkTheme(const DarkTheme &) = delete;
    DarkTheme &operator=(const DarkTheme &) = delete;
};

int brightest(const QImage &image)
{
    int most = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            most = std::max(most, qGray(image.pixel(x, y)));
    }
    return most;
}

int meanBrightness(const QImage &image)
{
    return qGray(image.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).pixel(0, 0));
}

TEST_F(Window, InADarkTheme_GroundsAreDarkAndTextsBright)
{
    const DarkTheme dark;
    openWithCard("resident");
    for (const char *name : {"front", "fields", "history", "headline", "read"}) {
        EXPECT_LT(meanBrightness(picture(name)), 110) << name;
    }
    for (const char *name : {"front", "headline", "read"})
        EXPECT_GT(brightest(picture(name)), 180) << name;
    read();
    check("cover", true);
    EXPECT_LT(meanBrightness(picture("front")), 110);
}

/** All that a user can work with, by walking through every widget of the window. */
QList<QWidget *> controls(const QWidget &window)
{
    QList<QWidget *> all;
    for (QWidget *const widget : window.findChildren<QWidget *>()) {
        const bool isPart =
            qobject_cast<QAbstractScrollArea *>(widget->parentWidget()) != nullptr ||
            qobject_cast<QComboBox *>(widget->parentWidget()) != nullptr;
        if (widget->isVisible() && widget->isEnabled() && !isPart &&
            (widget->focusPolicy() & Qt::TabFocus) != 0)
            all << widget;
    }
    return all;
}

TEST_F(Window, EveryControl_HasANameAndIsReachedByTab)
{
    for (const char *road : {"The maker's library", "USB", "Simulator"}) {
        open();
        choose("road", road);
        std::set<QWidget *> reached;
        find("road")->setFocus();
        ASSERT_TRUE(waitFor([&] { return QApplication::focusWidget() == find("road"); }));
        for (int i = 0; i < 40; ++i) {
            reached.insert(QApplication::focusWidget());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        EXPECT_GE(controls(window()).size(), 8);
        for (QWidget *const control : controls(window())) {
            EXPECT_TRUE(reached.count(control) == 1) << control->objectName().toStdString();
            EXPECT_FALSE(control->accessibleName().isEmpty())
                << control->metaObject()->className() << control->objectName().toStdString();
            QAccessibleInterface *const seen = QAccessible::queryAccessibleInterface(control);
            ASSERT_NE(seen, nullptr);
            EXPECT_FALSE(seen->text(QAccessible::Name).isEmpty());
        }
        close();
    }
}

/** The keys that go with Alt, of what is seen at once. */
QStringList mnemonics(const QWidget &window)
{
    QStringList keys;
    const auto take = [&](const QString &text) {
        const QString key = QKeySequence::mnemonic(text).toString();
        if (!key.isEmpty())
            keys << key;
    };
    for (const QAbstractButton *const button : window.findChildren<QAbstractButton *>()) {
        if (button->isVisible())
            take(button->text());
    }
    for (const QLabel *const label : window.findChildren<QLabel *>()) {
        if (label->isVisible() && label->buddy() != nullptr)
            take(label->text());
    }
    for (const QMenu *const menu : window.findChildren<QMenu *>())
        take(menu->title());
    return keys;
}

TEST_F(Window, KeysWithAlt_AreEachGivenOnceInBothLanguages)
{
    const auto expectOnce = [&] {
        for (const int road : {0, 1, 2}) {
            open();
            find<QComboBox>("road")->setCurrentIndex(road);
            QStringList keys = mnemonics(window());
            EXPECT_GE(keys.size(), 6);
            EXPECT_EQ(keys.removeDuplicates(), 0) << keys.join(' ').toStdString();
            close();
        }
    };
    expectOnce();
    const InChinese chinese;
    expectOnce();
}

bool hasChinese(const QString &text)
{
    return std::any_of(text.begin(), text.end(),
                       [](QChar c) { return c.script() == QChar::Script_Han; });
}

TEST_F(Window, InChinese_EveryTextIsChinese)
{
    const InChinese chinese;
    openWithCard("hmt-hong-kong");
    read();
    EXPECT_EQ(headline(), "读卡成功。");
    for (const QString &row : rows("fields"))
        EXPECT_TRUE(hasChinese(row.section('\t', 0, 0))) << row.toStdString();
    EXPECT_TRUE(hasChinese(rows("history").value(0).section('\t', 2, 2)));
    for (const QAbstractButton *const button : window().findChildren<QAbstractButton *>()) {
        if (button->isVisible() && !button->text().isEmpty()) {
            EXPECT_TRUE(hasChinese(button->text())) << button->text().toStdString();
        }
    }
    for (const QWidget *const control : controls(window()))
        EXPECT_TRUE(hasChinese(control->accessibleName())) << control->objectName().toStdString();
}

TEST_F(Window, DialogsInChinese_HaveChineseTitlesButtonsAndLabels)
{
    const InChinese chinese; // with Qt's own: Debian has them in qttranslations5-l10n
    openWithCard("resident");
    read();
    const auto expectChinese = [&](QDialog *dialog) {
        ASSERT_NE(dialog, nullptr);
        QStringList texts{dialog->windowTitle()};
        for (const QAbstractButton *const button : dialog->findChildren<QAbstractButton *>())
            texts << (button->isVisible() ? button->text() : QString());
        for (const QLabel *const label : dialog->findChildren<QLabel *>())
            texts << (label->isVisible() && label->buddy() != nullptr ? label->text() : QString());
        texts.removeAll(QString());
        texts.removeAll(QStringLiteral("..."));
        EXPECT_GE(texts.size(), 4);
        if (QLibraryInfo::version() < QVersionNumber(5, 15, 3)) {
            std::cout << "Left out: this version of Qt has no Chinese word for its button Cancel\n";
            texts.removeAll(QStringLiteral("Cancel"));
        }
        for (const QString &text : texts)
            EXPECT_TRUE(hasChinese(text)) << text.toStdString();
        delete dialog;
    };
    for (QAction *const action : window().findChildren<QAction *>()) {
        if (action->text().endsWith(QStringLiteral("…"))) {
            action->trigger();
            expectChinese(window().findChild<QDialog *>());
        }
    }
    find<QComboBox>("road")->setCurrentIndex(2);
    click("cardFile");
    expectChinese(window().findChild<QDialog *>());
}

TEST_F(Window, IconOfItsName_IsTakenFromTheDesktop)
{
    const QString theme = m_folder.filePath("hicolor");
    ASSERT_TRUE(QDir().mkpath(theme + "/48x48/apps"));
    writeFile(theme + "/index.theme", "[Icon Theme]\nName=Hicolor\nDirectories=48x48/apps\n"
                                      "[48x48/apps]\nSize=48\n");
    QImage picture(48, 48, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(theme + "/48x48/apps/idcard-viewer.png"));
    QIcon::setThemeSearchPaths({m_folder.path()});
    QIcon::setThemeName("hicolor");
    open();
    EXPECT_EQ(window().windowIcon().pixmap(48, 48).toImage().pixelColor(24, 24), QColor(Qt::red));
}

TEST_F(Window, FailureInChinese_IsToldWithCauseAndRemedyInChinese)
{
    const InChinese chinese;
    openWithCard("resident", "no-card");
    read();
    EXPECT_TRUE(hasChinese(QString::fromStdString(headline())));
    const QStringList lines = QString::fromStdString(details()).split('\n');
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[0].startsWith("处理办法：") && lines[1].startsWith("原因："));
    EXPECT_FALSE(lines[1].contains("card"));
}

} // namespace
