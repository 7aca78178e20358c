// What is kept of cards: saved, printed, exported.

#include <gmock/gmock.h>

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QRegularExpression>

#include "apps/card_view/card_sheet.h"
#include "tests/support/build_programs.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"
#include "tests/viewer/viewer_test.h"

using namespace viewer_test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

class Keeping : public ViewerTest
{
protected:
    void SetUp() override
    {
        ViewerTest::SetUp();
        ASSERT_TRUE(QDir().mkdir(path("kept")));
    }

    /** Opens the window, with this folder remembered, and reads a card. */
    void show(const QString &card, const QString &folder = {},
              viewer::FolderNames names = viewer::FolderNames::NUMBERS)
    {
        viewer::ViewerSettings settings;
        settings.folder = folder;
        settings.folderNames = names;
        settings.store();
        openWithCard(card);
        read();
    }

    void pressSave() { QTest::keyClick(&window(), Qt::Key_S, Qt::ControlModifier); }

    /** Reads one more card, of a file: that of a resident of this name. */
    void readResident(const QString &name)
    {
        click("cardFile");
        answerFileDialog(describedResident({{"name", name}, {"address", "某地, \"东\""}}));
        click("putCard");
        read();
    }
};

class SavedCard : public Keeping, public testing::WithParamInterface<const char *>
{
};

TEST_P(SavedCard, IsByteForByteWhatTheToolSaves)
{
    show(GetParam(), path("kept"));
    pressSave();
    expectState(Kind::READ, ("The card was saved in " + path("kept/0001") + ".").toStdString());
    const ProcessResult run = runReader({"read", "--simulate", GetParam(), "--out", path("tool")});
    EXPECT_EQ(run.exitStatus, 0) << run.error();
    EXPECT_EQ(folderState(path("kept/0001")), folderState(path("tool")));
    EXPECT_GE(namesIn(path("tool")).size(), 4U);
    EXPECT_EQ(modeOf(path("kept/0001")), 0700);
    for (const std::string &name : namesIn(path("kept/0001")))
        EXPECT_EQ(modeOf(path("kept/0001/") + name.c_str()), 0600) << name;
}

INSTANTIATE_TEST_SUITE_P(Kinds, SavedCard,
                         testing::Values("resident", "resident-no-fingerprint",
                                         "resident-ethnic-name-cut", "hmt-hong-kong",
                                         "foreign-2017", "foreign-2017-longest-name",
                                         "foreign-new"));

TEST_F(Keeping, FirstSave_AsksForTheFolderAndTheNextGoesThereToo)
{
    show("resident");
    pressSave();
    auto *const asked = dialog<QFileDialog>();
    ASSERT_NE(asked, nullptr);
    EXPECT_EQ(asked->windowTitle(), "Save in a new folder of");
    answerFileDialog(path("kept"));
    EXPECT_EQ(headline(), ("The card was saved in " + path("kept/0001") + ".").toStdString());
    readNext("hmt-macao");
    click("save");
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_EQ(headline(), ("The card was saved in " + path("kept/0002") + ".").toStdString());
    EXPECT_THAT(namesIn(path("kept")), ElementsAre("0001", "0002"));
    EXPECT_THAT(readFile(path("kept/0002/card.json")).toStdString(),
                HasSubstr(builtInCard("hmt-macao").idNumber.toStdString()));
    EXPECT_EQ(viewer::ViewerSettings::load().folder, path("kept"));
}

TEST_F(Keeping, FirstSaveInAFolderThatCannotBeUsed_AsksForAnotherTheNextTime)
{
    show("resident");
    pressSave();
    answerFileDialog("/proc");
    expectState(Kind::FAILED, "The card could not be saved.", "/proc/");
    pressSave();
    answerFileDialog(path("kept"));
    EXPECT_TRUE(QFile::exists(path("kept/0001/card.json")));
}

