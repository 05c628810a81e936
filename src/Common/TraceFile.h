// The file sink of the trace and the gate in front of it; set up at program start, closed at its end.
#pragma once

#include <string>

// Creates the gate that every trace() waits on: a manual-reset event, signalled from the start and never reset, so that
// nothing ever waits in fact. Closing it ends the waiting; calls before and after do without.
void OpenTraceGate();
void CloseTraceGate();

// Names the file that records go to from now on and opens it for appending, shared with everybody. Answers whether
// that worked; a file that cannot be opened is tried again by every record.
bool OpenTraceSink(const std::string &path);

// Closes the file and forgets its name: records go to the debugger only.
void CloseTraceSink();

// Path of the trace file, empty when there is none.
std::string TraceSinkPath();
