// Qt's JPEG plug-in, which writes the pictures.

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QPluginLoader>

#include "apps/doctor/environment.h"
#include "apps/process/translation.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

/** Qt's JPEG plug-in, wherever Qt looks for plug-ins; why it cannot be loaded. */
void describePlugin(QJsonObject *values)
{
    const QStringList folders = QCoreApplication::libraryPaths();
    values->insert("folders", QJsonArray::fromStringList(folders));
    for (const QString &folder : folders) {
        const QDir plugins(folder + QStringLiteral("/imageformats"));
        for (const QString &name : plugins.entryList({QStringLiteral("*jpeg*.so")})) {
            QPluginLoader loader(plugins.filePath(name));
            values->insert("file", loader.fileName().isEmpty() ? plugins.filePath(name)
                                                               : loader.fileName());
            if (!loader.load())
                values->insert("problem", loader.errorString());
            return;
        }
    }
}

Finding judgedJpeg(const PicturesState &pictures)
{
    const QStringList reinstall{QStringLiteral("apt-get install --reinstall libqt5gui5")};
    const QString &plugin = pictures.jpegPlugin;
    if (pictures.canWriteJpeg)
        return {Level::FINE, plugin.isEmpty() ? tr("Qt can write it") : plugin};
    if (!pictures.isJpegKnown) {
        return {Level::FAILURE,
                tr("Not known, since Qt does not come up (%1)").arg(pictures.failure),
                tr("Do what \"Screen\" says and run this again.")};
    }
    if (plugin.isEmpty()) {
        return {Level::FAILURE,
                tr("Qt has no JPEG plug-in, imageformats/libqjpeg.so: all pictures come out empty; "
                   "looked in %1")
                    .arg(pictures.pluginFolders.join(tr(", "))),
                tr("Install it, as root (Debian), or put the plug-in of your Qt in one of these "
                   "folders:"),
                reinstall};
    }
    return {Level::FAILURE,
            tr("Qt's JPEG plug-in does not work, all pictures come out empty: %1")
                .arg(pictures.jpegProblem.isEmpty() ? plugin : pictures.jpegProblem),
            tr("Put the plug-in of the Qt that is running in its place, as root (Debian):"),
            reinstall};
}

} // namespace

JsonObject describeJpeg()
{
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    const bool isWritten = image.save(&buffer, "JPG", -1);
    JsonObject values{{"canWrite", isWritten && bytes.startsWith("\xff\xd8\xff")}};
    describePlugin(&values);
    return values;
}

void takeJpeg(const QJsonObject &values, PicturesState *pictures)
{
    pictures->isJpegKnown = true;
    pictures->canWriteJpeg = values["canWrite"].toBool();
    pictures->pluginFolders = texts(values["folders"]);
    pictures->jpegPlugin = values["file"].toString();
    pictures->jpegProblem = values["problem"].toString();
}

Findings checkJpeg(const Environment &environment)
{
    return {judgedJpeg(environment.pictures)};
}

} // namespace app::doctor
