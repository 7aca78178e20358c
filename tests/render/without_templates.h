#pragma once

// The library without its templates, while the object lives.

#include <gtest/gtest.h>

int qInitResources_thisapp();
int qCleanupResources_thisapp();

class WithoutTemplates
{
public:
    WithoutTemplates() { EXPECT_EQ(qCleanupResources_thisapp(), 1); }
    ~WithoutTemplates() { EXPECT_EQ(qInitResources_thisapp(), 1); }
    WithoutTemplates(const WithoutTemplates &) = delete;
    WithoutTemplates &operator=(const WithoutTemplates &) = delete;
};
