// The work of the sample companion: it does none, writes down what it was asked to do, and answers as it is told.
#pragma once

// Appends the request to TavixCompanion.log in the folder of temporary files, a line each. Answers the number of the
// first line of TavixCompanion.txt there whose text, behind the number and a blank, is part of the request; 0, which
// is success, without such a line. A real companion does its work here and answers an error number of Windows.
unsigned CarryOut(const char *request);
