#include "views/FilterApply.h"

#include "core/FilterExpression.h"
#include "core/TNoticeStore.h"
#include "views/Ufilter.h"

const char* const NoFilterName = "<No Filter>";

void InstallFilterLanguage(TNoticeStore& Store) {
    Store.SetFilterCompiler(CompileFilterExpression);
}

bool FilterTextForName(const std::string& FilterName, const std::string& Folder, std::string& Text) {
    Text.clear();
    if (FilterName == NoFilterName) return false;
    TFilter filter;
    filter.filterFromFile(Folder + FilterName + ".nbf");
    Text = filter.GetFilterString();
    return true;
}

void ApplyFilterText(const std::string& Text, TNoticeStore& Store) {
    InstallFilterLanguage(Store);
    Store.SetFilterText(Text); // raises before anything changes when the text does not compile
    Store.SetFiltered(true);
}

void ApplyFilterFile(const std::string& FileName, TNoticeStore& Store) {
    TFilter filter;
    filter.filterFromFile(FileName);
    ApplyFilterText(filter.GetFilterString(), Store);
}

void ApplyFilter(const std::string& FilterName, const std::string& Folder, TNoticeStore& Store) {
    std::string text;
    if (!FilterTextForName(FilterName, Folder, text)) {
        Store.SetFilterText("");
        Store.SetFiltered(false);
        return;
    }
    ApplyFilterText(text, Store);
}
