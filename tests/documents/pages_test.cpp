// The Markdown pages: their links lead somewhere, and a page in two languages says the same in
// both.

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QRegularExpression>

using testing::AllOf;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;
using testing::Not;

namespace
{

const QString SOURCE = QStringLiteral(IDCARD_SOURCE_DIR);

QString textOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

/** All pages of the tree: of its own folder and of those that are no build output. */
QStringList pages()
{
    QStringList found;
    for (const QString &folder :
         {QStringLiteral("."), QStringLiteral("docs"), QStringLiteral("simulator")}) {
        const QDir dir(SOURCE + QLatin1Char('/') + folder);
        for (const QString &name : dir.entryList({QStringLiteral("*.md")}, QDir::Files))
            found << QDir::cleanPath(dir.filePath(name));
    }
    return found;
}

/** A page without its blocks of code between fences. */
QString prose(QString text)
{
    return text.remove(QRegularExpression(QStringLiteral("^```.*?^```$"),
                                          QRegularExpression::MultilineOption |
                                              QRegularExpression::DotMatchesEverythingOption));
}

QStringList matches(const QString &text, const QString &pattern)
{
    QStringList all;
    auto found = QRegularExpression(pattern, QRegularExpression::MultilineOption).globalMatch(text);
    while (found.hasNext())
        all << found.next().captured(1);
    return all;
}

/** The anchors of a page's headings, as code hosts make them. */
QStringList anchorsOf(const QString &page)
{
    QStringList anchors;
    for (QString heading : matches(prose(textOf(page)), QStringLiteral("^#+ (.*)$"))) {
        heading = heading.toLower();
        heading.remove(QRegularExpression(QStringLiteral("[^\\w\\- ]"),
                                          QRegularExpression::UseUnicodePropertiesOption));
        anchors << heading.replace(QLatin1Char(' '), QLatin1Char('-'));
    }
    return anchors;
}

/** The blocks of code of a page, between fences or indented. */
QStringList codeOf(const QString &page)
{
    const QString text = textOf(page);
    QStringList code;
    auto fenced = QRegularExpression(QStringLiteral("^```.*?^```$"),
                                     QRegularExpression::MultilineOption |
                                         QRegularExpression::DotMatchesEverythingOption)
                      .globalMatch(text);
    while (fenced.hasNext())
        code << fenced.next().captured(0);
    return code + matches(prose(text), QStringLiteral("^(    .*)$"));
}

/** The levels of the headings of a page, in their order. */
QStringList headingLevels(const QString &page)
{
    return matches(prose(textOf(page)), QStringLiteral("^(#+) "));
}

} // namespace

TEST(Pages, LinksWithinTheTree_LeadToAFileAndAHeading)
{
    int count = 0;
    for (const QString &page : pages()) {
        for (const QString &link :
             matches(prose(textOf(page)), QStringLiteral("\\]\\(([^)\\s]+)\\)"))) {
            if (link.contains(QStringLiteral("://")))
                continue;
            ++count;
            const QString path = link.section(QLatin1Char('#'), 0, 0);
            const QString anchor = link.section(QLatin1Char('#'), 1);
            const QString target = path.isEmpty() ? page : QFileInfo(page).dir().filePath(path);
            EXPECT_TRUE(QFileInfo::exists(target))
                << page.toStdString() << ": " << link.toStdString();
            if (!anchor.isEmpty() && QFileInfo::exists(target)) {
                EXPECT_TRUE(anchorsOf(target).contains(anchor))
                    << page.toStdString() << ": " << link.toStdString();
            }
        }
    }
    EXPECT_GT(count, 0);
}

TEST(Pages, PagesInTwoLanguages_HaveTheSameCodeAndHeadingsAndLinkEachOther)
{
    int count = 0;
    for (const QString &chinese : pages()) {
        if (!chinese.endsWith(QStringLiteral(".zh-CN.md")))
            continue;
        ++count;
        const QString english = QString(chinese).replace(QStringLiteral(".zh-CN"), QString());
        ASSERT_TRUE(QFileInfo::exists(english)) << english.toStdString();
        EXPECT_EQ(codeOf(chinese), codeOf(english)) << chinese.toStdString();
        EXPECT_THAT(codeOf(english), Not(IsEmpty()));
        EXPECT_EQ(headingLevels(chinese), headingLevels(english)) << chinese.toStdString();
        EXPECT_EQ(textOf(chinese).section(QLatin1Char('\n'), 0, 0),
                  QStringLiteral("[English](%1) | 简体中文").arg(QFileInfo(english).fileName()));
        EXPECT_EQ(textOf(english).section(QLatin1Char('\n'), 0, 0),
                  QStringLiteral("English | [简体中文](%1)").arg(QFileInfo(chinese).fileName()));
    }
    EXPECT_EQ(count, 3);
}

TEST(Pages, PagesOfTheFolderOfDocuments_AreReachedFromTheReadme)
{
    const QString readme = textOf(SOURCE + QStringLiteral("/README.md"));
    for (const QString &name :
         QDir(SOURCE + QStringLiteral("/docs")).entryList({QStringLiteral("*.md")}, QDir::Files)) {
        // One is the first page of the reference, the others are translations.
        if (name == QLatin1String("reference.md") || name.endsWith(QLatin1String(".zh-CN.md")))
            continue;
        EXPECT_TRUE(readme.contains(QStringLiteral("(docs/%1)").arg(name))) << name.toStdString();
    }
}

TEST(Pages, PicturesOfThePages_CanBeReadAndFitAPage)
{
    int count = 0;
    for (const QString &page : pages()) {
        for (const QString &path : matches(
                 prose(textOf(page)), QStringLiteral("!\\[[^\\]]+\\]\\((\\S+\\.(?:png|jpg))\\)"))) {
            ++count;
            const QImage picture(QFileInfo(page).dir().filePath(path));
            EXPECT_FALSE(picture.isNull()) << page.toStdString() << ": " << path.toStdString();
            EXPECT_THAT(picture.width(), AllOf(Ge(300), Le(1600))) << path.toStdString();
            EXPECT_THAT(picture.height(), AllOf(Ge(180), Le(1200))) << path.toStdString();
        }
    }
    EXPECT_GT(count, 0);
}

// scripts/check/install builds the project in tests/install against an installed library.
TEST(Pages, WaysToFindTheLibrary_AreThoseThatTheInstallationIsTriedWith)
{
    const QStringList code = codeOf(SOURCE + QStringLiteral("/docs/integrate.md"));
    const QString project = SOURCE + QStringLiteral("/tests/install/project/");
    QString cmake = code.filter(QStringLiteral("```cmake")).value(0);
    cmake.replace(QStringLiteral("host"), QStringLiteral("stranger"));
    for (const QString &line : matches(cmake, QStringLiteral("^([a-z_]+\\(.*\\))$")))
        EXPECT_TRUE(textOf(project + QStringLiteral("CMakeLists.txt")).contains(line))
            << line.toStdString();
    EXPECT_EQ(matches(cmake, QStringLiteral("^([a-z_]+\\(.*\\))$")).size(), 3);
    const QString makefile = textOf(project + QStringLiteral("Makefile"));
    for (const char *use : {"-std=c++17 -fPIC", "$(pkg-config --cflags idcard_reader_lib)",
                            "$(pkg-config --libs idcard_reader_lib)"}) {
        const QString text = QString::fromLatin1(use);
        EXPECT_EQ(code.filter(text).size(), 1) << use;
        EXPECT_TRUE(
            QString(makefile).replace(QStringLiteral("$$"), QStringLiteral("$")).contains(text))
            << use;
    }
}
