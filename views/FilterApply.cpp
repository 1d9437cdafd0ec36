#include "views/FilterApply.h"

#include "views/Ufilter.h"

const char* const NoFilterName = "<No Filter>";

bool FilterTextForName(const std::string& FilterName, const std::string& Folder, std::string& Text) {
    Text.clear();
    if (FilterName == NoFilterName) return false;
    TFilter filter;
    filter.filterFromFile(Folder + FilterName + ".nbf");
    Text = filter.GetFilterString();
    return true;
}
