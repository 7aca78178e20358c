#pragma once

// The two numbers by which a USB device is recognised, and their text form.

#include <cstdint>
#include <optional>

#include <QRegularExpression>
#include <QString>

struct UsbIds {
    std::uint16_t vendor = 0;
    std::uint16_t product = 0;
};

constexpr bool operator==(UsbIds left, UsbIds right)
{
    return left.vendor == right.vendor && left.product == right.product;
}

/** Such as "1209:0001". */
inline QString toText(UsbIds ids)
{
    return QStringLiteral("%1:%2")
        .arg(ids.vendor, 4, 16, QLatin1Char('0'))
        .arg(ids.product, 4, 16, QLatin1Char('0'));
}

/** The ids in a text of two numbers of four hexadecimal digits each; nothing for any other text. */
inline std::optional<UsbIds> parseUsbIds(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("\\A([0-9A-Fa-f]{4}):([0-9A-Fa-f]{4})\\z"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    return UsbIds{match.captured(1).toUShort(nullptr, 16), match.captured(2).toUShort(nullptr, 16)};
}
