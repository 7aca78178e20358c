// The Markdown pages: their links lead somewhere, and a page in two languages says the same in
// both.

#include <algorithm>
#include <iterator>

#include <gmock/gmock.h>

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QRegularExpression>

#include "tests/support/files.h"
#include "tests/support/matches.h"

using testing::AllOf;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;
using testing::Not;
using testing::StartsWith;

namespace
{

const QString SOURCE = IDCARD_SOURCE_DIR;

QString textOf(const QString &path)
{
    return QString::fromUtf8(readFile(path));
}

std::string nameOf(const QString &path)
{
    return QFileInfo(path).fileName().toStdString();
}

/** All pages of the tree: of its own folder and of those that are no build output. */
QStringList pages()
{
    QStringList found;
    for (const char *folder : {".", "docs", "simulator"}) {
        const QDir dir(SOURCE + '/' + folder);
        for (const QString &name : dir.entryList({"*.md"}, QDir::Files))
            found << QDir::cleanPath(dir.filePath(name));
    }
    return found;
}

/** A block of code between fences. */
const QString FENCED = "^```.*?^```$";

/** A page without its blocks of code between fences. */
QString prose(QString text)
{
    return text.remove(QRegularExpression("(?ms)" + FENCED));
}

/** The anchors of a page's headings, as code hosts make them. */
QStringList anchorsOf(const QString &page)
{
    QStringList anchors;
    for (QString heading : matches(prose(textOf(page)), "^#+ (.*)$")) {
        heading = heading.toLower();
        heading.remove(
            QRegularExpression("[^\\w\\- ]", QRegularExpression::UseUnicodePropertiesOption));
        anchors << heading.replace(' ', '-');
    }
    return anchors;
}

/** The blocks of code of a page, between fences or indented, but those marked as output. */
QStringList codeOf(const QString &page)
{
    static const QRegularExpression output("(?ms)^<!-- output[^\\n]*-->\\n\\n(?:" + FENCED +
                                           "|(?:    [^\\n]*\\n)+)");
    const QString text = textOf(page).remove(output);
    return matches(text, "(?s)(" + FENCED + ')') + matches(prose(text), "^(    .*)$");
}

/** The levels of the headings of a page, in their order. */
QStringList headingLevels(const QString &page)
{
    return matches(prose(textOf(page)), "^(#+) ");
}

// A page in two languages.

/** The Chinese partner of a file of the tree; the file itself where it has none. */
QString chineseOf(const QString &file)
{
    const QFileInfo info(file);
    const QString partner =
        info.dir().filePath(info.completeBaseName() + ".zh-CN." + info.suffix());
    return QFileInfo::exists(partner) ? partner : file;
}

/** Where the Chinese partner of `page` leads with a link that `page` has. */
QString chineseLink(const QString &link, const QString &page)
{
    const QString path = link.section('#', 0, 0);
    const QString anchor = link.section('#', 1);
    const QDir folder = QFileInfo(page).dir();
    if (link.contains("://"))
        return link;
    const QString english = path.isEmpty() ? page : folder.filePath(path);
    const QString chinese = chineseOf(english);
    const QString chinesePath = path.isEmpty() ? path : folder.relativeFilePath(chinese);
    if (anchor.isEmpty())
        return chinesePath;
    const int heading = anchorsOf(english).indexOf(anchor);
    return chinesePath + '#' + anchorsOf(chinese).value(heading);
}

/** The sections of a page from heading to heading, without its first line and its blocks of code.
 */
QStringList sectionsOf(const QString &page)
{
    const QString text =
        prose(textOf(page).section('\n', 1)).remove(QRegularExpression("(?m)^    .*$"));
    QStringList sections = {QString()};
    for (const QString &line : text.split('\n')) {
        if (line.startsWith('#'))
            sections << QString();
        sections.last() += line + '\n';
    }
    return sections;
}

using Parts = std::vector<std::string>;

/** What is in `parts` more often than in `others`. */
Parts without(const Parts &parts, const Parts &others)
{
    Parts left;
    std::set_difference(parts.begin(), parts.end(), others.begin(), others.end(),
                        std::back_inserter(left));
    return left;
}

/** What a section says in every language, sorted: its rows, entries, code and links. */
Parts languageNeutral(const QString &section)
{
    Parts parts;
    QStringList code = matches(section, "`([^`]+)`");
    code.removeDuplicates();
    for (const QString &each : code)
        parts.push_back("code " + each.simplified().toStdString());
    for (const QString &row : matches(section, "^(\\|.*)$"))
        parts.push_back("table row " + std::to_string(row.count('|') - 1) + " wide");
    for (const QString &mark : matches(section, "^( *(?:-|[0-9]+\\.)) "))
        parts.push_back("entry " + mark.toStdString());
    for (const QString &link : matches(section, "\\]\\(([^)\\s]+)\\)"))
        parts.push_back("link " + link.toStdString());
    std::sort(parts.begin(), parts.end());
    return parts;
}

/** The same with the links that the Chinese partner of `page` has in their place. */
QString withChineseLinks(QString section, const QString &page)
{
    for (const QString &link : matches(section, "\\]\\(([^)\\s]+)\\)"))
        section.replace(QStringLiteral("](%1)").arg(link),
                        QStringLiteral("](%1)").arg(chineseLink(link, page)));
    return section;
}

} // namespace

