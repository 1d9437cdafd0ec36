// The file lister behind every filter and display list: the files of one folder that match one pattern,
// shown by name without folder and extension, with an optional pseudo-entry ("<No Filter>", "<Default>")
// on top, and the rule that picks the entry a list starts on. Owns its lists; board thread only. Reading
// the folder never fails: a missing or unreadable folder lists just the pseudo-entry.
#pragma once

#include "xml/XMLStrings.h" // EListError, raised for an index outside a list

#include <string>
#include <vector>

class TFIleLister {
public:
    TFIleLister() = default;

    // Entries shown to the user: the default string first (when set), then one name per file found.
    std::vector<std::string> Items;
    // Full paths. In step with Items on the first fill only: later refreshes keep the old entries in front,
    // which callers rely on not mattering (they use Items).
    std::vector<std::string> FileNames;
    bool PreferDefault = true;
    std::string PreferredItem; // entry to start on; when empty, the default string is looked for
    std::string FallbackItem;  // entry to start on when the preferred one is not listed

    const std::string& FilePattern() const { return FFilePattern; }
    const std::string& FolderPath() const { return FFolderPath; }
    const std::string& DefaultString() const { return FDefaultString; }

    // Each stores a changed value and refreshes the list (the folder only when a pattern is set).
    void SetFilePattern(const std::string& Pattern);
    void SetDefaultString(const std::string& Text);
    void SetFolderPath(const std::string& Path);

    // The folder with a trailing separator; DataFolder() (the executable's folder as a rule) when none is set.
    std::string GetFolderPath() const;
    void Refresh() { RefreshFileList(); }
    void RefreshFileList();

    // Raise EListError for an index outside the list. SetItem writes only a changed text.
    std::string GetItem(int Index) const;
    void SetItem(int Index, const std::string& Text);
    std::string GetFilename(int Index) const;

    // The entry a list starts on: the preferred entry (or the default string), else the fallback, else the
    // first entry; -1 for an empty list. Entries are compared ignoring letter case.
    int GetInitialDefaultItemIndex() const;

private:
    int IndexOf(const std::string& Text) const;

    std::string FFilePattern;
    std::string FFolderPath;
    std::string FDefaultString;
};

// True when name matches a file mask of '*' (any run) and '?' (one character), ignoring letter case.
bool MatchesFileMask(const std::string& name, const std::string& mask);
