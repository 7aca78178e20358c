#include "tests/library/wide_console_capture.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

#include <unistd.h>

namespace
{

std::string emptyFile()
{
    std::string name = "./console-XXXXXX";
    const int descriptor = mkstemp(name.data());
    if (descriptor < 0)
        throw std::runtime_error("no temporary file");
    close(descriptor);
    return name;
}

} // namespace

WideConsoleCapture::WideConsoleCapture() : m_savedDescriptor(-1), m_fileName(emptyFile())
{
    std::fflush(stdout);
    m_savedDescriptor = dup(STDOUT_FILENO);
    // Reopening forgets whether the stream was used for bytes or for wide characters.
    if (m_savedDescriptor < 0 || std::freopen(m_fileName.c_str(), "w", stdout) == nullptr)
        throw std::runtime_error("standard output cannot be caught");
    std::wcout.clear();
}

WideConsoleCapture::~WideConsoleCapture()
{
    if (m_active)
        restore();
    unlink(m_fileName.c_str());
}

std::string WideConsoleCapture::take()
{
    restore();
    std::ifstream file(m_fileName, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void WideConsoleCapture::restore()
{
    m_active = false;
    std::fflush(stdout);
    const std::string saved = "/proc/self/fd/" + std::to_string(m_savedDescriptor);
    if (std::freopen(saved.c_str(), "a", stdout) == nullptr)
        std::abort(); // nowhere left to report to
    close(m_savedDescriptor);
}
