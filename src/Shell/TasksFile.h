// The tasks file, through which the Control Panel lists what a user can do with the package.
#pragma once

#include <string>

#include "Shell/ControlPanel.h"
#include "Shell/XmlUtils.h"

// The document of the file: the tasks and categories that are visible, in the order of their ids. An entry of a
// category whose task is not known gets an empty reference.
XmlUtils::XmlDoc TasksDocument(const CplData &cpl, IDescriptionTexts &texts);

// Writes the file anew. Answers 1, also when the file could not be written: that stands in the trace.
int CreateHotlinkXMLFile(const std::string &path, const CplData &cpl, IDescriptionTexts &texts);
