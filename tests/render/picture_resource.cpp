#include "tests/render/picture_resource.h"

#include <gtest/gtest.h>

#include <QResource>
#include <QtEndian>

namespace
{

template <typename Number>
void append(QByteArray &bytes, Number number)
{
    const Number bigEndian = qToBigEndian(number);
    bytes.append(reinterpret_cast<const char *>(&bigEndian), sizeof(bigEndian));
}

/** The hash by which the resource system looks names up. */
quint32 hashOf(const QString &name)
{
    quint32 hash = 0;
    for (const QChar c : name) {
        hash = (hash << 4) + c.unicode();
        hash ^= (hash & 0xf0000000) >> 23;
        hash &= 0x0fffffff;
    }
    return hash;
}

/** A bundle of version 1 of rcc's format that holds one file. */
QByteArray bundleOf(const QString &name, const QByteArray &content)
{
    constexpr quint32 HEADER_SIZE = 20;
    constexpr quint16 DIRECTORY = 2;
    constexpr quint16 ANY_COUNTRY = 0;
    constexpr quint16 C_LANGUAGE = 1;

    QByteArray tree; // the root, and the file
    append<quint32>(tree, 0);
    append<quint16>(tree, DIRECTORY);
    append<quint32>(tree, 1); // children
    append<quint32>(tree, 1); // number of the first
    append<quint32>(tree, 0); // name
    append<quint16>(tree, 0);
    append<quint16>(tree, ANY_COUNTRY);
    append<quint16>(tree, C_LANGUAGE);
    append<quint32>(tree, 0); // data

    QByteArray names;
    append<quint16>(names, static_cast<quint16>(name.size()));
    append<quint32>(names, hashOf(name));
    for (const QChar c : name)
        append<quint16>(names, c.unicode());

    QByteArray bundle("qres");
    append<quint32>(bundle, 1); // version
    const quint32 namesOffset = HEADER_SIZE + static_cast<quint32>(tree.size());
    append<quint32>(bundle, HEADER_SIZE);
    append<quint32>(bundle, namesOffset + static_cast<quint32>(names.size()));
    append<quint32>(bundle, namesOffset);
    bundle += tree + names;
    append<quint32>(bundle, static_cast<quint32>(content.size()));
    return bundle + content;
}

} // namespace

PictureResource::PictureResource(const QByteArray &content, const QString &path)
    : m_path(path), m_bundle(bundleOf(path.mid(path.lastIndexOf('/') + 1), content))
{
    EXPECT_TRUE(QResource::registerResource(reinterpret_cast<const uchar *>(m_bundle.constData()),
                                            folder()));
}

PictureResource::~PictureResource()
{
    EXPECT_TRUE(QResource::unregisterResource(reinterpret_cast<const uchar *>(m_bundle.constData()),
                                              folder()));
}

QString PictureResource::folder() const
{
    return m_path.mid(1, m_path.lastIndexOf('/') - 1); // without the colon
}
