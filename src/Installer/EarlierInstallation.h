// The check in front of an installation for what an earlier one left behind.
#pragma once

class CRunState;

// Whether remains of an earlier package ask for a restart of Windows before anything is installed. Reads that fail have
// found nothing. Writes nothing but what RemoveVirtualHidKey() in the definition does.
bool MustRebootBeforeInstall(const CRunState &run);
