// The encodings of XML documents that the library does not know by itself.
#pragma once

// Makes the code pages of Windows known to libxml2 under the names that documents declare, such as "windows-1252" or
// "gb2312". To be done again after xmlCleanupParser().
void RegisterXmlCodePages();
