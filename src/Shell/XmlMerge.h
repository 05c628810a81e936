// The merge of one XML document into another.
#pragma once

#include <libxml/tree.h>

// Brings what `srcDoc` holds into `destDoc`. Nothing is taken out of the destination: attributes and texts of the
// source replace those of the elements that it finds there, and what it does not find is put behind the others. Either
// may be null, and the source stays as it is.
//
// Names and values are compared without regard to case (ASCII letters). An element of the source is found in the first
// child of its name that has all its attributes with equal values, so an element without attributes is found in the
// first of its name. The source's attribute matchUsingAttributes steers that for its element: with "0" the name is
// enough; any other value demands an attribute of that name in the destination and compares no value of it.
void MergeXmlDocuments(xmlDocPtr destDoc, xmlDocPtr srcDoc);
