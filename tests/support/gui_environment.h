#pragma once

// Gives every test of a program a Qt GUI application, with the screen that the platform has.

/** Dots per inch of the screen that this run is meant to have (IDCARD_TEST_DPI). */
double expectedDpi();

/** Pixels per millimetre of this run's screen. */
double pixelsPerMm();
