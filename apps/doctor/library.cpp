#include "apps/doctor/library.h"

#include <clocale>

#include <dlfcn.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QRegularExpression>

#include "apps/doctor/environment.h"
#include "apps/process/translation.h"
#include "common/texts.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

/** The file that has the functions, when all are in the process already; else empty. */
QString definerOf(const QStringList &functions)
{
    QString file;
    for (const QString &function : functions) {
        const void *const found = dlsym(RTLD_DEFAULT, function.toLatin1().constData());
        if (found == nullptr)
            return {};
        if (file.isEmpty())
            file = fileOf(found);
    }
    return file;
}

Loading outcomeOf(const ChildRun &run)
{
    switch (run.end) {
    case ChildRun::End::TIMED_OUT:
        return Loading::HUNG;
    case ChildRun::End::CRASHED:
        return Loading::CRASHED;
    case ChildRun::End::DONE:
        break;
    }
    return run.values["isLoaded"].toBool() ? Loading::LOADED : Loading::NOT_LOADED;
}

/** A library as the report speaks of it. */
struct Subject {
    QString name;  ///< "The reader maker's library"
    QString maker; ///< whom to ask
    Level absence; ///< how bad it is that it is not here
};

/** The library that the loader misses for the one that it was to load; empty when none. */
QString missingDependency(const LibraryState &state)
{
    for (const QString &error : state.errors) {
        QString name =
            QRegularExpression(QStringLiteral("^([^ :]+): cannot open shared object file: No such"))
                .match(error)
                .captured(1);
        if (!name.isEmpty() && QFileInfo(name).fileName() != state.fileName)
            return name;
    }
    return {};
}

Finding faultOfFile(const LibraryState &state, const LibraryFile &file, const Subject &subject)
{
    switch (file.shape) {
    case LibraryShape::OTHER_MACHINE:
        return {Level::FAILURE,
                filledIn(tr("%1 is for another processor: %2; this program is for %3"), file.path,
                         file.machine, state.ownMachine),
                filledIn(tr("Get the library for %1 from %2 and put it in this one's place."),
                         state.ownMachine, subject.maker)};
    case LibraryShape::CUT_OFF:
        return {Level::FAILURE,
                tr("%1 is cut off: its %2 bytes are fewer than its own headers say")
                    .arg(file.path)
                    .arg(QFileInfo(file.path).size()),
                tr("Copy the file again from what %1 delivered and compare the two:")
                    .arg(subject.maker),
                {QStringLiteral("cmp %1 DELIVERED-FILE").arg(quoted(file.path))}};
    case LibraryShape::UNREADABLE:
        return {Level::FAILURE,
                tr("%1 cannot be read by this user, or leads nowhere").arg(file.path),
                tr("See where it leads, and let everybody read the file, as root:"),
                {QStringLiteral("ls -lL %1").arg(quoted(file.path)),
                 QStringLiteral("chmod a+rx %1").arg(quoted(file.path))}};
    case LibraryShape::NO_LIBRARY:
        return {
            Level::FAILURE,
            tr("%1 is not a library").arg(file.path),
            tr("Put the file that %1 delivered in its place; what it is now:").arg(subject.maker),
            {QStringLiteral("file %1").arg(quoted(file.path))}};
    case LibraryShape::SOUND:
        break;
    }
    return {};
}

/** Why a library that is there was not loaded. */
Finding loadingFault(const LibraryState &state, const Subject &subject)
{
    const QString dependency = missingDependency(state);
    if (!dependency.isEmpty()) {
        return {
            Level::FAILURE,
            filledIn(tr("%1 needs %2, which is not here"), state.tried, dependency),
            filledIn(
                tr("Install what has %1; %2 knows what the library needs. All that is missing:"),
                dependency, subject.maker),
            {QStringLiteral("ldd %1 | grep 'not found'").arg(quoted(state.tried)),
             QStringLiteral("apt-file search %1").arg(quoted(dependency))}};
    }
    for (const LibraryFile &file : state.files) {
        if (file.shape != LibraryShape::SOUND)
            return faultOfFile(state, file, subject);
    }
    if (!state.files.isEmpty()) {
        return {Level::FAILURE,
                filledIn(tr("%1 cannot be loaded: %2"), state.tried,
                         state.errors.isEmpty() ? QString() : state.errors.last()),
                tr("Get a version of it for this system from %1; the loader's whole account:")
                    .arg(subject.maker),
                {QStringLiteral("ldd -r %1").arg(quoted(state.tried))}};
    }
    return {subject.absence,
            filledIn(tr("%1, %2, is not here; looked in %3 and in the loader's cache"),
                     subject.name, state.fileName, state.places.join(tr(", "))),
            tr("Put the file that %1 delivered, or a link to it, under this name beside "
               "libidcard_reader_lib.so, as root:")
                .arg(subject.maker),
            {QStringLiteral("ln -s /PATH/OF/THE/MAKERS/FILE %1")
                 .arg(quoted(state.ownFolder + QLatin1Char('/') + state.fileName))}};
}

