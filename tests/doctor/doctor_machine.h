#pragma once

// What the doctor knows of a machine in order, for tests to spoil.

#include "apps/doctor/environment.h"

/** A machine on which a card can be read by either road. */
app::doctor::Environment fineMachine();
