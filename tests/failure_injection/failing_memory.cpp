#include "tests/failure_injection/failing_memory.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <new>

#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <link.h>
#include <malloc.h>

// The C library's own functions under the names by which it offers them to such as this.
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void *__libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void *block);
}

namespace
{

constexpr int MOST_FRAMES = 40;
/** Allocations that fail after the first; some libraries try again until there is memory. */
constexpr long LONG_SHORTAGE = 1000;
constexpr std::size_t MOST_BLOCKS = 1U << 15U;

/** The functions that led to an allocation, innermost first. */
struct Frames {
    int count;
    std::array<void *, MOST_FRAMES> addresses;
};

struct Range {
    std::uintptr_t begin;
    std::uintptr_t end;
};

thread_local bool isCounting = false;

long counted = 0;
long failed = 0;
long failingPosition = 0;
failure_injection::Extent failingExtent = failure_injection::Extent::ONE;

Frames framesOfFailure;

std::atomic_flag accountLock = ATOMIC_FLAG_INIT;
std::atomic<int> blockCount = 0;
bool placesWanted = false;
// A table with open addressing; the addresses apart, as most runs ask for nothing else.
std::array<const void *, MOST_BLOCKS> blocks; ///< null: never used
std::array<Frames, MOST_BLOCKS> framesOfBlocks;
/** Where a block once was, so that those behind it are still found. */
const void *const GONE = &blocks;

/** Where modules lie. */
struct Ranges {
    std::array<Range, 64> ranges{};
    std::size_t count = 0;

