#pragma once

// The built-in cards of the simulator, as its own code loads them.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "simulator/card/card_library.h"

/** The built-in card of this name, or that of a file. */
inline simulator::CardDescription builtInCard(const QString &name)
{
    simulator::DescriptionError error;
    const auto card = simulator::loadCard(name, &error);
    EXPECT_TRUE(card) << error.message().toStdString();
    return card.value_or(simulator::CardDescription());
}

/** Their names, for tests of each. */
inline std::vector<std::string> builtInCardParameters()
{
    std::vector<std::string> names;
    for (const QString &name : simulator::builtInCardNames())
        names.push_back(name.toStdString());
    return names;
}
