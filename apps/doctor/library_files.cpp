#include "apps/doctor/library_files.h"
#include "apps/process/translation.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include <dlfcn.h>
#include <elf.h>
#include <link.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "api/idcard_reader_api.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

struct MachineRow {
    int number;
    const char *name;
};

constexpr std::array<MachineRow, 5> MACHINES = {{
    {EM_386, QT_TR_NOOP("32-bit x86")},
    {EM_X86_64, "x86-64"},
    {EM_ARM, QT_TR_NOOP("32-bit ARM")},
    {EM_AARCH64, QT_TR_NOOP("64-bit ARM")},
    {EM_RISCV, "RISC-V"},
}};

template <typename Header>
bool readStruct(QFile &file, qint64 at, Header *header)
{
    return file.seek(at) && file.read(reinterpret_cast<char *>(header), sizeof(*header)) ==
                                static_cast<qint64>(sizeof(*header));
}

QString machineName(const Elf64_Ehdr &header)
{
    const int number = header.e_machine;
    const auto *const row =
        std::find_if(MACHINES.begin(), MACHINES.end(),
                     [number](const MachineRow &known) { return known.number == number; });
    return row == MACHINES.end() ? tr("processor %1").arg(number) : tr(row->name);
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

/**
 * The folders in which the loader looks for what libidcard_reader_lib.so asks it for by name:
 * before or after its cache. Not those of this program: what only its own path leads to is found by
 * no host.
 */
QStringList searchedFolders(bool isAfterCache)
{
    void *const library =
        dlopen(QFile::encodeName(ownLibrary()).constData(), RTLD_LAZY | RTLD_NOLOAD);
    Dl_serinfo head{};
    if (library == nullptr || dlinfo(library, RTLD_DI_SERINFOSIZE, &head) != 0)
        return {};
    std::vector<Dl_serinfo> room(head.dls_size / sizeof(Dl_serinfo) + 1);
    Dl_serinfo *const info = room.data();
    QStringList folders;
    if (dlinfo(library, RTLD_DI_SERINFOSIZE, info) == 0 &&
        dlinfo(library, RTLD_DI_SERINFO, info) == 0) {
        for (unsigned int i = 0; i < info->dls_cnt; ++i) {
            const Dl_serpath &row = info->dls_serpath[i];
            if (((row.dls_flags & LA_SER_DEFAULT) != 0) == isAfterCache)
                folders << QDir(QFile::decodeName(row.dls_name)).absolutePath();
        }
    }
    dlclose(library);
    return folders;
}

/**
 * Files of this name that the loader's cache leads to; their paths stand in it as they are. The
 * loader silently skips those for another processor.
 */
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

/** Whether the loader ends its search at this file, with or without success, or passes over it. */
bool endsSearch(const LibraryFile &file)
{
    return file.shape != LibraryShape::OTHER_MACHINE && file.shape != LibraryShape::UNREADABLE;
}

} // namespace

QString fileOf(const void *address)
{
    Dl_info info{};
    if (dladdr(address, &info) == 0 || info.dli_fname == nullptr)
        return {};
    const QFileInfo file(QFile::decodeName(info.dli_fname));
    return QDir(file.dir().canonicalPath()).filePath(file.fileName());
}

QString ownLibrary()
{
    return fileOf(reinterpret_cast<const void *>(&getSDKVersion));
}

LibraryFile inspectLibrary(const QString &path)
{
    LibraryFile found{path, LibraryShape::NO_LIBRARY, {}};
    if (QFileInfo(path).isDir())
        return found;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        found.shape = LibraryShape::UNREADABLE;
        return found;
    }
    if (file.read(SELFMAG) != QByteArray(ELFMAG))
        return found;
    Elf64_Ehdr header{};
    Elf64_Ehdr own{};
    QFile ownFile(ownLibrary());
    if (!readStruct(file, 0, &header)) {
        found.shape = LibraryShape::CUT_OFF;
        return found;
    }
    found.machine = machineName(header);
    found.shape = LibraryShape::SOUND;
    if (!ownFile.open(QIODevice::ReadOnly) || !readStruct(ownFile, 0, &own))
        return found;
    if (!isSameMachine(header, own))
        found.shape = LibraryShape::OTHER_MACHINE;
    else if (header.e_ident[EI_CLASS] == ELFCLASS64 && isCutOff(file, header))
        found.shape = LibraryShape::CUT_OFF;
    return found;
}

LibrarySearch searchLibrary(const QString &fileName)
{
    const QStringList before = searchedFolders(false);
    const QStringList after = searchedFolders(true);
    const QDir ownFolder = QFileInfo(ownLibrary()).dir();
    const QString own = ownFolder.filePath(fileName);
    QStringList paths;
    for (const QString &folder : before)
        paths << QDir(folder).filePath(fileName);
    paths += cachedFiles(fileName);
    for (const QString &folder : after)
        paths << QDir(folder).filePath(fileName);
    paths.removeDuplicates();

    LibrarySearch search;
    search.places = QStringList{ownFolder.path()} + before + after;
    search.places.removeDuplicates();
    if (isThere(own))
        search.files << inspectLibrary(own);
    for (const QString &path : paths) {
        if (!isThere(path))
            continue;
        const LibraryFile file = inspectLibrary(path);
        if (search.found.isEmpty() && endsSearch(file))
            search.found = path;
        if (path != own)
            search.files << file;
    }
    return search;
}

} // namespace app::doctor
