#include "tests/canary/marks.h"

#include <algorithm>
#include <cctype>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextCodec>

#include "simulator/card/card_library.h"
#include "simulator/card/card_media.h"
#include "tests/support/files.h"

namespace canary
{

namespace
{

constexpr const char *RESIDENT = R"({
    "kind": "resident", "name": "蠡鼍罡", "sex": "2", "ethnicGroup": "43",
    "birthDate": "19530217", "address": "曦光省麒麟市貔貅路907号",
    "idNumber": "99000019530217368X", "issuingAuthority": "饕餮市公安局",
    "validFrom": "20110923", "validTo": "20310923",
    "fingerprints": 2, "photo": {"delivery": "bmp"}
})";

constexpr const char *HMT = R"({
    "kind": "hmt", "name": "龘靐齉", "sex": "2", "birthDate": "19541118",
    "address": "旖旎省琥珀市玳瑁路816号", "idNumber": "830000195411183620",
    "issuingAuthority": "蒹葭市公安局", "validFrom": "20121024", "validTo": "20321024",
    "travelPermitNumber": "Q60718293", "issueCount": "73"
})";

constexpr const char *FOREIGN_2017 = R"({
    "kind": "foreign-2017", "englishName": "QUIXOTRY, ZYGMUNTA", "chineseName": "犇羴骉",
    "sex": "2", "birthDate": "19550916", "idNumber": "TKM110055091673",
    "nationality": "TKM", "validFrom": "20131125", "validTo": "20331125",
    "cardVersion": "爨鬻", "authorityCode": "8461"
})";

constexpr const char *FOREIGN_NEW = R"({
    "kind": "foreign-new", "englishName": "OBVIOUSLY, FICTIVIA", "chineseName": "淼焱垚",
    "sex": "2", "birthDate": "19560814", "idNumber": "911705195608143682",
    "nationality": "TKM", "validFrom": "20141226", "validTo": "20341226", "cardExtra": "鑫鱻"
})";

/** Bytes of a photo or print that are searched for, and at which steps they begin. */
constexpr int SAMPLE_SIZE = 24;
constexpr int SAMPLE_STEP = 128;
constexpr int DISTINCT_BYTES = 12; ///< that a sample has at least; a plain background is no mark

/** What base64 makes of `bytes` wherever they stand in a longer text, without what is beside. */
QByteArrayList base64Forms(const QByteArray &bytes)
{
    constexpr int GROUP = 3;
    constexpr int GROUP_TEXT = 4;
    QByteArrayList forms;
    for (int before = 0; before < GROUP; ++before) {
        const QByteArray text = (QByteArray(before, '\0') + bytes).toBase64();
        const int whole = (before + bytes.size()) / GROUP * GROUP_TEXT;
        const int start = before == 0 ? 0 : GROUP_TEXT;
        forms << text.mid(start, whole - start);
    }
    return forms;
}

/** `bytes` as they are, and as text that stands for bytes. */
QByteArrayList byteForms(const QByteArray &bytes)
{
    QByteArrayList forms{bytes, bytes.toHex(), bytes.toHex().toUpper(), bytes.toHex(' '),
                         bytes.toHex(' ').toUpper()};
    return forms + base64Forms(bytes) << bytes.toPercentEncoding();
}

QByteArray escapedForJson(const QString &text)
{
    QByteArray escaped;
    for (const QChar character : text)
        escaped += "\\u" + QByteArray::number(character.unicode(), 16).rightJustified(4, '0');
    return escaped;
}

/** The text as cards hold it. */
QByteArray utf16(const QString &text)
{
    QByteArray bytes;
    for (const QChar character : text)
        (bytes += static_cast<char>(character.cell())) += static_cast<char>(character.row());
    return bytes;
}

Mark textMark(const char *name, const QString &text)
{
    constexpr int SHORT = 4;
    const bool isPlain = text.toUtf8().size() == text.size();
    if (text.size() <= SHORT && isPlain)
        return {name, {}, {text.toUtf8()}};
    QByteArrayList escaped{escapedForJson(text),
                           escapedForJson(text).toUpper().replace("\\U", "\\u")};
    // One character as two bytes, or two characters in further forms, would be found by chance.
    constexpr int ENOUGH = 3;
    if (text.size() == 1)
        return {name, escaped << text.toUtf8(), {}};
    if (text.size() < ENOUGH)
        return {name, escaped << text.toUtf8() << utf16(text), {}};
    Mark mark{name, byteForms(text.toUtf8()) + escaped, {}};
    for (const char *characterSet : {"UTF-16LE", "UTF-16BE", "GB18030", "UTF-32LE"}) {
        QTextCodec::ConverterState noMark(QTextCodec::IgnoreHeader);
        mark.needles += byteForms(QTextCodec::codecForName(characterSet)
                                      ->fromUnicode(text.constData(), text.size(), &noMark));
    }
    return mark;
}

/** A date, whatever stands between its parts. */
Mark dateMark(const char *name, const QString &date)
{
    Mark mark = textMark(name, date);
    const QString year = date.left(4);
    const QString month = date.mid(4, 2);
    const QString day = date.mid(6);
    for (const char *between : {"-", ".", "/"})
        mark.needles << QStringList{year, month, day}.join(QLatin1String(between)).toUtf8();
    mark.words << year.toUtf8();
    return mark;
}

