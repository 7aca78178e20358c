#pragma once

// The files that the library comes by when it looks for one of the makers' libraries, and how they
// look without being loaded.

#include <QStringList>
#include <QVector>

namespace app::doctor
{

enum class LibraryShape { SOUND, UNREADABLE, NO_LIBRARY, OTHER_MACHINE, CUT_OFF };

struct LibraryFile {
    QString path;
    LibraryShape shape = LibraryShape::SOUND;
    QString machine; ///< the processor that it is for
};

/** What the ELF header of a file says. */
LibraryFile inspectLibrary(const QString &path);

struct LibrarySearch {
    QStringList places;         ///< folders that are looked in, in this order
    QVector<LibraryFile> files; ///< in the order in which the library comes by them
    QString found;              ///< the one at which the loader's search ends; empty: at none
};

/** Looks beside libidcard_reader_lib.so, and as the loader does on that library's behalf. */
LibrarySearch searchLibrary(const QString &fileName);

/** The file of libidcard_reader_lib.so. */
QString ownLibrary();

/** The file that holds `address`. */
QString fileOf(const void *address);

} // namespace app::doctor