    bool hold(const void *address) const
    {
        const auto number = reinterpret_cast<std::uintptr_t>(address);
        return std::any_of(ranges.begin(), ranges.begin() + count,
                           [number](Range r) { return number >= r.begin && number < r.end; });
    }
};

Ranges exempt;
Ranges cLibrary;
bool emulatesKernel = false; ///< umockdev's preload library stands before the C library

class AccountLock
{
public:
    AccountLock()
    {
        while (accountLock.test_and_set(std::memory_order_acquire)) {
        }
    }
    ~AccountLock() { accountLock.clear(std::memory_order_release); }
    AccountLock(const AccountLock &) = delete;
    AccountLock &operator=(const AccountLock &) = delete;
};

bool holdsOneOf(const char *path, std::initializer_list<const char *> names)
{
    return std::any_of(names.begin(), names.end(),
                       [path](const char *name) { return std::strstr(path, name) != nullptr; });
}

void addTo(Ranges &ranges, const dl_phdr_info &info)
{
    for (int i = 0; i < info.dlpi_phnum; ++i) {
        const ElfW(Phdr) &header = info.dlpi_phdr[i];
        if (header.p_type != PT_LOAD || ranges.count == ranges.ranges.size())
            continue;
        const std::uintptr_t begin = info.dlpi_addr + header.p_vaddr;
        ranges.ranges[ranges.count++] = {begin, begin + header.p_memsz};
    }
}

int noteModule(dl_phdr_info *info, std::size_t, void *)
{
    const char *const path = info->dlpi_name;
    if (*path == '\0' || holdsOneOf(path, {"libumockdev", "libglib", "libgobject", "libgio",
                                           "libgmodule", "libgtest"}))
        addTo(exempt, *info);
    if (holdsOneOf(path, {"/libc.so"}))
        addTo(cLibrary, *info);
    emulatesKernel = emulatesKernel || holdsOneOf(path, {"libumockdev-preload"});
    return 0;
}

/** Whether the test, or what it emulates, asks for memory at `caller`, if through the C library. */
bool isExempt(const void *caller)
{
    if (exempt.hold(caller))
        return true;
    if (!emulatesKernel || !cLibrary.hold(caller))
        return false;
    constexpr int ENOUGH_FRAMES = 16;
    const failure_injection::MemoryPause pause;
    std::array<void *, ENOUGH_FRAMES> frames{};
    const int count = backtrace(frames.data(), ENOUGH_FRAMES);
    const auto *const end = frames.cbegin() + count;
    const auto *frame = std::find(frames.cbegin(), end, caller);
    frame = std::find_if(frame, end, [](const void *f) { return !cLibrary.hold(f); });
    return frame != end && exempt.hold(*frame);
}

/** Counts an allocation that `caller` asks for; whether it fails. */
bool fails(const void *caller)
{
    if (!isCounting || isExempt(caller))
        return false;
    ++counted;
    const long more = failingExtent == failure_injection::Extent::ONE ? 0 : LONG_SHORTAGE;
    const bool isFailing =
        failingPosition > 0 && counted >= failingPosition && counted <= failingPosition + more;
    if (isFailing && failed++ == 0) {
        const failure_injection::MemoryPause pause;
        framesOfFailure.count = backtrace(framesOfFailure.addresses.data(), MOST_FRAMES);
    }
    return isFailing;
}

/** The place in the table of the first of these two that is met on the way from `address`. */
std::size_t placeInTable(const void *address, const void *one, const void *other)
{
    const std::size_t first = (reinterpret_cast<std::uintptr_t>(address) >> 4U) * 0x9e3779b1U;
    for (std::size_t tries = 0; tries < MOST_BLOCKS; ++tries) {
        const std::size_t place = (first + tries) % MOST_BLOCKS;
        if (blocks[place] == one || blocks[place] == other)
            return place;
    }
    std::abort(); // the table is full: a test asks for more than it was made for
}

void note(const void *address, const void *caller)
{
    if (address == nullptr || !isCounting || isExempt(caller))
        return;
    const failure_injection::MemoryPause pause;
    const AccountLock lock;
    const std::size_t place = placeInTable(address, nullptr, GONE);
    blocks[place] = address;
    Frames &frames = framesOfBlocks[place];
    if (placesWanted)
        frames.count = backtrace(frames.addresses.data(), MOST_FRAMES);
    ++blockCount;
}

void forget(const void *address)
{
    if (address == nullptr || blockCount == 0)
        return;
    const AccountLock lock;
    const std::size_t place = placeInTable(address, address, nullptr);
    if (blocks[place] == nullptr)
        return;
    blocks[place] = GONE;
    --blockCount;
}

/** The block that `allocate` gives, or null as if it had none. */
template <typename Allocate>
void *allocation(const void *caller, Allocate allocate)
{
    if (fails(caller)) {
        errno = ENOMEM;
        return nullptr;
    }
    void *const block = allocate();
    note(block, caller);
    return block;
}

void *operatorNew(std::size_t size, const void *caller)
{
    return allocation(caller, [size] { return __libc_malloc(size); });
}

void *operatorNew(std::size_t size, std::align_val_t alignment, const void *caller)
{
    return allocation(caller,
                      [=] { return __libc_memalign(static_cast<std::size_t>(alignment), size); });
}

void *orThrow(void *block)
{
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

std::string fileName(const char *path)
{
    const std::string text = path != nullptr ? path : "";
    return text.substr(text.rfind('/') + 1);
}

/** Whether `place` says where memory is requested or an error is thrown, not what for. */
bool isMachinery(const std::string &place)
{
    constexpr const char *BEGINNINGS[] = {"libstdc++", "libgcc_s", "failure_injection_",
                                          "libc.so.6+"};
    constexpr const char *PARTS[] = {" qBadAlloc", "::allocate(", "::reallocate",
                                     " abort",     " raise",      " gsignal"};
    return std::any_of(std::begin(BEGINNINGS), std::end(BEGINNINGS),
                       [&](const char *b) { return place.rfind(b, 0) == 0; }) ||
           std::any_of(std::begin(PARTS), std::end(PARTS),
                       [&](const char *p) { return place.find(p) != std::string::npos; });
}

} // namespace

void failure_injection::startMemory(long position, Extent extent)
{
    if (exempt.count == 0) {
        dl_iterate_phdr(noteModule, nullptr);
        void *frame = nullptr;
        backtrace(&frame, 1); // loads what it needs, which it could not from within the loader
    }
    counted = 0;
    failed = 0;
    failingPosition = position;
    failingExtent = extent;
    isCounting = true;
}

long failure_injection::stopMemory()
{
    isCounting = false;
    return counted;
}

long failure_injection::failedAllocations()
{
    return failed;
}

std::string failure_injection::placeOfFailure()
{
    constexpr int PLACES = 3;
    return innermostPlaces(framesOfFailure.addresses.data(), framesOfFailure.count, PLACES);
}

failure_injection::MemoryPause::MemoryPause() : m_before(isCounting)
{
    isCounting = false;
}

failure_injection::MemoryPause::~MemoryPause()
{
    isCounting = m_before;
}

void failure_injection::startAccount(bool withPlaces)
{
    void *frame = nullptr;
    backtrace(&frame, 1); // loads what it needs
    const AccountLock lock;
    for (const void *&block : blocks)
        if (block != nullptr) // a page that was never written stays unwritten
            block = nullptr;
    blockCount = 0;
    placesWanted = withPlaces;
}

void failure_injection::dropAccount()
{
    blockCount = 0;
}

int failure_injection::liveBlocks()
{
    return blockCount;
}

std::vector<std::string> failure_injection::placesOfLiveBlocks()
{
    constexpr int PLACES = 3;
    std::vector<std::string> places;
    for (std::size_t i = 0; i < MOST_BLOCKS; ++i) {
        const Frames &frames = framesOfBlocks[i];
        if (blocks[i] != nullptr && blocks[i] != GONE)
            places.push_back(innermostPlaces(frames.addresses.data(), frames.count, PLACES));
    }
    return places;
}

std::string failure_injection::placeOf(const void *address)
{
    Dl_info info{};
    if (dladdr(address, &info) == 0)
        return "?";
    const std::string module = fileName(info.dli_fname);
    if (info.dli_sname == nullptr) {
        std::array<char, 32> text{};
        std::snprintf(text.data(), text.size(), "+%zx",
                      static_cast<std::size_t>(static_cast<const char *>(address) -
                                               static_cast<const char *>(info.dli_fbase)));
        return module + text.data();
    }
    int status = 0;
    char *const plain = abi::__cxa_demangle(info.dli_sname, nullptr, nullptr, &status);
    std::string place = module + ' ' + (status == 0 ? plain : info.dli_sname);
    std::free(plain);
    return place;
}

std::string failure_injection::innermostPlaces(void *const *addresses, int count, int places)
{
    std::string text;
    for (int i = 0; i < count && places > 0; ++i) {
        const std::string place = placeOf(static_cast<const char *>(addresses[i]) - 1);
        if (isMachinery(place))
            continue;
        text += (text.empty() ? "" : " < ") + place;
        --places;
    }
    return text;
}

// NOLINTBEGIN(misc-new-delete-overloads, readability-inconsistent-declaration-parameter-name)

#define EXPORTED __attribute__((visibility("default")))

extern "C" {

EXPORTED void *malloc(std::size_t size)
{
    return allocation(__builtin_return_address(0), [size] { return __libc_malloc(size); });
}

EXPORTED void free(void *block)
{
    forget(block);
    __libc_free(block);
}

EXPORTED void *calloc(std::size_t count, std::size_t size)
{
    return allocation(__builtin_return_address(0), [=] { return __libc_calloc(count, size); });
}

EXPORTED void *realloc(void *block, std::size_t size)
{
    const void *const caller = __builtin_return_address(0);
    // What fits where it is takes no memory.
    const bool fits = block != nullptr && size <= malloc_usable_size(block);
    if (!fits && fails(caller)) {
        errno = ENOMEM;
        return nullptr;
    }
    forget(block);
    void *const moved = __libc_realloc(block, size);
    note(moved, caller);
    return moved;
}

EXPORTED void *memalign(std::size_t alignment, std::size_t size)
{
    return allocation(__builtin_return_address(0),
                      [=] { return __libc_memalign(alignment, size); });
}

EXPORTED void *aligned_alloc(std::size_t alignment, std::size_t size)
{
    return allocation(__builtin_return_address(0),
                      [=] { return __libc_memalign(alignment, size); });
}

EXPORTED int posix_memalign(void **block, std::size_t alignment, std::size_t size)
{
    void *const made =
        allocation(__builtin_return_address(0), [=] { return __libc_memalign(alignment, size); });
    if (made == nullptr)
        return ENOMEM;
    *block = made;
    return 0;
}

} // extern "C"

EXPORTED void *operator new(std::size_t size)
{
    return orThrow(operatorNew(size, __builtin_return_address(0)));
}

EXPORTED void *operator new[](std::size_t size)
{
    return orThrow(operatorNew(size, __builtin_return_address(0)));
}

EXPORTED void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    return operatorNew(size, __builtin_return_address(0));
}

EXPORTED void *operator new[](std::size_t size, const std::nothrow_t &) noexcept
{
    return operatorNew(size, __builtin_return_address(0));
}

EXPORTED void *operator new(std::size_t size, std::align_val_t alignment)
{
    return orThrow(operatorNew(size, alignment, __builtin_return_address(0)));
}

EXPORTED void operator delete(void *block) noexcept
{
    std::free(block);
}

EXPORTED void operator delete[](void *block) noexcept
{
    std::free(block);
}

EXPORTED void operator delete(void *block, std::size_t) noexcept
{
    std::free(block);
}

EXPORTED void operator delete[](void *block, std::size_t) noexcept
{
    std::free(block);
}

EXPORTED void operator delete(void *block, std::align_val_t) noexcept
{
    std::free(block);
}

EXPORTED void operator delete(void *block, std::size_t, std::align_val_t) noexcept
{
    std::free(block);
}

// NOLINTEND(misc-new-delete-overloads, readability-inconsistent-declaration-parameter-name)
