// The words of a plan that its forms share, in UTF-8.
#pragma once

#include <string>

#include "Pack/PlanTree.h"

// A text of the plan for people: one line, no control characters.
std::string PlanShown(const std::string &text);

// Where a group begins or a step stands: "installer.dat:12".
std::string PlanPlace(const PlanNode &node);

// '+' a step that acts, '-' one that finds nothing to do, '?' one of which nobody knows, ' ' any other.
char PlanMark(const PlanNode &step);

// The step's fields behind its macros, without the target.
std::string PlanFields(const PlanNode &step);

// What a test answers and where a jump goes; empty for other steps.
std::string PlanOutcome(const PlanNode &step);

std::string PlanNote(const PlanNode &step);

// The heading of a course, and the line behind both.
std::string PlanCourse(const PlanNode &step, bool yes);
std::string PlanMeeting(const PlanNode &step);

// How the run ends.
std::string PlanEnd(const Plan &plan);
