#include "apps/terminal/text_layout.h"

#include <algorithm>
#include <array>

#include "apps/process/translation.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(CommandLine)

constexpr int COLUMN_GAP = 2;

struct CodePointRange {
    uint first;
    uint last;
};

// Characters with the East Asian Width property "wide" or "full-width" (Unicode Standard Annex 11),
// ascending. Unassigned places inside a block are counted with it.
constexpr std::array<CodePointRange, 22> WIDE_CHARACTERS = {{
    {0x1100, 0x115F},   // Hangul leading consonants
    {0x231A, 0x231B},   // watch, hourglass
    {0x2329, 0x232A},   // angle brackets
    {0x23E9, 0x23EC},   // double triangles
    {0x2E80, 0x303E},   // radicals, ideographic description, CJK punctuation
    {0x3041, 0x33FF},   // kana, bopomofo, enclosed and squared CJK
    {0x3400, 0x4DBF},   // ideographs, extension A
    {0x4E00, 0x9FFF},   // ideographs
    {0xA000, 0xA4CF},   // Yi
    {0xA960, 0xA97F},   // Hangul leading consonants, extended
    {0xAC00, 0xD7A3},   // Hangul syllables
    {0xF900, 0xFAFF},   // compatibility ideographs
    {0xFE10, 0xFE19},   // vertical punctuation
    {0xFE30, 0xFE6F},   // CJK compatibility and small forms
    {0xFF01, 0xFF60},   // full-width forms
    {0xFFE0, 0xFFE6},   // full-width signs
    {0x16FE0, 0x18DFF}, // Tangut, Khitan
    {0x1B000, 0x1B2FF}, // kana supplement, Nushu
    {0x1F300, 0x1F64F}, // pictographs
    {0x1F900, 0x1F9FF}, // supplemental pictographs
    {0x20000, 0x2FFFD}, // ideographs, extensions B to F
    {0x30000, 0x3FFFD}, // ideographs, extensions G and later
}};

bool isWide(uint codePoint)
{
    const auto *const after = std::upper_bound(
        WIDE_CHARACTERS.begin(), WIDE_CHARACTERS.end(), codePoint,
        [](uint value, const CodePointRange &range) { return value < range.first; });
    return after != WIDE_CHARACTERS.begin() && codePoint <= std::prev(after)->last;
}

bool isInvisible(uint codePoint)
{
    constexpr uint SOFT_HYPHEN = 0xAD; // a format character that terminals show
    switch (QChar::category(codePoint)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
        return true;
    case QChar::Other_Format:
        return codePoint != SOFT_HYPHEN;
    default:
        return false;
    }
}

bool beginsNoLine(QChar character)
{
    return QStringLiteral("，。、；：！？）》」』】”’…").contains(character);
}

bool endsNoLine(QChar character)
{
    return QStringLiteral("（《「『【“‘").contains(character);
}

/**
 * A word without blanks, parted where a line may end: beside an ideograph, but for its punctuation.
 * A path is not parted, so that it can be copied; it ends with the word or at punctuation.
 */
QStringList unbreakablePieces(const QString &word)
{
    QStringList pieces;
    QString piece;
    bool isInPath = false;
    for (const QChar character : word) {
        const QChar last = piece.isEmpty() ? QChar() : piece.at(piece.size() - 1);
        const bool isBesideWide = isWide(character.unicode()) || isWide(last.unicode());
        if (!piece.isEmpty() && isBesideWide && !isInPath && !beginsNoLine(character) &&
            !endsNoLine(last)) {
            pieces << piece;
            piece.clear();
        }
        piece += character;
        isInPath = (isInPath || character == QLatin1Char('/')) && !beginsNoLine(character);
    }
    return pieces << piece;
}

bool mustBeSpelledOut(uint codePoint)
{
    switch (QChar::category(codePoint)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

} // namespace

int displayWidth(const QString &text)
{
    int width = 0;
    for (const uint codePoint : text.toUcs4()) {
        if (isInvisible(codePoint))
            continue;
        width += isWide(codePoint) ? 2 : 1;
    }
    return width;
}

QString padded(const QString &text, int width)
{
    return text + QString(std::max(0, width - displayWidth(text)), QLatin1Char(' '));
}

QString printable(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (const uint codePoint : text.toUcs4()) {
        if (mustBeSpelledOut(codePoint)) {
            const QString digits = QString::number(codePoint, 16).toUpper();
            result += QStringLiteral("\\u%1").arg(digits, 4, QLatin1Char('0'));
        } else {
            result += QString::fromUcs4(&codePoint, 1);
        }
    }
    return result;
}

QString alignedTable(const QVector<QStringList> &rows)
{
    QVector<QStringList> cells;
    QVector<int> widths;
    for (const QStringList &row : rows) {
        QStringList line;
        for (const QString &cell : row) {
            const int column = line.size();
            line << printable(cell);
            if (column == widths.size())
                widths << 0;
            widths[column] = std::max(widths[column], displayWidth(line.last()));
        }
        cells << line;
    }

    QString result;
    for (const QStringList &row : cells) {
        QString line;
        for (int column = 0; column < row.size(); ++column)
            line += padded(row[column], widths[column] + COLUMN_GAP);
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        result += line + QLatin1Char('\n');
    }
    return result;
}

QString wrapped(const QString &text, int width, int indent)
{
    QString result;
    int column = 0;
    const QStringList words = splitAt(QLatin1Char(' '), text.simplified());
    for (const QString &word : words) {
        QString gap = column == 0 ? QString() : QStringLiteral(" ");
        for (const QString &piece : unbreakablePieces(word)) {
            const int needed = displayWidth(gap + piece);
            if (column != 0 && column + needed > width) {
                result += QLatin1Char('\n') + QString(indent, QLatin1Char(' ')) + piece;
                column = displayWidth(piece);
            } else {
                result += gap + piece;
                column += needed;
            }
            gap.clear();
        }
    }
    return result;
}

QString helpSection(const QString &heading, const QVector<QStringList> &rows)
{
    constexpr int MARGIN = 2;
    int column = 0;
    for (const QStringList &row : rows)
        column = std::max(column, MARGIN + displayWidth(row[0]) + 2);
    QString text = filledIn(tr("\n%1:\n"), heading);
    for (const QStringList &row : rows) {
        text += padded(QString(MARGIN, QLatin1Char(' ')) + row[0], column) +
                wrapped(row[1], HELP_WIDTH - column, column) + QLatin1Char('\n');
    }
    return text;
}

} // namespace app
