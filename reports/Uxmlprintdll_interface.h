// launchReport: hands the report XML to a report library (sdk/xmlreporting.h) and unloads it again.
// Board thread (the library may show its print dialog during the call).
#pragma once

#include <string>

// Loads LibraryName through the platform loader ("XmlReportingNB.dll" finds XmlReportingNB.so in the
// plugins folder), calls its printFromXML with XmlText (NUL-terminated) and Text3..Text5 as length-prefixed
// short strings cut at 255 bytes, and unloads it whatever happens once it was loaded. The library's result
// is not acted on: the library tells the user itself why a report did not print.
// An empty LibraryName does nothing. Raises Exception "Unable to Load DLL" + LibraryName when the library
// cannot be loaded, and Exception with the loader's message when it does not export printFromXML.
void launchReport(const std::string& LibraryName, const std::string& XmlText, const std::string& Text3,
                  const std::string& Text4, const std::string& Text5);
