// The services of this package and of its predecessors, as an earlier installation may have left them.
#pragma once

// Whether a service of this package or of an earlier one cannot be configured, as a rule because it is marked for
// deletion: only the next start of Windows ends that. Services that are not there do not count.
bool IsServiceConfigDirty();
