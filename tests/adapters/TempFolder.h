// A fresh folder under the system's temporary folder, removed with everything in it at the end of a test.
#pragma once

#include "support/StrUtils.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

class TTempFolder {
public:
    TTempFolder() {
        std::string tmpl = (std::filesystem::temp_directory_path() / "nbtest.XXXXXX").string();
        if (::mkdtemp(tmpl.data())) FPath = tmpl + "/";
    }
    ~TTempFolder() {
        std::error_code ec;
        if (!FPath.empty()) std::filesystem::remove_all(FPath, ec);
    }
    TTempFolder(const TTempFolder&) = delete;
    TTempFolder& operator=(const TTempFolder&) = delete;

    // The folder with a trailing separator.
    const std::string& Path() const { return FPath; }
    std::string operator/(const std::string& name) const { return FPath + name; }

private:
    std::string FPath;
};

inline void WriteTextFile(const std::string& fileName, const std::string& text) {
    std::ofstream out(fileName, std::ios::binary | std::ios::trunc);
    out << text;
}

inline std::string ReadTextFile(const std::string& fileName) {
    std::string text;
    ReadWholeFile(fileName, text);
    return text;
}
