#include "apps/process/link_target.h"

#include <array>
#include <climits>

#include <unistd.h>

#include <QFile>

namespace app
{

QString linkTarget(const QString &path)
{
    std::array<char, PATH_MAX> target{};
    if (::readlink(QFile::encodeName(path).constData(), target.data(), target.size() - 1) < 0)
        return {};
    return QFile::decodeName(target.data());
}

} // namespace app