Finding judged(const LibraryState &state, const Subject &subject)
{
    switch (state.loading) {
    case Loading::NOT_TRIED:
        return {Level::FINE,
                tr("its functions are in the process already, from %1").arg(state.definedIn)};
    case Loading::LOADED:
        if (state.missing.isEmpty())
            return {Level::FINE, state.tried};
        return {Level::FAILURE,
                filledIn(tr("%1 has no function %2"), state.tried, state.missing.join(tr(", "))),
                tr("It is another library, or another version, under this name. Put the one that "
                   "%1 delivered in its place. What it has:")
                    .arg(subject.maker),
                {QStringLiteral("nm -D --defined-only %1").arg(quoted(state.tried))}};
    case Loading::CRASHED:
        for (const LibraryFile &file : state.files) {
            if (file.shape == LibraryShape::CUT_OFF)
                return faultOfFile(state, file, subject);
        }
        return {Level::FAILURE,
                filledIn(tr("Loading %1 crashes (%2), and with it every program that reads"),
                         state.tried, state.crash),
                tr("Report this to %1 and get another version. Remove this one until then.")
                    .arg(subject.maker)};
    case Loading::HUNG:
        return {Level::FAILURE,
                tr("Loading %1 hangs, and with it every program that reads").arg(state.tried),
                tr("End other programs that use the reader and plug it in again. If it stays so, "
                   "get another version from %1.")
                    .arg(subject.maker)};
    case Loading::NOT_LOADED:
        break;
    }
    return loadingFault(state, subject);
}

} // namespace

LibraryState probeLibrary(const QString &fileName, const QStringList &functions, int limitMs)
{
    LibraryState state;
    state.fileName = fileName;
    state.functions = functions;
    state.ownFolder = QFileInfo(ownLibrary()).path();
    state.ownMachine = inspectLibrary(ownLibrary()).machine;
    static_cast<LibrarySearch &>(state) = searchLibrary(fileName);
    state.definedIn = definerOf(functions);
    if (!state.definedIn.isEmpty())
        return state;
    const ChildRun run = runInChild(QStringList{"library", fileName} + functions, limitMs);
    state.loading = outcomeOf(run);
    state.tried = run.values["tried"].toString();
    state.crash = run.how;
    state.errors = texts(run.values["errors"]);
    state.missing = texts(run.values["missing"]);
    state.log = run.log;
    return state;
}

void loadLibrary(const QStringList &arguments, const SendValues &send)
{
    const QString fileName = arguments.value(0);
    // The loader cannot be asked to search on our library's behalf, so it is handed what that
    // search comes to.
    QStringList paths{QFileInfo(ownLibrary()).path() + QLatin1Char('/') + fileName};
    const QString found = searchLibrary(fileName).found;
    if (!found.isEmpty() && found != paths.first())
        paths << found;
    std::setlocale(LC_MESSAGES, "C"); // missingDependency() reads the loader's English
    void *handle = nullptr;
    QJsonArray errors;
    for (const QString &path : paths) {
        send({{"tried", path}});
        handle = dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
        if (handle != nullptr)
            break;
        const char *const reason = dlerror();
        errors << (reason == nullptr ? tr("no reason given") : QString::fromLocal8Bit(reason));
        send({{"errors", errors}});
    }
    if (handle == nullptr)
        return;
    QJsonArray missing;
    for (const QString &function : arguments.mid(1)) {
        const QByteArray name = function.toLatin1();
        if (dlsym(RTLD_DEFAULT, name.constData()) == nullptr &&
            dlsym(handle, name.constData()) == nullptr)
            missing << function;
    }
    send({{"isLoaded", true}, {"missing", missing}});
}

LibraryState probeReaderLibrary()
{
    return probeLibrary(QStringLiteral(IDCARD_VENDOR_READER_LIBRARY),
                        {QStringLiteral("KVO_OpenPort"), QStringLiteral("KVO_FindIDCard"),
                         QStringLiteral("KVO_ReadIDCard"), QStringLiteral("KVO_ClosePort")});
}

LibraryState probePhotoDecoder()
{
    return probeLibrary(QStringLiteral(IDCARD_WLT_LIBRARY), {QStringLiteral("unpack")});
}

Findings checkReaderLibrary(const Environment &environment)
{
    return {judged(environment.readerLibrary,
                   {tr("The reader maker's library"), tr("the reader's maker"), Level::FAILURE})};
}

Findings checkPhotoDecoder(const Environment &environment)
{
    // Many readers deliver photos decoded to their maker's library; over USB none does.
    const Level absence = environment.roads == Roads::LIBRARY ? Level::WARNING : Level::FAILURE;
    return {judged(environment.photoDecoder,
                   {tr("The photo decoder"), tr("the maker of the photo decoder"), absence})};
}

} // namespace app::doctor
