#pragma once

// Work that may crash or hang, or that has to be alone in its process.

#include <functional>

#include "tests/support/process.h"

/** Work in a forked child of the test. `wait` must be called once. */
class ForkedWork
{
public:
    /** Starts it; `work` writes its report to the descriptor. The child ends without a clean-up. */
    explicit ForkedWork(const std::function<void(int report)> &work);

    struct End {
        QByteArray report;
        int status = -1; ///< as `waitpid` gives it; negative: there was no child
    };
    End wait();

private:
    Pipe m_report;
    pid_t m_child;
};
