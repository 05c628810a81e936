// When what one step takes or tests is what another brings.
#pragma once

#include <functional>
#include <string>

#include "Pack/Inventory.h"

// A file or a link.
bool IsFile(EThing thing);

// Whether DeleteDirContents leaves a file in a removal.
bool IsSpared(const std::string &place);

// Whether one item takes or tests what the other brings, the views left aside.
bool Meets(const InventoryItem &takes, const InventoryItem &brings);

// Whether both work in the same view, or on a machine or a place that has but one.
bool SameView(const InventoryItem &left, const InventoryItem &right);

// What an item is looked up by; two that meet have it in common, or one lies within the other.
std::string KeyOf(const InventoryItem &item);

// Visits a place and all that it lies in.
void ForEachAncestor(const std::string &place, const std::function<void(const std::string &)> &visit);
