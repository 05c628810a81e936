// The picture of how the groups of a plan call each other.
#pragma once

#include <string>

#include "Pack/PlanTree.h"

// Text as a part of HTML or SVG, in UTF-8.
std::string PlanMarkup(const std::string &utf8);

// The name under which the page has a group, for links; the same for each of its runs.
std::string PlanAnchor(const std::string &file, const std::string &group);

// An SVG element; empty for a plan with less than two groups.
std::string PlanPicture(const Plan &plan);
