#pragma once

#include <cerrno>
#include <cstddef>

#include <unistd.h>

/**
 * Writes `size` bytes at `data` to `descriptor`, also in several parts and after interruptions.
 * Returns how many were written; when that is fewer, `errno` says why.
 */
inline std::size_t writeAll(int descriptor, const void *data, std::size_t size)
{
    std::size_t done = 0;
    while (done < size) {
        const ssize_t written =
            ::write(descriptor, static_cast<const char *>(data) + done, size - done);
        if (written < 0 && errno == EINTR)
            continue;
        if (written == 0)
            errno = EIO; // taken without an error, and yet not taken
        if (written <= 0)
            break;
        done += static_cast<std::size_t>(written);
    }
    return done;
}
