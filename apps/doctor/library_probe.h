#pragma once

// Where one of the makers' libraries is and whether it can be loaded, found out as the library's
// own search goes (common/closed_library_door.h).

#include "apps/doctor/environment.h"

namespace app::doctor
{

/** What the ELF header of a file tells. */
LibraryFile inspectLibrary(const QString &path);

/** How much time a library has to be loaded. */
constexpr int LOADING_LIMIT_MS = 5000;

/** Loads the library in a child process; none of its functions is called. */
LibraryState probeLibrary(const QString &fileName, const QStringList &functions,
                          int limitMs = LOADING_LIMIT_MS);

/** Under the file names that the library was configured with. */
LibraryState probeReaderLibrary();
LibraryState probePhotoDecoder();

} // namespace app::doctor
