// The question for the size of an ISD tablet on its serial port.
#pragma once

// Asks the tablet on the port that the driver's setting names and stores its size for the driver. Does nothing when the
// port cannot be opened; a tablet that does not answer in full counts as answering zeros where its answer ends.
void QueryISDTabletSize();
