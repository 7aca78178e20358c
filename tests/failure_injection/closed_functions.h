#pragma once

// The reader of a test program: the simulator's, with the card of IDCARD_SIMULATOR_CARD.

namespace failure_injection
{

/** Whether the reader port was opened and not closed. */
bool portIsOpen();

} // namespace failure_injection
