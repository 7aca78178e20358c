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

// What the C library and Qt say of files, processes and JSON and on buttons, in case they lack the
// language.
[[maybe_unused]] constexpr const char *SYSTEM_TEXTS[] = {
    QT_TRANSLATE_NOOP("System", "Aborted"),
    QT_TRANSLATE_NOOP("System", "Bad file descriptor"),
    QT_TRANSLATE_NOOP("System", "Broken pipe"),
    QT_TRANSLATE_NOOP("System", "Bus error"),
    QT_TRANSLATE_NOOP("System", "Directory not empty"),
    QT_TRANSLATE_NOOP("System", "Disk quota exceeded"),
    QT_TRANSLATE_NOOP("System", "File exists"),
    QT_TRANSLATE_NOOP("System", "File name too long"),
    QT_TRANSLATE_NOOP("System", "File too large"),
    QT_TRANSLATE_NOOP("System", "Floating point exception"),
    QT_TRANSLATE_NOOP("System", "Illegal instruction"),
    QT_TRANSLATE_NOOP("System", "Input/output error"),
    QT_TRANSLATE_NOOP("System", "Invalid argument"),
    QT_TRANSLATE_NOOP("System", "Is a directory"),
    QT_TRANSLATE_NOOP("System", "Killed"),
    QT_TRANSLATE_NOOP("System", "No space left on device"),
    QT_TRANSLATE_NOOP("System", "No such device or address"),
    QT_TRANSLATE_NOOP("System", "No such file or directory"),
    QT_TRANSLATE_NOOP("System", "Not a directory"),
    QT_TRANSLATE_NOOP("System", "Operation not permitted"),
    QT_TRANSLATE_NOOP("System", "Permission denied"),
    QT_TRANSLATE_NOOP("System", "Read-only file system"),
    QT_TRANSLATE_NOOP("System", "Segmentation fault"),
    QT_TRANSLATE_NOOP("System", "The address is not available"),
    QT_TRANSLATE_NOOP("System", "The address is protected"),
    QT_TRANSLATE_NOOP("System", "The bound address is already in use"),
    QT_TRANSLATE_NOOP("System", "Too many levels of symbolic links"),
    QT_TRANSLATE_NOOP("System", "Too many open files"),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Missing value after '%1'."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Unexpected value after '%1'."),
    QT_TRANSLATE_NOOP("QIODevice", "file to open is a directory"),
    QT_TRANSLATE_NOOP("QJsonParseError", "garbage at the end of the document"),
    QT_TRANSLATE_NOOP("QJsonParseError", "illegal number"),
    QT_TRANSLATE_NOOP("QJsonParseError", "illegal value"),
    QT_TRANSLATE_NOOP("QJsonParseError", "invalid escape sequence"),
    QT_TRANSLATE_NOOP("QJsonParseError", "invalid termination by number"),
    QT_TRANSLATE_NOOP("QJsonParseError", "invalid UTF8 string"),
    QT_TRANSLATE_NOOP("QJsonParseError", "missing name separator"),
    QT_TRANSLATE_NOOP("QJsonParseError", "missing value separator"),
    QT_TRANSLATE_NOOP("QJsonParseError", "object is missing after a comma"),
    QT_TRANSLATE_NOOP("QJsonParseError", "too deeply nested document"),
    QT_TRANSLATE_NOOP("QJsonParseError", "too large document"),
    QT_TRANSLATE_NOOP("QJsonParseError", "unterminated array"),
    QT_TRANSLATE_NOOP("QJsonParseError", "unterminated object"),
    QT_TRANSLATE_NOOP("QJsonParseError", "unterminated string"),
    QT_TRANSLATE_NOOP("QPlatformTheme", "Cancel"),
    QT_TRANSLATE_NOOP("QPlatformTheme", "Close"),
    QT_TRANSLATE_NOOP("QPlatformTheme", "OK"),
    QT_TRANSLATE_NOOP("QPlatformTheme", "Open"),
    QT_TRANSLATE_NOOP("QPlatformTheme", "Save"),
};

struct Language {
    QLocale locale;
    std::unique_ptr<QTranslator> texts; ///< null: English, or there is no translation
};

Language languageOf(const QLocale &locale)
{
    Language language{locale, nullptr};
    // The texts in the sources are English; a second choice of the user's does not go before them.
    const QLocale::Language first = QLocale(locale.uiLanguages().value(0)).language();
    if (first == QLocale::English || first == QLocale::C)
        return language;
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
    // Of another language Qt would have its own words and the direction of writing alone.
    if (language().texts == nullptr)
        return;
    installQtTexts(language().locale);
    QCoreApplication::installTranslator(language().texts.get());
}

} // namespace app
