#pragma once

// A warning of Qt that a test provokes. Any other fails the test in which it comes.

/** While it lives, warnings that begin like this may come, and one has to. */
class ExpectedWarning
{
public:
    explicit ExpectedWarning(const char *beginning);
    ~ExpectedWarning();
    ExpectedWarning(const ExpectedWarning &) = delete;
    ExpectedWarning &operator=(const ExpectedWarning &) = delete;
};
