#pragma once

// The makers' two libraries: where each of them is and whether it can be loaded, found out as the
// library's own search goes (common/closed_library_door.h).

#include <QVector>

#include "apps/doctor/child.h"
#include "apps/doctor/finding.h"
#include "apps/doctor/library_files.h"

namespace app::doctor
{

/** How the attempt to load ended. */
enum class Loading { NOT_TRIED, LOADED, NOT_LOADED, CRASHED, HUNG };

/** One of the makers' two libraries. */
struct LibraryState : LibrarySearch {
    QString fileName;
    QStringList functions;
    QString ownMachine; ///< the processor that this program is for
    QString ownFolder;  ///< of libidcard_reader_lib.so
    QString definedIn;  ///< the file that has the functions, when they are in the process already
    Loading loading = Loading::NOT_TRIED;
    QString tried;      ///< the file that was loaded, or that loading ended at
    QString crash;      ///< how the loading program ended
    QStringList errors; ///< of the loader
    QByteArray log;     ///< what the library printed when it was loaded
    QStringList missing;
};

/** How much time a library has to be loaded. */
constexpr int LOADING_LIMIT_MS = 5000;

/** Loads the library in a child process; none of its functions is called. */
LibraryState probeLibrary(const QString &fileName, const QStringList &functions,
                          int limitMs = LOADING_LIMIT_MS);

/** The work "library" of a child: loads this file and looks these functions up as our library does.
 */
void loadLibrary(const QStringList &arguments, const SendValues &send);

/** Under the file names that the library was configured with. */
LibraryState probeReaderLibrary();
LibraryState probePhotoDecoder();

Findings checkReaderLibrary(const Environment &environment);
Findings checkPhotoDecoder(const Environment &environment);

} // namespace app::doctor
