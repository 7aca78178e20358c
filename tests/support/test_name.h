#pragma once

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

/** A parameter such as "hmt-macao" as a part of a test's name. */
inline std::string testName(std::string parameter)
{
    std::replace(parameter.begin(), parameter.end(), '-', '_');
    return parameter;
}

inline std::string testNameOf(const testing::TestParamInfo<std::string> &test)
{
    return testName(test.param);
}
