#pragma once

// The doctor's checks as a table, and what they find on a machine.

#include <vector>

#include "apps/doctor/environment.h"

namespace app::doctor
{

/** Checks that are listed under one heading. */
struct Group {
    const char *id;
    const char *title;
};

struct CheckRow {
    const char *id;    ///< for programs
    const char *title; ///< for people
    const Group *group;
    bool isForLibrary; ///< whether reading through the reader maker's library needs it
    bool isForUsb;     ///< whether reading over USB does
    Findings (*judge)(const Environment &environment);
};

/** In the order of the report; the rows of a group follow each other. */
const std::vector<CheckRow> &checkTable();

/** What a check found. */
struct CheckedFinding {
    const CheckRow *check;
    Finding finding;
};

/** All findings of the checks that the roads of `environment` need. */
std::vector<CheckedFinding> judge(const Environment &environment);

Level worstOf(const std::vector<CheckedFinding> &findings);

} // namespace app::doctor
