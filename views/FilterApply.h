// Applying a saved filter to the notice store: "<No Filter>" clears the store's filter text and switches
// filtering off; any other name loads folder + name + ".nbf" and filters by its expression (a missing or
// unreadable file is an empty filter, which passes every row). Board thread only.
// Failure: an expression that does not compile raises EFilterExpressionError and leaves the store's filter
// as it was (text and switch).
#pragma once

#include <string>

class TNoticeStore;

// The pseudo-entry of the filter lists that stands for "no filter".
extern const char* const NoFilterName;

// Makes the store compile its filter texts with the filter language. Harmless to repeat.
void InstallFilterLanguage(TNoticeStore& Store);

// The filter text to set for FilterName and whether filtering is to be switched on. The folder is joined to
// the name by plain concatenation, so it must end in a separator (an empty folder means the current one).
bool FilterTextForName(const std::string& FilterName, const std::string& Folder, std::string& Text);

// Applies the named filter from Folder (see above); installs the filter language first.
void ApplyFilter(const std::string& FilterName, const std::string& Folder, TNoticeStore& Store);

// Sets Text as the store's filter and switches filtering on; the filter file at FileName likewise.
void ApplyFilterText(const std::string& Text, TNoticeStore& Store);
void ApplyFilterFile(const std::string& FileName, TNoticeStore& Store);
