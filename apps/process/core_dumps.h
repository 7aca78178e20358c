#pragma once

namespace app
{

/**
 * From here on a crash of this process leaves no core file: its memory may hold what a card says.
 * Programs that it starts do not leave one either.
 */
void forbidCoreDumps();

} // namespace app
