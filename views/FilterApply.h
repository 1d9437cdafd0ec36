// Applying a saved filter by name: "<No Filter>" switches filtering off; any other name loads
// folder + name + ".nbf" (a missing file gives an empty filter, which passes every row) and filters by its
// expression. Board thread only.
#pragma once

#include <string>

// The pseudo-entry of the filter lists that stands for "no filter".
extern const char* const NoFilterName;

// The filter text to set for FilterName and whether filtering is to be switched on. The folder is joined to
// the name by plain concatenation, so it must end in a separator (an empty folder means the current one).
bool FilterTextForName(const std::string& FilterName, const std::string& Folder, std::string& Text);
