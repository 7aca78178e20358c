#include "apps/doctor/library_probe.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <vector>

#include <dlfcn.h>
#include <elf.h>
#include <link.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "api/idcard_reader_api.h"
#include "apps/doctor/child.h"

namespace app::doctor
{

namespace
{

struct MachineRow {
    int number;
    const char *name;
};

constexpr std::array<MachineRow, 8> MACHINES = {{
    {EM_386, "32-bit x86"},
    {EM_X86_64, "x86-64"},
    {EM_ARM, "32-bit ARM"},
    {EM_AARCH64, "64-bit ARM"},
    {EM_MIPS, "MIPS"},
    {EM_PPC64, "64-bit PowerPC"},
    {EM_RISCV, "RISC-V"},
    {258, "LoongArch"},
}};

// The marks of what the child tells.
constexpr char TRIED = 't';
constexpr char LOADED = 'l';
constexpr char ERROR = 'e';
constexpr char MISSING = 'm';

template <typename Header>
bool readStruct(QFile &file, qint64 at, Header *header)
{
    return file.seek(at) && file.read(reinterpret_cast<char *>(header), sizeof(*header)) ==
                                static_cast<qint64>(sizeof(*header));
}

QString machineName(const Elf64_Ehdr &header)
{
    const bool isBigEndian = header.e_ident[EI_DATA] == ELFDATA2MSB;
    const int number =
        isBigEndian ? ((header.e_machine & 0xff) << 8) | (header.e_machine >> 8) : header.e_machine;
    const auto *const row =
        std::find_if(MACHINES.begin(), MACHINES.end(),
                     [number](const MachineRow &known) { return known.number == number; });
    const QString name = row == MACHINES.end() ? QStringLiteral("processor %1").arg(number)
                                               : QString::fromLatin1(row->name);
    return isBigEndian ? name + QStringLiteral(", big-endian") : name;
}

/** Whether two headers are for the same processor. */
bool isSameMachine(const Elf64_Ehdr &one, const Elf64_Ehdr &other)
{
    return one.e_machine == other.e_machine && one.e_ident[EI_CLASS] == other.e_ident[EI_CLASS] &&
           one.e_ident[EI_DATA] == other.e_ident[EI_DATA];
}

/** Whether the file is shorter than its own headers say. Of this machine's form. */
bool isCutOff(QFile &file, const Elf64_Ehdr &header)
{
    const auto size = static_cast<std::uint64_t>(file.size());
    const auto reaches = [size](std::uint64_t at, std::uint64_t length) {
        return at <= size && length <= size - at;
    };
    if (header.e_shoff != 0 &&
        !reaches(header.e_shoff, std::uint64_t{header.e_shentsize} * header.e_shnum))
        return true;
    for (int i = 0; i < header.e_phnum; ++i) {
        Elf64_Phdr segment{};
        const std::uint64_t at =
            header.e_phoff + std::uint64_t{header.e_phentsize} * static_cast<std::uint64_t>(i);
        if (!reaches(at, sizeof(segment)) || !readStruct(file, static_cast<qint64>(at), &segment))
            return true;
        if (segment.p_type == PT_LOAD && !reaches(segment.p_offset, segment.p_filesz))
            return true;
    }
    return false;
}

QString pathOf(const void *address)
{
    Dl_info info{};
    if (dladdr(address, &info) == 0 || info.dli_fname == nullptr)
        return {};
    const QFileInfo file(QFile::decodeName(info.dli_fname));
    return QDir(file.dir().canonicalPath()).filePath(file.fileName());
}

QString ownLibrary()
{
    return pathOf(reinterpret_cast<const void *>(&getSDKVersion));
}

/** Where the loader looks for what libidcard_reader_lib.so asks it for by name. */
struct SearchPath {
    QStringList beforeCache; ///< LD_LIBRARY_PATH, and what the library itself names
    QStringList afterCache;  ///< the system's own folders
};

/**
 * That of the library, not of this program: what only the program's own path leads to is found by
 * no host.
 */
SearchPath searchPath(const QString &library)
{
    void *const handle = dlopen(QFile::encodeName(library).constData(), RTLD_LAZY | RTLD_NOLOAD);
    Dl_serinfo head{};
    if (handle == nullptr || dlinfo(handle, RTLD_DI_SERINFOSIZE, &head) != 0)
        return {};
    std::vector<Dl_serinfo> room(head.dls_size / sizeof(Dl_serinfo) + 1);
    Dl_serinfo *const info = room.data();
    SearchPath path;
    if (dlinfo(handle, RTLD_DI_SERINFOSIZE, info) == 0 &&
        dlinfo(handle, RTLD_DI_SERINFO, info) == 0) {
        for (unsigned int i = 0; i < info->dls_cnt; ++i) {
            const Dl_serpath &row = info->dls_serpath[i];
            QStringList &folders =
                (row.dls_flags & LA_SER_DEFAULT) != 0 ? path.afterCache : path.beforeCache;
            folders << QDir(QFile::decodeName(row.dls_name)).absolutePath();
        }
    }
    dlclose(handle);
    return path;
}

/** Files of this name that the loader's cache leads to; their paths stand in it as they are. */
QStringList cachedFiles(const QString &fileName)
{
    constexpr qint64 MOST = 16777216;
    QFile cache(QStringLiteral("/etc/ld.so.cache"));
    if (!cache.open(QIODevice::ReadOnly))
        return {};
    const QByteArray text = cache.read(MOST);
    const QByteArray end = '/' + QFile::encodeName(fileName) + '\0';
    QStringList files;
    for (int at = text.indexOf(end); at >= 0; at = text.indexOf(end, at + 1)) {
        const int begin = text.lastIndexOf('\0', at) + 1;
        files << QFile::decodeName(text.mid(begin, at - begin + end.size() - 1));
    }
    return files;
}

/** Also when it is a link that leads nowhere. */
bool isThere(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() || file.isSymLink();
}

/** The files of this name that are there, in the order in which the loader comes by them. */
QVector<LibraryFile> filesIn(const SearchPath &searched, const QString &fileName)
{
    QStringList paths;
    for (const QString &folder : searched.beforeCache)
        paths << QDir(folder).filePath(fileName);
    paths += cachedFiles(fileName);
    for (const QString &folder : searched.afterCache)
        paths << QDir(folder).filePath(fileName);
    paths.removeDuplicates();
    QVector<LibraryFile> files;
    for (const QString &path : paths) {
        if (isThere(path))
            files << inspectLibrary(path);
    }
    return files;
}

QString fileBesideLibrary(const LibraryState &state)
{
    return QDir(state.ownFolder).filePath(state.fileName);
}

/** Whether the loader ends its search at this file, with or without success, or passes over it. */
bool endsSearch(const LibraryFile &file)
{
    return file.shape != LibraryShape::OtherMachine && file.shape != LibraryShape::Unreadable;
}

/** Finds out what the library comes by when it looks for the file. */
void findFiles(LibraryState *state)
{
    const SearchPath searched = searchPath(ownLibrary());
    state->places = QStringList{state->ownFolder} + searched.beforeCache + searched.afterCache;
    state->places.removeDuplicates();
    const QVector<LibraryFile> files = filesIn(searched, state->fileName);
    const auto *const found = std::find_if(files.begin(), files.end(), endsSearch);
    state->found = found == files.end() ? QString() : found->path;
    const QString own = fileBesideLibrary(*state);
    if (isThere(own))
        state->files << inspectLibrary(own);
    std::copy_if(files.begin(), files.end(), std::back_inserter(state->files),
                 [&own](const LibraryFile &file) { return file.path != own; });
}

/**
 * In the child: loads and looks the functions up as the library does. The loader cannot be asked to
 * search on the library's behalf, so it is handed what that search comes to.
 */
void load(const LibraryState &state, const Telling &tell)
{
    QStringList paths{fileBesideLibrary(state)};
    if (!state.found.isEmpty() && state.found != paths.first())
        paths << state.found;
    void *handle = nullptr;
    for (const QString &path : paths) {
        const QByteArray encoded = QFile::encodeName(path);
        tell(TRIED + encoded);
        handle = dlopen(encoded.constData(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
        if (handle != nullptr)
            break;
        const char *const reason = dlerror();
        tell(ERROR + QByteArray(reason == nullptr ? "no reason given" : reason));
    }
    if (handle == nullptr)
        return;
    link_map *map = nullptr;
    if (dlinfo(handle, RTLD_DI_LINKMAP, static_cast<void *>(&map)) == 0 && map != nullptr)
        tell(LOADED + QByteArray(map->l_name));
    for (const QString &function : state.functions) {
        const QByteArray name = function.toLatin1();
        if (dlsym(RTLD_DEFAULT, name.constData()) == nullptr &&
            dlsym(handle, name.constData()) == nullptr)
            tell(MISSING + name);
    }
}

void takeLine(const QByteArray &line, LibraryState *state)
{
    if (line.isEmpty())
        return;
    const QString text = QString::fromLocal8Bit(line.mid(1));
    switch (line.at(0)) {
    case TRIED:
        state->tried = text;
        break;
    case LOADED:
        state->tried = QFileInfo(text).absoluteFilePath();
        state->loading = Loading::Loaded;
        break;
    case ERROR:
        state->errors << text;
        break;
    case MISSING:
        state->missing << text;
        break;
    default:
        break;
    }
}

} // namespace

LibraryFile inspectLibrary(const QString &path)
{
    LibraryFile found{path, LibraryShape::NoLibrary, {}};
    if (QFileInfo(path).isDir())
        return found;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        found.shape = LibraryShape::Unreadable;
        return found;
    }
    if (file.read(SELFMAG) != QByteArray(ELFMAG))
        return found;
    Elf64_Ehdr header{};
    Elf64_Ehdr own{};
    QFile ownFile(ownLibrary());
    if (!readStruct(file, 0, &header)) {
        found.shape = LibraryShape::CutOff;
        return found;
    }
    found.machine = machineName(header);
    found.shape = LibraryShape::Sound;
    if (!ownFile.open(QIODevice::ReadOnly) || !readStruct(ownFile, 0, &own))
        return found;
    if (!isSameMachine(header, own))
        found.shape = LibraryShape::OtherMachine;
    else if (header.e_ident[EI_CLASS] == ELFCLASS64 && isCutOff(file, header))
        found.shape = LibraryShape::CutOff;
    return found;
}

LibraryState probeLibrary(const QString &fileName, const QStringList &functions, int limitMs)
{
    LibraryState state;
    state.fileName = fileName;
    state.functions = functions;
    const QString own = ownLibrary();
    state.ownFolder = QFileInfo(own).path();
    state.ownMachine = inspectLibrary(own).machine;
    findFiles(&state);

    int defined = 0;
    for (const QString &function : functions) {
        const void *const found = dlsym(RTLD_DEFAULT, function.toLatin1().constData());
        if (found != nullptr && defined++ == 0)
            state.definedIn = pathOf(found);
    }
    if (defined == functions.size())
        return state;
    state.definedIn.clear();

    const ChildRun run = runInChild([&state](const Telling &tell) { load(state, tell); }, limitMs,
                                    FileWriting::Allowed);
    state.loading = Loading::NotLoaded;
    state.log = run.log;
    for (const QByteArray &line : run.output.split('\n'))
        takeLine(line, &state);
    if (run.end != ChildRun::End::Done) {
        state.loading = run.end == ChildRun::End::TimedOut ? Loading::Hung : Loading::Crashed;
        state.crash = run.how;
    }
    return state;
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

} // namespace app::doctor
