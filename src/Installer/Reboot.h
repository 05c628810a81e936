// The reboot at the end of a run whose user asked for it.
#pragma once

// Asks Windows for a planned restart because of a hardware installation. A shutdown privilege that cannot be had does
// not stop the request; a refused request is not reported.
void RebootMachine();
