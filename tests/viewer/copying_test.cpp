// What the window gives to other programs: copied, dragged, and covered.

#include <gmock/gmock.h>

#include <QAction>
#include <QClipboard>
#include <QDate>
#include <QDirIterator>
#include <QDrag>
#include <QFileInfo>
#include <QMimeData>
#include <QMouseEvent>
#include <QScreen>
#include <QTimer>
#include <QUrl>

#include "apps/card/card_output.h"
#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"
#include "tests/viewer/viewer_test.h"

using namespace viewer_test;
using testing::HasSubstr;

namespace
{

const QString COVER = QString(8, QChar(0x2022));
const QString SECRET = QStringLiteral("x-kde-passwordManagerHint");

class Copying : public ViewerTest
{
protected:
    void show(const QString &card)
    {
        openWithCard(card);
        read();
        ASSERT_TRUE(state().kind == Kind::READ || state().kind == Kind::ATTENTION) << headline();
    }

    int rowOf(const QString &label)
    {
        const QStringList all = rows("fields");
        for (int row = 0; row < all.size(); ++row) {
            if (all[row].startsWith(label + '\t'))
                return row;
        }
        ADD_FAILURE() << label.toStdString();
        return 0;
    }

    void clickField(const QString &label, int column)
    {
        auto *const table = find<QTableView>("fields");
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          table->visualRect(model("fields")->index(rowOf(label), column)).center());
    }

    static void expectSecret(const QMimeData *data) { EXPECT_EQ(data->data(SECRET), "secret"); }

    /** The files that have been dragged out and are still there. */
    QStringList draggedFiles()
    {
        QStringList files;
        for (QDirIterator all(path("runtime"), QDir::Files, QDirIterator::Subdirectories);
             all.hasNext();)
            files << all.next();
        return files;
    }

