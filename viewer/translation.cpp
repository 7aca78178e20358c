#include "viewer/translation.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

// The resource is in a static library, where nothing else refers to it.
static void initialiseResource()
{
    Q_INIT_RESOURCE(translations);
}

namespace viewer
{

namespace
{

bool install(QCoreApplication *application, const QLocale &locale, const QString &name,
             const QString &folder)
{
    auto *const translator = new QTranslator(application);
    return translator->load(locale, name, QStringLiteral("_"), folder) &&
           QCoreApplication::installTranslator(translator);
}

} // namespace

bool installTranslation(QCoreApplication *application, const QLocale &locale)
{
    initialiseResource();
    // The texts in the sources are English; a second choice of the user's does not go before them.
    const QLocale::Language first = QLocale(locale.uiLanguages().value(0)).language();
    if (first == QLocale::English || first == QLocale::C)
        return false;
    // Qt's own dialogs.
    const QString folder = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
    install(application, locale, QStringLiteral("qtbase"), folder) ||
        install(application, locale, QStringLiteral("qt"), folder);
    return install(application, locale, QStringLiteral("idcard-viewer"),
                   QStringLiteral(":/translations"));
}

} // namespace viewer
