#include "common/closed_library_door.h"

#include "common/cancellation.h"
#include "common/closed_functions.h"
#include "common/debug_log.h"

#include <array>
#include <climits>
#include <stdexcept>
#include <string>

#include <dlfcn.h>
#include <unistd.h>

// Weak references: they make the linker of a host offer the host's own definitions to this library,
// and they are null when the process has none.
// NOLINTBEGIN(readability-redundant-declaration): the header's declarations, made weak
extern "C" {
[[gnu::weak]] int KVO_OpenPort(int port);
[[gnu::weak]] int KVO_FindIDCard(int port);
[[gnu::weak]] int KVO_ReadIDCard(int port, CardInfoStruct *info, unsigned char *photo,
                                 unsigned int *photoLen, unsigned char *fp, unsigned int *fpLen,
                                 int flag);
[[gnu::weak]] int KVO_ClosePort(int port);
[[gnu::weak]] int unpack(unsigned char *src, unsigned char *dst, int mode);
}
// NOLINTEND(readability-redundant-declaration)

namespace closed_library
{
namespace
{

constexpr const char *READER_LIBRARY = IDCARD_VENDOR_READER_LIBRARY;
constexpr const char *WLT_LIBRARY = IDCARD_WLT_LIBRARY;

/** The working folder in which this library was loaded; empty when it is unknown. */
const auto folderAtLoading = [] {
    std::array<char, PATH_MAX> folder{};
    if (getcwd(folder.data(), folder.size()) == nullptr)
        folder[0] = '\0';
    return folder;
}();

/** Path that `fileName` has beside this library; empty when that is unknown. */
std::string pathBesideThisLibrary(const char *fileName)
{
    Dl_info self{};
    if (dladdr(&READER_LIBRARY, &self) == 0 || self.dli_fname == nullptr)
        return {};
    std::string own = self.dli_fname;
    if (own.front() != '/') // as the loader was given it: the host may have left that folder since
        own.insert(0, std::string(folderAtLoading.data()) + '/');
    return own.substr(0, own.rfind('/') + 1) + fileName;
}

/**
 * The function `name` that came into the process after this library did, or null.
 *
 * What RTLD_DEFAULT finds for a library cannot be unloaded any more before that library. So what is
 * there for everybody is looked up by a handle, and its owner may take it away again; RTLD_DEFAULT
 * is left for what only this library and those that came with it can see.
 */
void *findInProcess(const char *name)
{
    static void *const process = dlopen(nullptr, RTLD_LAZY);
    void *const found = process != nullptr ? dlsym(process, name) : nullptr;
    return found != nullptr ? found : dlsym(RTLD_DEFAULT, name);
}

/**
 * One closed library: looks functions up, in the process first, and says so when one is missing.
 */
class Lookup
{
public:
    explicit Lookup(const char *fileName) : m_fileName(fileName) {}
    ~Lookup()
    {
        if (m_handle != nullptr)
            dlclose(m_handle); // gives the handle back; the library itself stays (RTLD_NODELETE)
    }
    Lookup(const Lookup &) = delete;
    Lookup &operator=(const Lookup &) = delete;

    /**
     * The function `name`, or null. `bound` is its definition in the process as the loader saw it
     * when this library was loaded (null: there was none).
     */
    template <typename Function>
    Function *find(const char *name, Function *bound)
    {
        if (bound != nullptr)
            return bound;
        // A library that is being loaded runs code of its own under the loader's lock.
        const CancellationHold hold;
        void *found = findInProcess(name);
        if (found == nullptr && openSharedObject())
            found = dlsym(m_handle, name);
        if (found == nullptr && m_missing.empty())
            m_missing = name;
        return reinterpret_cast<Function *>(found);
    }

    /** Whether every function was found; if not, logs one debug line of what was looked for. */
    bool complete() const
    {
        if (m_missing.empty())
            return true;
        debugLine("%s is neither in the process nor in the library %s (%s)", m_missing.c_str(),
                  m_fileName, m_reasons.empty() ? "no such function in it" : m_reasons.c_str());
        return false;
    }

private:
    bool openSharedObject()
    {
        if (m_tried)
            return m_handle != nullptr;
        m_tried = true;
        for (const std::string &path : {pathBesideThisLibrary(m_fileName), std::string(m_fileName)})
            if (!path.empty() && openSharedObject(path))
                return true;
        return false;
    }

    bool openSharedObject(const std::string &path)
    {
        m_handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
        if (m_handle != nullptr)
            return true;
        const char *reason = dlerror();
        m_reasons += m_reasons.empty() ? "" : "; ";
        m_reasons += reason != nullptr ? reason : path + ": not loaded";
        return false;
    }

    const char *m_fileName;
    bool m_tried = false;
    void *m_handle = nullptr;
    std::string m_missing;
    std::string m_reasons;
};

/** What closes the port that is open: closing it must not depend on memory, as looking up does. */
int (*closerOfOpenPort)(int port) = nullptr;

/** Calls `bound`, or the function `name` of the library `fileName`. */
template <typename... Arguments>
int callFunction(const char *fileName, const char *name, int (*bound)(Arguments...),
                 Arguments... arguments)
{
    Lookup lookup(fileName);
    const auto function = lookup.find(name, bound);
    return lookup.complete() ? function(arguments...) : NOT_FOUND;
}

} // namespace

int openPort(int port)
{
    Lookup lookup(READER_LIBRARY);
    const auto function = lookup.find("KVO_OpenPort", &::KVO_OpenPort);
    lookup.find("KVO_FindIDCard", &::KVO_FindIDCard);
    lookup.find("KVO_ReadIDCard", &::KVO_ReadIDCard);
    closerOfOpenPort = lookup.find("KVO_ClosePort", &::KVO_ClosePort);
    return lookup.complete() ? function(port) : NOT_FOUND;
}

int findIDCard(int port)
{
    return callFunction(READER_LIBRARY, "KVO_FindIDCard", &::KVO_FindIDCard, port);
}

int readIDCard(int port, CardInfoStruct *info, unsigned char *photo, unsigned int *photoLen,
               unsigned char *fp, unsigned int *fpLen, int flag)
{
    Lookup lookup(READER_LIBRARY);
    const auto function = lookup.find("KVO_ReadIDCard", &::KVO_ReadIDCard);
    if (!lookup.complete()) // no result code of a read means this
        throw std::runtime_error("KVO_ReadIDCard is missing");
    return function(port, info, photo, photoLen, fp, fpLen, flag);
}

int closePort(int port)
{
    return closerOfOpenPort != nullptr ? closerOfOpenPort(port) : NOT_FOUND;
}

int unpackPhoto(unsigned char *src, unsigned char *dst, int mode)
{
    return resultOf([&] { return callFunction(WLT_LIBRARY, "unpack", &::unpack, src, dst, mode); },
                    NOT_FOUND);
}

} // namespace closed_library