    /** The bytes and the forms that are dragged out of a picture; none when nothing can be. */
    QMap<QString, QByteArray> dragged(const char *view)
    {
        auto *const picture = find<viewer::PictureView>(view);
        QMap<QString, QByteArray> forms;
        QTimer::singleShot(100, picture, [&] {
            for (const QDrag *const drag : picture->findChildren<QDrag *>()) {
                for (const QString &form : drag->mimeData()->formats())
                    forms.insert(form, drag->mimeData()->data(form));
            }
            QDrag::cancel();
        });
        const QPoint from = picture->rect().center();
        QTest::mousePress(picture, Qt::LeftButton, {}, from);
        const QPoint to = from + QPoint(QApplication::startDragDistance() + 5, 0);
        QMouseEvent move(QEvent::MouseMove, to, picture->mapToGlobal(to), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(picture, &move);
        QTest::qWait(200);
        QTest::mouseRelease(picture, Qt::LeftButton, {}, to);
        return forms;
    }
};

TEST_F(Copying, FieldThatIsClicked_IsCopiedWithoutItsLabel)
{
    show("resident");
    for (const int column : {0, 1}) {
        clickField("Address", column);
        EXPECT_EQ(clipboard(), builtInCard("resident").address);
        expectState(Kind::READ, "Copied: Address");
        clickField("Identity number", column);
        EXPECT_EQ(clipboard(), builtInCard("resident").idNumber);
    }
    expectSecret(QApplication::clipboard()->mimeData());
}

TEST_F(Copying, NameAndNumber_HaveKeys)
{
    show("hmt-hong-kong");
    QTest::keyClick(&window(), Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(clipboard(), builtInCard("hmt-hong-kong").name);
    expectState(Kind::READ, "Copied: Name");
    expectSecret(QApplication::clipboard()->mimeData());
    QTest::keyClick(&window(), Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(clipboard(), builtInCard("hmt-hong-kong").idNumber);
    expectSecret(QApplication::clipboard()->mimeData());
}

TEST_F(Copying, SelectedField_IsCopiedByKeyWithoutItsLabelAndNoneLeavesTheClipboard)
{
    show("resident");
    auto *const table = find<QTableView>("fields");
    table->selectRow(rowOf("Name"));
    press("fields", Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard(), builtInCard("resident").name);
    table->setCurrentIndex({});
    QApplication::clipboard()->setText("mine");
    press("fields", Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard().toStdString(), "mine");
}

TEST_F(Copying, AllFields_AreCopiedWithLabelsLineByLine)
{
    show("resident");
    QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(clipboard().split('\n'), rows("fields"));
    EXPECT_GE(clipboard().count('\n'), 9);
    expectSecret(QApplication::clipboard()->mimeData());
}

TEST_F(Copying, ContextMenuOfTheTable_OffersBothCopies)
{
    show("resident");
    auto *const table = find("fields");
    EXPECT_EQ(table->contextMenuPolicy(), Qt::ActionsContextMenu);
    QStringList texts;
    for (const QAction *const action : table->actions())
        texts << action->text().remove('&');
    EXPECT_EQ(texts, QStringList({"Copy the selected field", "Copy all fields with labels"}));
}

TEST_F(Copying, PhotoAndSides_AreCopiedAsPictureAndAsTheirFiles)
{
    show("resident");
    EXPECT_EQ(runReader({"read", "--simulate", "resident", "--out", path("tool")}).exitStatus, 0);
    const struct {
        const char *action;
        const char *form;
        const char *file;
    } pictures[] = {{"Copy the photo", "image/bmp", "tool/photo.bmp"},
                    {"Copy the front", "image/jpeg", "tool/front.jpg"},
                    {"Copy the back", "image/jpeg", "tool/back.jpg"}};
    for (const auto &picture : pictures) {
        trigger(picture.action);
        const QMimeData *const data = QApplication::clipboard()->mimeData();
        const QByteArray file = readFile(path(picture.file));
        EXPECT_EQ(data->data(picture.form), file) << picture.action;
        EXPECT_EQ(data->imageData().value<QImage>().size(), QImage::fromData(file).size());
        expectSecret(data);
        EXPECT_THAT(headline(), testing::StartsWith("Copied: "));
    }
}

TEST_F(Copying, PictureThatTheCardHasNot_IsReportedAndLeavesTheClipboard)
{
    show("foreign-new-photo-jpeg");
    ASSERT_TRUE(find<viewer::PictureView>("photo")->visibleFile().isNull());
    QApplication::clipboard()->setText("mine");
    trigger("Copy the photo");
    EXPECT_EQ(clipboard().toStdString(), "mine");
    expectState(Kind::ATTENTION, "Nothing was copied.");
}

TEST_F(Copying, NameAndNumberThatTheCardHasNot_AreReportedAndLeaveTheClipboard)
{
    show(describedResident({{"name", " "}, {"address", " "}, {"idNumber", " "}}));
    QApplication::clipboard()->setText("mine");
    for (const char *const action : {"Copy the name", "Copy the number"}) {
        trigger(action);
        EXPECT_EQ(clipboard().toStdString(), "mine") << action;
        expectState(Kind::ATTENTION, "Nothing was copied.", "the card does not have it");
    }
}

TEST_F(Copying, FieldThatIsNotSelected_IsReportedAndLeavesTheClipboard)
{
    show("resident");
    QApplication::clipboard()->setText("that of the guest before");
    press("fields", Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard().toStdString(), "that of the guest before");
    expectState(Kind::ATTENTION, "Nothing was copied.", "no field is selected");
}

TEST_F(Copying, PhotoAndSides_CanBeDraggedOutAsTheirFiles)
{
    show("resident");
    EXPECT_EQ(runReader({"read", "--simulate", "resident", "--out", path("tool")}).exitStatus, 0);
    EXPECT_EQ(dragged("photo")["image/bmp"], readFile(path("tool/photo.bmp")));
    EXPECT_EQ(dragged("front")["image/jpeg"], readFile(path("tool/front.jpg")));
    const QMap<QString, QByteArray> back = dragged("back");
    EXPECT_EQ(back["image/jpeg"], readFile(path("tool/back.jpg")));
    EXPECT_EQ(back[SECRET], "secret");
}

TEST_F(Copying, PictureThatIsDraggedOut_IsAFileOfItsOwnerAloneUntilAnotherCardIsShown)
{
    ASSERT_TRUE(QDir().mkdir(path("runtime")));
    ASSERT_TRUE(QFile::setPermissions(path("runtime"),
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    qputenv("XDG_RUNTIME_DIR", path("runtime").toUtf8());
    const std::function<void()> ends[] = {
        [this] { readNext("hmt-macao"); },
        [this] { find<QAbstractButton>("clearHistory")->click(); },
        [this] { close(); },
    };
    for (const auto &end : ends) {
        show("resident");
        const QString url = dragged("photo")["text/uri-list"].trimmed();
        ASSERT_EQ(draggedFiles().size(), 1);
        const QString file = draggedFiles()[0];
        EXPECT_EQ(url, QUrl::fromLocalFile(file).toString());
        EXPECT_TRUE(file.endsWith("/photo.bmp"));
        EXPECT_EQ(modeOf(file), 0600);
        EXPECT_EQ(modeOf(QFileInfo(file).path()), 0700);
        EXPECT_EQ(QImage(file).size(), QSize(102, 126));
        end();
        EXPECT_THAT(draggedFiles(), testing::IsEmpty());
    }
    qunsetenv("XDG_RUNTIME_DIR");
}

TEST_F(Copying, PictureOfThePreviousCardOrOneThatIsCovered_CannotBeDragged)
{
    show("resident");
    check("cover", true);
    EXPECT_TRUE(dragged("photo").isEmpty());
    check("cover", false);
    EXPECT_FALSE(dragged("photo").isEmpty());
    readNext("resident", "no-card");
    EXPECT_TRUE(dragged("photo").isEmpty());
    EXPECT_TRUE(dragged("front").isEmpty());
}

/** Of eight digits. */
QString dateForPeople(const QString &date)
{
    return QStringList({date.mid(0, 4), date.mid(4, 2), date.mid(6)}).join('-');
}

using Covered = Copying;

TEST_F(Covered, NameNumberBirthAndAddress_AreInNoViewAndNoCopy)
{
    for (const char *const name : {"hmt-taiwan", "foreign-2017", "foreign-2017-longest-name"}) {
        openCovered(name);
        read();
        const simulator::CardDescription card = builtInCard(name);
        QApplication::clipboard()->setText("mine");
        QString covered = window().windowTitle() + '\n' + everyText();
        for (const QAction *const action : window().findChildren<QAction *>()) {
            if (action->text().startsWith("Co") || action->text().startsWith("&Co")) {
                const_cast<QAction *>(action)->trigger();
                covered += clipboard() + headline().c_str() + line().c_str() + details().c_str();
            }
        }
        for (int row = 0; row < model("fields")->rowCount(); ++row) {
            clickField(model("fields")->index(row, 0).data().toString(), 1);
            covered += clipboard() + headline().c_str();
        }
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

TEST_F(Covered, PersonalFieldOrPicture_IsNotCopiedAndThatIsSaid)
{
    show("resident");
    check("cover", true);
    for (const char *const action : {"Copy the name", "Copy the number", "Copy the photo",
                                     "Copy the front", "Copy the back"}) {
        QApplication::clipboard()->setText("mine");
        trigger(action);
        EXPECT_EQ(clipboard().toStdString(), "mine") << action;
        expectState(Kind::ATTENTION, "Nothing was copied.");
    }
    clickField("Address", 1);
    EXPECT_EQ(clipboard().toStdString(), "mine");
    clickField("Sex", 1);
    EXPECT_EQ(clipboard(), field("Sex"));
}

TEST_F(Covered, AllFieldsCopied_HaveDots)
{
    show("resident");
    check("cover", true);
    trigger("Copy all fields with labels");
    EXPECT_THAT(clipboard().toStdString(), HasSubstr(("Name\t" + COVER).toStdString()));
    expectNothingOf(
        builtInCard("resident"),
        clipboard().toUtf8().replace(builtInCard("resident").issuingAuthority.toUtf8(), {}));
}

TEST_F(Covered, Selection_StaysWhenItIsUncovered)
{
    show("resident");
    find<QTableView>("fields")->selectRow(rowOf("Sex"));
    for (const bool isCovered : {true, false}) {
        check("cover", isCovered);
        press("fields", Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(clipboard(), field("Sex"));
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

TEST_F(Covered, ScreenshotsOfTwoCards_AreTheSameToThePixel)
{
    const QString cards[] = {describedResident(),
                             describedResident({{"name", "欧阳测试者名字更长"},
                                                {"birthDate", "19800101"},
                                                {"idNumber", "110101198001010010"},
                                                {"address", "欧阳测试者名字更长路 1 号"}})};
    std::map<std::string, QImage> first;
    for (const QString &card : cards) {
        openCovered(card);
        window().move(0, 0);
        read();
        expectState(Kind::READ, "The card was read.");
        for (const char *view : {"front", "back", "photo", "name", "number", "fields"}) {
            const QImage seen = onScreen(find(view));
            EXPECT_TRUE(first.count(view) == 0 || first[view] == seen) << view;
            first[view] = seen;
        }
        check("cover", false);
        for (const char *view : {"front", "name"})
            EXPECT_NE(first[view], onScreen(find(view))) << view;
        close();
    }
}

TEST_F(Covered, StateAndNotes_SayNothingOfTheCard)
{
    openCovered("resident-ethnic-name-cut");
    read();
    const QByteArray said = (line() + headline() + text("notes").toStdString()).c_str();
    expectNothingOf(builtInCard("resident-ethnic-name-cut"), said);
}

TEST_F(Covered, AfterTheCardWasRead_StateSaysNothingOfItUntilUncovered)
{
    const QDate birth = QDate::currentDate().addYears(-10);
    show(describedResident({{"birthDate", birth.toString("yyyyMMdd")}}));
    EXPECT_THAT(line(), HasSubstr("a minor, 10 years old"));
    check("cover", true);
    expectState(Kind::ATTENTION, "The card was read; look at it closely.",
                "The holder is a minor.");
    EXPECT_THAT(everyText().toStdString(), testing::Not(HasSubstr("10 years old")));
    check("cover", false);
    EXPECT_THAT(line(), HasSubstr("a minor, 10 years old"));
}

} // namespace