/** Samples of `bytes`, wherever they are no plain background. */
Mark byteMark(const char *name, const QByteArray &bytes)
{
    Mark mark{name, {}, {}};
    for (int start = 0; start + SAMPLE_SIZE <= bytes.size(); start += SAMPLE_STEP) {
        const QByteArray sample = bytes.mid(start, SAMPLE_SIZE);
        if (std::set<char>(sample.begin(), sample.end()).size() >= DISTINCT_BYTES)
            mark.needles += byteForms(sample);
    }
    return mark;
}

/** Whether a letter, digit or point of `width` bytes stands at `position`. */
bool isPartOfWord(const QByteArray &bytes, int position, int width)
{
    if (position < 0 || position + width > bytes.size())
        return false;
    const char first = bytes.at(position);
    const bool isWide = width == 1 || bytes.at(position + 1) == '\0';
    return isWide && (std::isalnum(static_cast<unsigned char>(first)) != 0 || first == '.');
}

/** Whether `word` is in `bytes`, as characters of `width` bytes, with no character beside it. */
bool standsAlone(const QByteArray &bytes, const QByteArray &word, int width)
{
    QByteArray wide;
    for (const char character : word)
        wide += QByteArray(1, character).leftJustified(width, '\0');
    for (int at = bytes.indexOf(wide); at >= 0; at = bytes.indexOf(wide, at + 1))
        if (!isPartOfWord(bytes, at - width, width) &&
            !isPartOfWord(bytes, at + wide.size(), width))
            return true;
    return false;
}

/** The bytes that a text lists as numbers such as 0x5A, one by one. */
QByteArray listedBytes(const QByteArray &text)
{
    QByteArray bytes;
    const QRegularExpression number(QStringLiteral("0x([0-9A-Fa-f]{2})\\b"));
    for (auto match = number.globalMatch(QString::fromLatin1(text)); match.hasNext();)
        bytes += QByteArray::fromHex(match.next().captured(1).toLatin1());
    return bytes;
}

bool holds(const QByteArray &bytes, const Mark &mark)
{
    const auto isIn = [&bytes](const QByteArray &needle) { return bytes.contains(needle); };
    const auto isAlone = [&bytes](const QByteArray &word) {
        return standsAlone(bytes, word, 1) || standsAlone(bytes, word, 2);
    };
    return std::any_of(mark.needles.begin(), mark.needles.end(), isIn) ||
           std::any_of(mark.words.begin(), mark.words.end(), isAlone);
}

QString countryOf(const simulator::CardDescription &card)
{
    return card.nationality.isEmpty() ? QString() : QStringLiteral("土库曼");
}

} // namespace

const std::vector<Card> &cards()
{
    static const std::vector<Card> all = {{"resident", RESIDENT},
                                          {"hmt", HMT},
                                          {"foreign-2017", FOREIGN_2017},
                                          {"foreign-new", FOREIGN_NEW}};
    return all;
}

simulator::CardDescription describedCard(const Card &card)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("card.json");
    writeFile(file, card.description);
    simulator::DescriptionError error;
    return simulator::loadCard(file, &error).value();
}

std::vector<Mark> marksOf(const Card &card)
{
    const simulator::CardDescription described = describedCard(card);
    std::vector<Mark> marks;
    const struct {
        const char *name;
        QString text;
    } texts[] = {
        {"name", described.name},
        {"englishName", described.englishName},
        {"chineseName", described.chineseName},
        {"sex", simulator::sexText(described)},
        {"ethnicGroup", simulator::ethnicGroupText(described)},
        {"address", described.address},
        {"idNumber", described.idNumber},
        {"issuingAuthority", described.issuingAuthority},
        {"travelPermitNumber", described.travelPermitNumber},
        {"issueCount", described.issueCount},
        {"nationality", countryOf(described)},
        {"nationalityCode", described.nationality},
        {"cardVersion", described.cardVersion},
        {"authorityCode", described.authorityCode},
        {"cardExtra", described.cardExtra},
    };
    for (const auto &row : texts)
        if (!row.text.isEmpty())
            marks.push_back(textMark(row.name, row.text));
    marks.push_back(dateMark("birthDate", described.birthDate));
    marks.push_back(dateMark("validFrom", described.validFrom));
    marks.push_back(dateMark("validTo", described.validTo));

    Mark photo = byteMark("photo", simulator::photoBmpFile(described));
    photo.needles += byteMark("", simulator::compressedPhoto(described)).needles;
    marks.push_back(photo);
    if (described.fingerprints > 0)
        marks.push_back(byteMark("prints", simulator::fingerprintTemplates(described)));
    // How a JPEG file begins, whatever it shows.
    marks.push_back({"picture", byteForms(QByteArray("\xFF\xD8\xFF\xE0\x00\x10JFIF", 10)), {}});
    return marks;
}

MarkNames found(const QByteArray &bytes, const std::vector<Mark> &marks)
{
    const QByteArray listed = listedBytes(bytes);
    MarkNames names;
    for (const Mark &mark : marks)
        if (holds(bytes, mark) || holds(listed, mark))
            names.insert(mark.name);
    return names;
}

} // namespace canary
