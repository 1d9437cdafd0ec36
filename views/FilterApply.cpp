#include "views/FilterApply.h"

#include "core/FilterExpression.h"
#include "core/TNoticeStore.h"
#include "views/Ufilter.h"

const char* const NoFilterName = "<No Filter>";

namespace {

std::string FilterFileText(const std::string& FileName) {
    TFilter filter;
    filter.filterFromFile(FileName);
    return filter.GetFilterString();
}

} // namespace

void InstallFilterLanguage(TNoticeStore& Store) {
    Store.SetFilterCompiler(CompileFilterExpression);
}

bool FilterTextForName(const std::string& FilterName, const std::string& Folder, std::string& Text) {
    Text.clear();
    if (FilterName == NoFilterName) return false;
    Text = FilterFileText(Folder + FilterName + ".nbf");
    return true;
}

void ApplyFilterText(const std::string& Text, TNoticeStore& Store) {
    InstallFilterLanguage(Store);
    Store.SetFilterText(Text); // raises before anything changes when the text does not compile
    Store.SetFiltered(true);
}

void ApplyFilterFile(const std::string& FileName, TNoticeStore& Store) {
    ApplyFilterText(FilterFileText(FileName), Store);
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
