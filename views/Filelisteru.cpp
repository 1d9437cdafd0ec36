#include "views/Filelisteru.h"

#include "platform/Process.h"
#include "support/StrUtils.h"

#include <filesystem>

bool MatchesFileMask(const std::string& name, const std::string& mask) {
    size_t n = 0, m = 0, starM = std::string::npos, starN = 0;
    while (n < name.size()) {
        if (m < mask.size() && mask[m] == '*') {
            starM = ++m;
            starN = n;
        } else if (m < mask.size() && (mask[m] == '?' || UpCase(mask[m]) == UpCase(name[n]))) {
            ++m;
            ++n;
        } else if (starM != std::string::npos) {
            m = starM;
            n = ++starN;
        } else {
            return false;
        }
    }
    while (m < mask.size() && mask[m] == '*')
        ++m;
    return m == mask.size();
}

void TFIleLister::SetFilePattern(const std::string& Pattern) {
    if (Pattern == FFilePattern) return;
    FFilePattern = Pattern;
    RefreshFileList();
}

void TFIleLister::SetDefaultString(const std::string& Text) {
    if (Text == FDefaultString) return;
    FDefaultString = Text;
    RefreshFileList();
}

void TFIleLister::SetFolderPath(const std::string& Path) {
    if (Path == FFolderPath) return;
    FFolderPath = Path;
    if (!FFilePattern.empty()) RefreshFileList();
}

std::string TFIleLister::GetFolderPath() const {
    if (FFolderPath.empty()) return DataFolder();
    return IncludeTrailingPathDelimiter(FFolderPath);
}

void TFIleLister::RefreshFileList() {
    Items.clear();
    if (FFilePattern.empty()) return;
    if (!FDefaultString.empty()) {
        Items.push_back(FDefaultString);
        FileNames.emplace_back();
    }
    const std::string folder = GetFolderPath();
    std::error_code ec;
    // Every entry counts, folders and hidden files alike, in the order the file system gives them.
    std::filesystem::directory_iterator it(folder, ec), end;
    for (; !ec && it != end; it.increment(ec)) {
        const std::string name = it->path().filename().string();
        if (!MatchesFileMask(name, FFilePattern)) continue;
        Items.push_back(name.substr(0, name.size() - ExtractFileExt(name).size()));
        FileNames.push_back(folder + name);
    }
}

std::string TFIleLister::GetItem(int Index) const {
    if (Index < 0 || Index >= static_cast<int>(Items.size())) throw EListError::OutOfBounds(Index);
    return Items[static_cast<size_t>(Index)];
}

void TFIleLister::SetItem(int Index, const std::string& Text) {
    if (Index < 0 || Index >= static_cast<int>(Items.size())) throw EListError::OutOfBounds(Index);
    if (Items[static_cast<size_t>(Index)] != Text) Items[static_cast<size_t>(Index)] = Text;
}

std::string TFIleLister::GetFilename(int Index) const {
    if (Index < 0 || Index >= static_cast<int>(FileNames.size())) throw EListError::OutOfBounds(Index);
    return FileNames[static_cast<size_t>(Index)];
}

int TFIleLister::IndexOf(const std::string& Text) const {
    for (size_t i = 0; i < Items.size(); ++i) {
        if (SameText(Items[i], Text)) return static_cast<int>(i);
    }
    return -1;
}

int TFIleLister::GetInitialDefaultItemIndex() const {
    int index = -1;
    if (PreferDefault) index = IndexOf(PreferredItem.empty() ? FDefaultString : PreferredItem);
    if (index == -1 && !FallbackItem.empty()) index = IndexOf(FallbackItem);
    if (index == -1) index = Items.empty() ? -1 : 0;
    return index;
}
