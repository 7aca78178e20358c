#include "apps/process/translation.h"

#include <cstring>
#include <memory>

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

// At global scope: the macro declares a function of the generated code.
static void registerTranslations()
{
    // A static library's resource is not registered by itself.
    Q_INIT_RESOURCE(translations);
}

namespace app
{

namespace
{

struct Language {
    QLocale locale;
    bool isEnglish = true;
    std::unique_ptr<QTranslator> texts; ///< null: there is no translation
};

Language languageOf(const QLocale &locale)
{
    Language language{locale, true, nullptr};
    // The texts in the sources are English; a second choice of the user's does not go before them.
    const QLocale::Language first = QLocale(locale.uiLanguages().value(0)).language();
    if (first == QLocale::English || first == QLocale::C)
        return language;
    language.isEnglish = false;
    registerTranslations();
    auto texts = std::make_unique<QTranslator>();
    if (texts->load(locale, QStringLiteral("idcard-reader"), QStringLiteral("_"),
                    QStringLiteral(":/idcard-reader/translations")))
        language.texts = std::move(texts);
    return language;
}

Language &language()
{
    static Language chosen = languageOf(QLocale::system());
    return chosen;
}

void installQtTexts(const QLocale &locale)
{
    const QString folder = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
    for (const char *name : {"qtbase", "qt"}) {
        auto *const texts = new QTranslator(QCoreApplication::instance());
        if (texts->load(locale, QLatin1String(name), QStringLiteral("_"), folder)) {
            QCoreApplication::installTranslator(texts);
            return;
        }
    }
}

} // namespace

QString translated(const char *context, const char *text)
{
    const QTranslator *const texts = language().texts.get();
    const QString found = texts == nullptr ? QString() : texts->translate(context, text);
    return found.isEmpty() ? QString::fromUtf8(text) : found;
}

QString translatedSystemText(const QString &text)
{
    return language().texts == nullptr ? text : translated("System", text.toUtf8().constData());
}

QString systemError(int error)
{
    return translatedSystemText(QString::fromLocal8Bit(std::strerror(error)));
}

void chooseLanguage(const QLocale &locale)
{
    language() = languageOf(locale);
}

void translateApplication()
{
    if (language().isEnglish)
        return;
    installQtTexts(language().locale);
    if (language().texts != nullptr)
        QCoreApplication::installTranslator(language().texts.get());
}

} // namespace app
