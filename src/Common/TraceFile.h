// The file sink of the trace and the gate in front of it; set up at program start, closed at its end.
#pragma once

#include <string>

// Creates and closes the gate of the trace: a manual-reset event, signalled from the start and never reset, so that no
// record ever has to wait for it.
void OpenTraceGate();
void CloseTraceGate();

// Names the file that records go to from now on and opens it for appending; others may read and write it meanwhile.
// Answers whether that worked; a file that cannot be opened is tried again by every record. With `anew` no file of that
// name is taken, only one that is made here.
bool OpenTraceSink(const std::string &path, bool anew = false);

// Closes the file and forgets its name: records go to the debugger only.
void CloseTraceSink();

// Path of the trace file, empty when there is none.
std::string TraceSinkPath();
