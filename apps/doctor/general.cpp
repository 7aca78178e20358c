#include "apps/doctor/general.h"

#include <clocale>

#include <langinfo.h>

#include <QVersionNumber>

#include "api/idcard_reader_api.h"
#include "apps/doctor/environment.h"
#include "apps/process/translation.h"
#include "common/texts.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

/** As `setlocale` looks for it: the first of these that is set. */
QString requestedLocale()
{
    for (const char *name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        if (!qEnvironmentVariableIsEmpty(name))
            return qEnvironmentVariable(name);
    }
    return {};
}

Finding judgedLibraryVersion(const Versions &versions)
{
    if (versions.library == QStringLiteral("version:") + versions.program)
        return {Level::FINE, versions.library};
    return {Level::WARNING,
            filledIn(tr("libidcard_reader_lib.so is \"%1\", idcard-reader is %2"), versions.library,
                     versions.program),
            tr("Install the library and the program of one version. This shows which library is "
               "taken:"),
            {QStringLiteral("ldd \"$(command -v idcard-reader)\" | grep idcard_reader_lib")}};
}

Finding judgedQtVersion(const Versions &versions)
{
    const QVersionNumber built = QVersionNumber::fromString(versions.qtBuilt);
    const QVersionNumber running = QVersionNumber::fromString(versions.qtRunning);
    const QString text = filledIn(tr("%1, built with %2"), versions.qtRunning, versions.qtBuilt);
    // A program runs with the Qt of its building and with later ones of the same major number.
    if (running >= built && running.majorVersion() == built.majorVersion())
        return {Level::FINE, text};
    return {Level::FAILURE,
            tr("%1: they do not go together").arg(text),
            tr("Install Qt %1 or a later Qt %2, or build the library with the Qt that is here. "
               "This shows which Qt is taken:")
                .arg(versions.qtBuilt)
                .arg(built.majorVersion()),
            {QStringLiteral("ldd \"$(command -v idcard-reader)\" | grep Qt5")}};
}

Finding judgedLocale(const LocaleState &locale)
{
    const QString utf8 = QStringLiteral("export LC_ALL=C.UTF-8");
    if (!locale.isSet) {
        return {Level::WARNING,
                tr("This system has no locale \"%1\"; programs run in \"C\", without Chinese "
                   "characters")
                    .arg(locale.requested),
                tr("Choose one that is there (locale -a shows them), for instance C.UTF-8, or have "
                   "it made (Debian: package locales):"),
                {utf8, QStringLiteral("dpkg-reconfigure locales")}};
    }
    if (locale.encoding == QLatin1String("UTF-8"))
        return {Level::FINE, locale.name};
    return {Level::WARNING,
            filledIn(tr("\"%1\" has the encoding %2, not UTF-8: a host application may garble "
                        "Chinese texts and file names"),
                     locale.name, locale.encoding),
            tr("Start the host application in a UTF-8 locale, for instance:"),
            {utf8}};
}

} // namespace

Versions probeVersions()
{
    return {QStringLiteral(IDCARD_VERSION), QString::fromStdString(getSDKVersion()),
            QStringLiteral(QT_VERSION_STR), QString::fromLatin1(qVersion())};
}

LocaleState probeLocale()
{
    LocaleState state;
    state.requested = requestedLocale();
    state.isSet = std::setlocale(LC_ALL, "") != nullptr;
    state.name = QString::fromLocal8Bit(std::setlocale(LC_CTYPE, nullptr));
    state.encoding = QString::fromLatin1(nl_langinfo(CODESET));
    return state;
}

Findings checkLibraryVersion(const Environment &environment)
{
    return {judgedLibraryVersion(environment.versions)};
}

Findings checkQtVersion(const Environment &environment)
{
    return {judgedQtVersion(environment.versions)};
}

Findings checkLocale(const Environment &environment)
{
    return {judgedLocale(environment.locale)};
}

} // namespace app::doctor
