#include "iddata/text_values.h"

#include <cstdlib>

#include <QString>

namespace text_values
{

long number(const std::string &text)
{
    return std::strtol(text.c_str(), nullptr, 10);
}

Date splitDate(const std::string &text)
{
    const QString date = QString::fromLatin1(text.c_str());
    return {date.mid(0, 4).toStdString(), date.mid(4, 2).toStdString(), date.mid(6).toStdString()};
}

std::string dottedDate(const std::string &text)
{
    const Date date = splitDate(text);
    return date.year + "." + date.month + "." + date.day;
}

std::string dottedDateOrLongTerm(const std::string &text)
{
    return text.find(LONG_TERM) != std::string::npos ? LONG_TERM : dottedDate(text);
}

} // namespace text_values