TEST(Pages, LinksWithinTheTree_LeadToAFileAndAHeading)
{
    int count = 0;
    for (const QString &page : pages()) {
        for (const QString &link : matches(prose(textOf(page)), "\\]\\(([^)\\s]+)\\)")) {
            if (link.contains("://"))
                continue;
            ++count;
            const QString path = link.section('#', 0, 0);
            const QString anchor = link.section('#', 1);
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
    QStringList partners;
    for (const QString &chinese : pages()) {
        if (!chinese.endsWith(".zh-CN.md"))
            continue;
        const QString english = QString(chinese).replace(".zh-CN", QString());
        ASSERT_TRUE(QFileInfo::exists(english)) << english.toStdString();
        partners << english;
        EXPECT_EQ(codeOf(chinese).join('\n').toStdString(),
                  codeOf(english).join('\n').toStdString())
            << chinese.toStdString();
        EXPECT_THAT(codeOf(english), Not(IsEmpty()));
        EXPECT_EQ(headingLevels(chinese).join(' ').toStdString(),
                  headingLevels(english).join(' ').toStdString())
            << chinese.toStdString();
        EXPECT_THAT(textOf(chinese).toStdString(),
                    StartsWith("[English](" + nameOf(english) + ") | 简体中文\n"));
        EXPECT_THAT(textOf(english).toStdString(),
                    StartsWith("English | [简体中文](" + nameOf(chinese) + ")\n"));
    }
    for (const QString &page : pages()) {
        if (textOf(page).startsWith("English | ")) {
            EXPECT_TRUE(partners.contains(page)) << page.toStdString();
        }
    }
    EXPECT_THAT(partners, Not(IsEmpty()));
}

TEST(Pages, SectionsInTwoLanguages_HaveTheSameRowsAndEntriesAndCodeAndLinks)
{
    for (const QString &english : pages()) {
        const QString chinese = chineseOf(english);
        if (chinese == english)
            continue;
        const QStringList sections = sectionsOf(chinese);
        const QStringList originals = sectionsOf(english);
        if (sections.size() != originals.size()) {
            ADD_FAILURE() << chinese.toStdString() << " has other sections";
            continue;
        }
        for (int i = 0; i < sections.size(); ++i) {
            const Parts translated = languageNeutral(sections.value(i));
            const Parts original = languageNeutral(withChineseLinks(originals.value(i), english));
            const std::string where =
                chinese.toStdString() + ": " + sections.value(i).left(60).toStdString();
            EXPECT_THAT(without(original, translated), IsEmpty()) << "lacks these: " << where;
            EXPECT_THAT(without(translated, original), IsEmpty()) << "alone has these: " << where;
        }
    }
}

TEST(Pages, PagesOfTheFolderOfDocuments_AreReachedFromTheReadme)
{
    const QString readme = textOf(SOURCE + "/README.md");
    for (const QString &name : QDir(SOURCE + "/docs").entryList({"*.md"}, QDir::Files)) {
        // One is the first page of the reference, the others are translations.
        if (name == "reference.md" || name.endsWith(".zh-CN.md"))
            continue;
        EXPECT_TRUE(readme.contains(QStringLiteral("(docs/%1)").arg(name))) << name.toStdString();
    }
}

TEST(Pages, PicturesOfThePages_CanBeReadAndFitAPage)
{
    int count = 0;
    for (const QString &page : pages()) {
        for (const QString &path :
             matches(prose(textOf(page)), "!\\[[^\\]]+\\]\\((\\S+\\.(?:png|jpg))\\)")) {
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
    const QStringList code = codeOf(SOURCE + "/docs/integrate.md");
    const QString project = SOURCE + "/tests/install/project/";
    QString cmake = code.filter("```cmake").value(0);
    cmake.replace("host", "stranger");
    for (const QString &line : matches(cmake, "^([a-z_]+\\(.*\\))$"))
        EXPECT_TRUE(textOf(project + "CMakeLists.txt").contains(line)) << line.toStdString();
    EXPECT_EQ(matches(cmake, "^([a-z_]+\\(.*\\))$").size(), 3);
    const QString makefile = textOf(project + "Makefile");
    for (const char *use : {"-std=c++17 -fPIC", "$(pkg-config --cflags idcard_reader_lib)",
                            "$(pkg-config --libs idcard_reader_lib)"}) {
        const QString text = QString::fromLatin1(use);
        EXPECT_EQ(code.filter(text).size(), 1) << use;
        EXPECT_TRUE(QString(makefile).replace("$$", "$").contains(text)) << use;
    }
}
