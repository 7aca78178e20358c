#include "render/card_texts.h"

#include "render/tools.h"

namespace card_texts
{
namespace
{

constexpr const char *LONG_TERM = "长期";
constexpr const char *FEMALE = "女";
constexpr const char *MALE = "男";

/** Whether `text` holds `part`, which is UTF-8. */
bool holds(const QString &text, const char *part)
{
    return text.contains(QString::fromUtf8(part));
}

/** YYYYMMDD as YYYY.MM.DD. Qt pads a text that is too short with spaces. */
QString dotted(QString date)
{
    date.insert(6, QLatin1Char('.'));
    date.insert(4, QLatin1Char('.'));
    return date;
}

} // namespace

QString field(const std::string &text)
{
    return QString::fromUtf8(text.c_str());
}

QString spreadName(const std::string &name)
{
    QString text = field(name).trimmed();
    if (text.length() == 2)
        text.insert(1, QLatin1String("   "));
    return text;
}

DatePart datePart(const std::string &text)
{
    const QString part = field(text).trimmed();
    const bool zero = part.startsWith(QLatin1Char('0'));
    return {zero ? part.mid(1) : part, zero};
}

QString validity(const std::string &start, const std::string &end)
{
    const QString last = field(end);
    return dotted(field(start)) + QLatin1String(" - ") +
           (holds(last, LONG_TERM) ? last : dotted(last));
}

QString bilingualSex(const std::string &sex)
{
    QString text = field(sex);
    if (holds(text, FEMALE))
        return QString::fromUtf8("女 / F");
    if (holds(text, MALE))
        return QString::fromUtf8("男 / M");
    return text;
}

QString dottedDate(const std::string &year, const std::string &month, const std::string &day)
{
    return field(year) + QLatin1Char('.') + field(month) + QLatin1Char('.') + field(day);
}

QString nationality(const std::string &nationality)
{
    const QString code = field(nationality);
    return field(Tools::convertNationCodeToName(code.toStdString())) + QLatin1String(" / ") + code;
}

} // namespace card_texts
