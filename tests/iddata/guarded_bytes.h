#pragma once

// Bytes between two pages that nobody may touch: reading or writing beside them ends the test.

#include <algorithm>
#include <cstddef>
#include <new>

#include <sys/mman.h>
#include <unistd.h>

class GuardedBytes
{
public:
    using value_type = unsigned char;
    using iterator = unsigned char *;
    using const_iterator = const unsigned char *;

    /** Which end of the bytes touches its guard page; pages are larger than the bytes. */
    enum Side { GUARD_BEFORE, GUARD_AFTER };

    GuardedBytes(std::size_t size, Side side, unsigned char fill = 0) : m_size(size)
    {
        const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
        const std::size_t inner = (size + page - 1) / page * page;
        m_mappedSize = inner + 2 * page;
        m_mapped = ::mmap(nullptr, m_mappedSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (m_mapped == MAP_FAILED)
            throw std::bad_alloc();
        auto *const first = static_cast<unsigned char *>(m_mapped) + page;
        // The emulator refuses to open no page at all.
        if (inner > 0 && ::mprotect(first, inner, PROT_READ | PROT_WRITE) != 0)
            throw std::bad_alloc();
        m_data = side == GUARD_BEFORE ? first : first + inner - size;
        for (std::size_t i = 0; i < size; ++i)
            m_data[i] = fill;
    }
    ~GuardedBytes() { ::munmap(m_mapped, m_mappedSize); }
    GuardedBytes(const GuardedBytes &) = delete;
    GuardedBytes(GuardedBytes &&) = delete;
    GuardedBytes &operator=(const GuardedBytes &) = delete;
    GuardedBytes &operator=(GuardedBytes &&) = delete;

    unsigned char *data() { return m_data; }
    const unsigned char *data() const { return m_data; }
    std::size_t size() const { return m_size; }
    unsigned char *begin() { return m_data; }
    unsigned char *end() { return m_data + m_size; }
    const unsigned char *begin() const { return m_data; }
    const unsigned char *end() const { return m_data + m_size; }

    /** Whether every byte is `byte`. */
    bool holdOnly(unsigned char byte) const
    {
        return std::count(begin(), end(), byte) == end() - begin();
    }

private:
    std::size_t m_size;
    std::size_t m_mappedSize = 0;
    void *m_mapped = nullptr;
    unsigned char *m_data = nullptr;
};

/** Both sides, for tests that are run with each. */
inline constexpr GuardedBytes::Side GUARD_SIDES[] = {GuardedBytes::GUARD_BEFORE,
                                                     GuardedBytes::GUARD_AFTER};
