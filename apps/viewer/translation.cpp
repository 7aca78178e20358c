#include "apps/viewer/translation.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace app
{

namespace
{

bool install(const QLocale &locale, const QString &name, const QString &folder)
{
    auto *const translator = new QTranslator(QCoreApplication::instance());
    return translator->load(locale, name, QStringLiteral("_"), folder) &&
           QCoreApplication::installTranslator(translator);
}

} // namespace

bool installTranslation(const QString &program, const QLocale &locale)
{
    // The texts in the sources are English; a second choice of the user's does not go before them.
    const QLocale::Language first = QLocale(locale.uiLanguages().value(0)).language();
    if (first == QLocale::English || first == QLocale::C)
        return false;
    const QString folder = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
    install(locale, QStringLiteral("qtbase"), folder) ||
        install(locale, QStringLiteral("qt"), folder);
    return install(locale, program, QStringLiteral(":/translations"));
}

} // namespace app