TEST_F(Keeping, SaveAs_AsksAndGoesElsewhereOnlyOnce)
{
    ASSERT_TRUE(QDir().mkdir(path("elsewhere")));
    show("resident", path("kept"));
    QTest::keyClick(&window(), Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    answerFileDialog(path("elsewhere"));
    EXPECT_THAT(namesIn(path("elsewhere")), ElementsAre("0001"));
    EXPECT_THAT(namesIn(path("kept")), IsEmpty());
    pressSave();
    EXPECT_THAT(namesIn(path("elsewhere")), ElementsAre("0001"));
    EXPECT_THAT(namesIn(path("kept")), ElementsAre("0001"));
}

TEST_F(Keeping, CardThatIsSavedWhenAnotherIsShownMeanwhile_IsCalledAnEarlierOne)
{
    show("resident");
    check("cover", true);
    trigger("Save as…");
    readNext("hmt-macao");
    answerFileDialog(path("kept"));
    expectState(Kind::ATTENTION, ("The card was saved in " + path("kept/0001") + ".").toStdString(),
                "It is an earlier card; another may lie on the reader.");
    check("cover", false);
    EXPECT_EQ(line(), "It is an earlier card; another may lie on the reader.");
    EXPECT_THAT(readFile(path("kept/0001/card.json")).toStdString(),
                HasSubstr(builtInCard("resident").idNumber.toStdString()));
}

TEST_F(Keeping, SaveAsBeforeAFolderWasChosen_ChoosesNone)
{
    show("resident");
    trigger("Save as…");
    answerFileDialog(path("kept"));
    EXPECT_THAT(namesIn(path("kept")), ElementsAre("0001"));
    EXPECT_EQ(viewer::ViewerSettings::load().folder, QString());
    pressSave();
    EXPECT_NE(dialog<QFileDialog>(), nullptr);
}

TEST_F(Keeping, ByHolder_SavesInFoldersOfHisNameAndNumberAndKeepsThoseThatAreThere)
{
    const simulator::CardDescription card = builtInCard("resident");
    const std::string name = (card.name + ' ' + card.idNumber).toStdString();
    show("resident", path("kept"), viewer::FolderNames::HOLDERS);
    for (int times = 0; times < 3; ++times) {
        pressSave();
        EXPECT_THAT(headline(), testing::StartsWith("The card was saved in "));
    }
    const std::vector<std::string> names = namesIn(path("kept"));
    ASSERT_EQ(names.size(), 3U);
    for (const std::string &each : names) {
        EXPECT_THAT(each, testing::StartsWith(name));
        EXPECT_TRUE(QFile::exists(path("kept/") + each.c_str() + "/card.json")) << each;
    }
}

TEST_F(Keeping, ByHolderWithAHostileName_SavesInsideTheFolder)
{
    show("resident", path("kept"), viewer::FolderNames::HOLDERS);
    for (const char *const name : {"../../x", "/etc/x", "..", ".", "a/b"}) {
        readResident(name);
        const std::size_t before = namesIn(path("kept")).size();
        pressSave();
        EXPECT_THAT(headline(), testing::StartsWith("The card was saved in ")) << name;
        EXPECT_EQ(namesIn(path("kept")).size(), before + 1) << name;
    }
    for (const std::string &name : namesIn(path("kept")))
        EXPECT_THAT(name, testing::Not(testing::StartsWith(".")));
    EXPECT_FALSE(QFile::exists(path("x")) || QFile::exists(path("../x")));
}

TEST_F(Keeping, FolderThatIsGone_IsReportedWithItsNameAndNothingIsLeft)
{
    show("resident", "/proc/no-folder");
    pressSave();
    expectState(Kind::FAILED, "The card could not be saved.", "/proc/no-folder");
}

TEST_F(Keeping, PdfThatCannotBeWritten_IsReportedWithItsName)
{
    show("resident", path("kept"));
    trigger("Export as PDF…");
    auto *const asked = dialog<QFileDialog>();
    ASSERT_NE(asked, nullptr);
    // The folder goes while the user looks at the dialog.
    emit asked->fileSelected("/proc/no-folder/card.pdf");
    asked->close();
    expectState(Kind::FAILED, "The PDF file could not be written.", "/proc/no-folder");
}

TEST_F(Keeping, SavedWhileCovered_IsTheWholeCardAndReportedAsSuch)
{
    show("resident", path("kept"));
    check("cover", true);
    pressSave();
    EXPECT_EQ(line(), "It is the whole card: nothing is covered there.");
    EXPECT_THAT(readFile(path("kept/0001/card.json")).toStdString(),
                HasSubstr(builtInCard("resident").name.toStdString()));
}

class KeepingCovered : public Keeping
{
protected:
    /** Neither seen nor heard. */
    void expectHolderUnnamed()
    {
        const simulator::CardDescription card = builtInCard("resident");
        const QString said = everyText() + headline().c_str() + line().c_str();
        EXPECT_FALSE(said.contains(card.name) || said.contains(card.idNumber))
            << headline() << line();
        EXPECT_THAT(headline() + line(), HasSubstr(path("kept").toStdString()));
    }
};

TEST_F(KeepingCovered, FolderOfTheHolder_IsNotNamedUntilUncovered)
{
    show("resident", path("kept"), viewer::FolderNames::HOLDERS);
    check("cover", true);
    pressSave();
    expectState(Kind::READ, (QString("The card was saved in %1/").arg(path("kept")) +
                             QString(8, QChar(0x2022)) + '.')
                                .toStdString());
    EXPECT_EQ(line(), "It is the whole card: nothing is covered there.");
    expectHolderUnnamed();
    check("cover", false);
    EXPECT_THAT(headline(), HasSubstr(builtInCard("resident").name.toStdString()));
    EXPECT_EQ(line(), "");
    pressSave();
    check("cover", true);
    expectHolderUnnamed();
}

TEST_F(KeepingCovered, FolderOfTheHolderThatCannotBeMade_IsNotNamed)
{
    show("resident", "/proc/self", viewer::FolderNames::HOLDERS);
    pressSave();
    expectState(Kind::FAILED, "The card could not be saved.", "/proc/self/");
    EXPECT_THAT(line(), HasSubstr(builtInCard("resident").name.toStdString()));
    check("cover", true);
    expectState(Kind::FAILED, "The card could not be saved.", "/proc/self/");
    EXPECT_THAT(line(), testing::Not(HasSubstr(builtInCard("resident").name.toStdString())));
}

TEST_F(KeepingCovered, PdfFile_IsNotProposedNorReportedByTheNameOfTheHolder)
{
    show("resident", path("kept"));
    check("cover", true);
    trigger("Export as PDF…");
    auto *const asked = dialog<QFileDialog>();
    ASSERT_NE(asked, nullptr);
    EXPECT_THAT(asked->selectedFiles().value(0).toStdString(),
                testing::MatchesRegex(".*/kept/card 20[0-9-]{8} [0-9]{6}\\.pdf"));
    answerFileDialog(path("kept/") + builtInCard("resident").name + ".pdf");
    EXPECT_THAT(headline(), testing::StartsWith("The card was exported to "));
    expectHolderUnnamed();
}

/** What a PDF file holds beside the time of its making. */
QByteArray timelessPdf(const QString &path)
{
    const QByteArray file = readFile(path); // with zeros in it
    QString text = QString::fromLatin1(file.constData(), file.size());
    EXPECT_THAT(text.left(5).toStdString(), "%PDF-");
    return text.remove(QRegularExpression("/CreationDate \\(D:[^)]*\\)")).toLatin1();
}

TEST_F(Keeping, Pdf_IsTheCardsSheetUnderTheNameOfItsHolderForItsOwnerAlone)
{
    const simulator::CardDescription card = builtInCard("resident");
    show("resident", path("kept"));
    QTest::keyClick(&window(), Qt::Key_E, Qt::ControlModifier);
    auto *const asked = dialog<QFileDialog>();
    ASSERT_NE(asked, nullptr);
    EXPECT_EQ(asked->acceptMode(), QFileDialog::AcceptSave);
    const QString proposed = path("kept/") + card.name + ' ' + card.idNumber + ".pdf";
    EXPECT_EQ(asked->selectedFiles(), QStringList(proposed));
    asked->findChild<QPushButton *>()->setFocus();
    static_cast<QDialog *>(asked)->accept();
    EXPECT_TRUE(waitForNoDialog());
    EXPECT_EQ(headline(), ("The card was exported to " + proposed + ".").toStdString());
    EXPECT_EQ(modeOf(proposed), 0600);
    EXPECT_EQ(runReader({"read", "--simulate", "resident", "--out", path("tool")}).exitStatus, 0);
    QString problem;
    EXPECT_TRUE(app::writeSheetPdf({readFile(path("tool/front.jpg")),
                                    readFile(path("tool/back.jpg")), "Resident identity card"},
                                   path("expected.pdf"), &problem));
    EXPECT_EQ(timelessPdf(proposed), timelessPdf(path("expected.pdf")));
}

/** The words on a page. */
std::string pdfText(const QString &pdf)
{
    return build_programs::outputOf(IDCARD_PDFTOTEXT, {pdf, "-"}).simplified().toStdString();
}

class Printing : public Keeping
{
protected:
    void print(const QString &file)
    {
        QTest::keyClick(&window(), Qt::Key_P, Qt::ControlModifier);
        auto *const asked = dialog<QPrintDialog>();
        ASSERT_NE(asked, nullptr);
        asked->printer()->setOutputFileName(file);
        static_cast<QDialog *>(asked)->done(QDialog::Accepted);
        EXPECT_TRUE(waitForNoDialog());
    }

    void printFromPreview(const QString &file = {})
    {
        trigger("Print preview…");
        auto *const preview = dialog<QPrintPreviewDialog>();
        ASSERT_NE(preview, nullptr);
        EXPECT_TRUE(waitFor([&] { return !preview->printer()->docName().isEmpty(); }));
        preview->printer()->setOutputFileName(file);
        if (!file.isEmpty()) // there is no printer; what was shown stands for the printed page
            preview->findChild<QPrintPreviewWidget *>()->print();
        static_cast<QDialog *>(preview)->accept();
        EXPECT_TRUE(waitForNoDialog());
    }
};

TEST_F(Printing, PrinterThatCannotStart_IsReported)
{
    show("resident");
    print({});
    expectState(Kind::FAILED, "The card could not be printed.",
                "See that the printer is ready and that the card has pictures, and print once "
                "more.");
}

// A file that a full disk had cut off was said to have been sent to the printer.
TEST_F(Printing, IntoAFile_IsAnExportedPdf)
{
    show("resident");
    const QString file = path("printed.pdf");
    {
        const FileSizeLimit limit(1000);
        print(file);
    }
    expectState(Kind::FAILED, "The PDF file could not be written.", file.toStdString());
    EXPECT_FALSE(QFile::exists(file));
    print(file);
    expectState(Kind::READ, ("The card was exported to " + file + ".").toStdString());
    EXPECT_EQ(modeOf(file), 0600);
    EXPECT_GT(readFile(file).size(), 1000);
    EXPECT_EQ(pdfText(file), "");
}

// A page whose card has no portrait was printed without a word.
TEST_F(Printing, CardWithACompressedPhoto_HasTheWarningOnThePageAndInTheWindow)
{
    openWithCard("resident-compressed-photo", "photo-length=77");
    read();
    ASSERT_TRUE(find("print")->isEnabled());
    print(path("printed.pdf"));
    const char *const warning = "photo in the card's compressed form, not as a picture";
    expectState(Kind::ATTENTION,
                ("The card was exported to " + path("printed.pdf") + ".").toStdString(), warning);
    EXPECT_THAT(pdfText(path("printed.pdf")), HasSubstr(warning));
    trigger("Export as PDF…");
    answerFileDialog(path("exported.pdf"));
    EXPECT_THAT(pdfText(path("exported.pdf")), HasSubstr(warning));
    expectState(Kind::ATTENTION,
                ("The card was exported to " + path("exported.pdf") + ".").toStdString(), warning);
}

TEST_F(Printing, Preview_ShowsThePage)
{
    show("resident");
    trigger("Print preview…");
    auto *const preview = dialog<QPrintPreviewDialog>();
    ASSERT_NE(preview, nullptr);
    EXPECT_EQ(preview->printer()->docName(), "Resident identity card");
    EXPECT_EQ(preview->printer()->pageLayout().pageSize().id(), QPageSize::A4);
    preview->close();
    EXPECT_TRUE(waitForNoDialog());
    expectState(Kind::READ, "The card was read.");
}

// What came of it was not said.
TEST_F(Printing, FromThePreview_IsReported)
{
    show("resident");
    printFromPreview();
    expectState(Kind::READ, "The card was sent to the printer.");
    printFromPreview(path("printed.pdf"));
    expectState(Kind::READ,
                ("The card was exported to " + path("printed.pdf") + ".").toStdString());
    EXPECT_EQ(modeOf(path("printed.pdf")), 0600);
}

TEST_F(Printing, CardWithACompressedPhotoFromThePreview_HasTheWarningInTheWindow)
{
    openWithCard("resident-compressed-photo", "photo-length=77");
    read();
    printFromPreview();
    expectState(Kind::ATTENTION, "The card was sent to the printer, without its portrait.",
                "photo in the card's compressed form, not as a picture");
}

TEST_F(Keeping, NextCardReadAndHistoryClearedWhileADialogIsOpen_TheCardBeforeIsKept)
{
    const QString pdf = path("card.pdf");
    const QString json = path("kept/0001/card.json");
    const auto print = [&] {
        auto *const asked = dialog<QPrintDialog>();
        asked->printer()->setOutputFileName(pdf);
        static_cast<QDialog *>(asked)->done(QDialog::Accepted);
    };
    // How a title stands in a PDF file: UTF-16, the higher byte first.
    const auto title = [](const QString &text) {
        QByteArray bytes;
        for (const QChar character : text)
            bytes.append(char(character.row())).append(char(character.cell()));
        return bytes;
    };
    const struct {
        const char *action;
        QString file;
        std::function<void()> answer;
    } ways[] = {
        {"Save", json, [&] { answerFileDialog(path("kept")); }},
        {"Export as PDF…", pdf, [&] { answerFileDialog(pdf); }},
        {"Print…", pdf, print},
    };
    for (const auto &way : ways) {
        SCOPED_TRACE(way.action);
        show("resident");
        const QString kind = field("Kind");
        check("automatic", true);
        EXPECT_TRUE(waitForCards(2));
        trigger(QString::fromUtf8(way.action));
        find<viewer::SimulatorPanel>("simulator")->putCard("hmt-macao", {});
        EXPECT_TRUE(waitForCards(3));
        const QString nextKind = field("Kind");
        find<QAbstractButton>("clearHistory")->click();
        way.answer();
        const QByteArray kept = readFile(way.file);
        const bool isJson = way.file == json;
        EXPECT_TRUE(
            kept.contains(isJson ? builtInCard("resident").idNumber.toUtf8() : title(kind)));
        EXPECT_FALSE(
            kept.contains(isJson ? builtInCard("hmt-macao").idNumber.toUtf8() : title(nextKind)));
        find<QCheckBox>("automatic")->click();
        close();
        QFile::remove(way.file);
    }
}

class Table : public Keeping
{
protected:
    /** Exports the history and has it read by the build machine's own reader of such tables. */
    QVector<QStringList> exported()
    {
        find<QAbstractButton>("exportHistory")->click();
        answerFileDialog(path("cards.csv"));
        EXPECT_EQ(headline(),
                  ("The history was exported to " + path("cards.csv") + ".").toStdString());
        const QByteArray json = build_programs::outputOf(
            IDCARD_PYTHON,
            {"-c",
             "import csv, json, sys\n"
             "rows = list(csv.reader(open(sys.argv[1], encoding='utf-8-sig', newline=''), "
             "strict=True))\n"
             "print(json.dumps(rows))",
             path("cards.csv")});
        QVector<QStringList> rows;
        for (const QJsonValue &row : QJsonDocument::fromJson(json).array()) {
            rows << QStringList();
            for (const QJsonValue &cell : row.toArray())
                rows.last() << cell.toString();
        }
        return rows;
    }
};

TEST_F(Table, OfSeveralKinds_HasARowForEachCardTheOldestFirst)
{
    show("resident");
    readNext("hmt-macao");
    readNext("foreign-2017");
    const QVector<QStringList> rows = exported();
    ASSERT_EQ(rows.size(), 4);
    const QStringList labels = rows[0];
    EXPECT_EQ(labels[0], "Time");
    EXPECT_EQ(QStringList(labels).removeDuplicates(), 0);
    for (const QStringList &row : rows)
        EXPECT_EQ(row.size(), labels.size());
    const auto cell = [&](int row, const char *label) {
        return rows[row].value(labels.indexOf(label)).toStdString();
    };
    const char *const cards[] = {"resident", "hmt-macao"};
    for (int row = 1; row <= 2; ++row) {
        const simulator::CardDescription card = builtInCard(cards[row - 1]);
        EXPECT_EQ(cell(row, "Name"), card.name.toStdString());
        EXPECT_EQ(cell(row, "Identity number"), "\t" + card.idNumber.toStdString());
        EXPECT_EQ(cell(row, "Address"), card.address.toStdString());
        EXPECT_THAT(cell(row, "Time"), testing::MatchesRegex("20[0-9-]{8} [0-9:]{8}"));
    }
    EXPECT_EQ(cell(3, "Name"), builtInCard("foreign-2017").englishName.toStdString());
    EXPECT_EQ(cell(3, "Address"), "");
    EXPECT_EQ(cell(1, "Travel permit number"), "");
}

TEST_F(Table, BeginsWithTheMarkOfItsEncodingAndIsItsOwnersAlone)
{
    show("resident");
    exported();
    const QByteArray table = readFile(path("cards.csv"));
    EXPECT_TRUE(table.startsWith("\xEF\xBB\xBF"));
    EXPECT_TRUE(table.endsWith("\r\n"));
    EXPECT_EQ(table.count('\n'), 2);
    EXPECT_EQ(table.count("\r\n"), 2);
    EXPECT_EQ(modeOf(path("cards.csv")), 0600);
}

TEST_F(Table, TextsThatAreFormulasOrNumbersOrHaveQuotesAndCommas_StayTexts)
{
    show("resident");
    for (const char *const name : {"=1+1", "+8613", "@SUM(A1)", "-2", "007", "0", "a\"b,c"})
        readResident(name);
    const QVector<QStringList> rows = exported();
    const int name = rows[0].indexOf("Name");
    QStringList names;
    for (const QStringList &row : rows.mid(2))
        names << row[name];
    EXPECT_EQ(names,
              QStringList({"\t=1+1", "\t+8613", "\t@SUM(A1)", "\t-2", "\t007", "0", "a\"b,c"}));
    EXPECT_EQ(rows.last()[rows[0].indexOf("Address")].toStdString(), "某地, \"东\"");
    for (const QString &row : rows.last())
        EXPECT_FALSE(row.startsWith('=') || row.startsWith('+') || row.startsWith('@'));
}

TEST_F(Table, ThatCannotBeWritten_IsReportedWithItsName)
{
    show("resident");
    find<QAbstractButton>("exportHistory")->click();
    auto *const asked = dialog<QFileDialog>();
    ASSERT_NE(asked, nullptr);
    EXPECT_THAT(asked->selectedFiles()[0].toStdString(),
                HasSubstr(QDate::currentDate().toString(Qt::ISODate).toStdString()));
    emit asked->fileSelected("/proc/no-folder/cards.csv");
    asked->close();
    expectState(Kind::FAILED, "The table could not be written.", "/proc/no-folder");
}

TEST_F(Keeping, WithoutACard_NothingCanBeSavedPrintedCopiedOrExported)
{
    open();
    expectNobody();
    EXPECT_FALSE(find("exportHistory")->isEnabled());
    EXPECT_FALSE(find("clearHistory")->isEnabled());
    QStringList enabled;
    for (const QAction *const action : window().findChildren<QAction *>()) {
        const bool isOfMenu = action->parent() == &window();
        if (isOfMenu && action->isEnabled() && !action->text().isEmpty())
            enabled << action->text().remove('&');
    }
    EXPECT_EQ(enabled, QStringList({"Read", "Quit", "Search the history", "Clear the history",
                                    "Settings…", "True size", "Larger type", "Always on top",
                                    "Help", "Diagnose…", "About"}));
}

} // namespace
