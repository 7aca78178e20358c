#pragma once

// Catches what is written to the process's standard output, byte for byte, with the stream fresh:
// standard output takes wide characters only as long as nothing wrote bytes to it, and a test
// program's own reports do.

#include <string>

class WideConsoleCapture
{
public:
    WideConsoleCapture();
    ~WideConsoleCapture();
    WideConsoleCapture(const WideConsoleCapture &) = delete;
    WideConsoleCapture &operator=(const WideConsoleCapture &) = delete;

    /** Ends the capture and returns what was written. */
    std::string take();

private:
    void restore();

    int m_savedDescriptor;
    std::string m_fileName;
    bool m_active = true;
};
