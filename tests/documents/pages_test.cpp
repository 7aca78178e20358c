// The Markdown pages: their links lead somewhere, and a page in two languages says the same in
// both.

#include <algorithm>
#include <iterator>

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
using testing::StartsWith;

namespace
{

const QString SOURCE = QStringLiteral(IDCARD_SOURCE_DIR);

QString textOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

std::string nameOf(const QString &path)
{
    return QFileInfo(path).fileName().toStdString();
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

/** The blocks of code of a page, between fences or indented, but those marked as output. */
QStringList codeOf(const QString &page)
{
    static const QRegularExpression output(
        QStringLiteral("^<!-- output[^\\n]*-->\\n\\n(?:```.*?^```$|(?:    [^\\n]*\\n)+)"),
        QRegularExpression::MultilineOption | QRegularExpression::DotMatchesEverythingOption);
    const QString text = textOf(page).remove(output);
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

// A page in two languages.

/** The Chinese partner of a file of the tree; the file itself where it has none. */
QString chineseOf(const QString &file)
{
    const QFileInfo info(file);
    const QString partner =
        info.dir().filePath(info.completeBaseName() + QStringLiteral(".zh-CN.") + info.suffix());
    return QFileInfo::exists(partner) ? partner : file;
}

/** Where the Chinese partner of `page` leads with a link that `page` has. */
QString chineseLink(const QString &link, const QString &page)
{
    const QString path = link.section(QLatin1Char('#'), 0, 0);
    const QString anchor = link.section(QLatin1Char('#'), 1);
    const QDir folder = QFileInfo(page).dir();
    if (link.contains(QStringLiteral("://")))
        return link;
    const QString english = path.isEmpty() ? page : folder.filePath(path);
    const QString chinese = chineseOf(english);
    const QString chinesePath = path.isEmpty() ? path : folder.relativeFilePath(chinese);
    if (anchor.isEmpty())
        return chinesePath;
    const int heading = anchorsOf(english).indexOf(anchor);
    return chinesePath + QLatin1Char('#') + anchorsOf(chinese).value(heading);
}

/** The sections of a page from heading to heading, without its first line and its blocks of code.
 */
QStringList sectionsOf(const QString &page)
{
    const QString text = prose(textOf(page).section(QLatin1Char('\n'), 1))
                             .remove(QRegularExpression(QStringLiteral("^    .*$"),
                                                        QRegularExpression::MultilineOption));
    QStringList sections = {QString()};
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1Char('#')))
            sections << QString();
        sections.last() += line + QLatin1Char('\n');
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
    QStringList code = matches(section, QStringLiteral("`([^`]+)`"));
    code.removeDuplicates();
    for (const QString &each : code)
        parts.push_back("code " + each.simplified().toStdString());
    for (const QString &row : matches(section, QStringLiteral("^(\\|.*)$")))
        parts.push_back("table row " + std::to_string(row.count(QLatin1Char('|')) - 1) + " wide");
    for (const QString &mark : matches(section, QStringLiteral("^( *(?:-|[0-9]+\\.)) ")))
        parts.push_back("entry " + mark.toStdString());
    for (const QString &link : matches(section, QStringLiteral("\\]\\(([^)\\s]+)\\)")))
        parts.push_back("link " + link.toStdString());
    std::sort(parts.begin(), parts.end());
    return parts;
}

/** The same with the links that the Chinese partner of `page` has in their place. */
QString withChineseLinks(QString section, const QString &page)
{
    for (const QString &link : matches(section, QStringLiteral("\\]\\(([^)\\s]+)\\)")))
        section.replace(QStringLiteral("](%1)").arg(link),
                        QStringLiteral("](%1)").arg(chineseLink(link, page)));
    return section;
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
    QStringList partners;
    for (const QString &chinese : pages()) {
        if (!chinese.endsWith(QStringLiteral(".zh-CN.md")))
            continue;
        const QString english = QString(chinese).replace(QStringLiteral(".zh-CN"), QString());
        ASSERT_TRUE(QFileInfo::exists(english)) << english.toStdString();
        partners << english;
        EXPECT_EQ(codeOf(chinese).join(QLatin1Char('\n')).toStdString(),
                  codeOf(english).join(QLatin1Char('\n')).toStdString())
            << chinese.toStdString();
        EXPECT_THAT(codeOf(english), Not(IsEmpty()));
        EXPECT_EQ(headingLevels(chinese).join(QLatin1Char(' ')).toStdString(),
                  headingLevels(english).join(QLatin1Char(' ')).toStdString())
            << chinese.toStdString();
        EXPECT_THAT(textOf(chinese).toStdString(),
                    StartsWith("[English](" + nameOf(english) + ") | 简体中文\n"));
        EXPECT_THAT(textOf(english).toStdString(),
                    StartsWith("English | [简体中文](" + nameOf(chinese) + ")\n"));
    }
    for (const QString &page : pages()) {
        if (textOf(page).startsWith(QStringLiteral("English | "))) {
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
