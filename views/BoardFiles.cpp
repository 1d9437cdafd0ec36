#include "views/BoardFiles.h"

#include "core/Nb_utils.h"

#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace {

bool IsPlainFileName(const std::string& name) {
    if (name.empty() || name == "." || name == "..") return false;
    return name.find_first_of(std::string("/\\\0", 3)) == std::string::npos;
}

// The folder the file must stay in, as the system resolves it.
fs::path ResolvedFolder(std::error_code& ec) {
    const fs::path folder = FilterFolder.empty() ? fs::current_path(ec) : fs::path(FilterFolder);
    if (ec) return {};
    return fs::weakly_canonical(folder, ec);
}

} // namespace

bool BoardFilePath(const std::string& Name, const std::string& Extension, std::string& Path) {
    Path.clear();
    if (!IsPlainFileName(Name)) return false;
    const std::string path = FilterFolder + Name + Extension;
    std::error_code ec;
    // The name is one component, so only a link in the folder can lead elsewhere; writing through it
    // would create or overwrite a file outside.
    if (fs::is_symlink(fs::symlink_status(path, ec))) {
        const fs::path target = fs::canonical(path, ec);
        if (ec) return false; // dangling: a write would create its target wherever it points
        const fs::path folder = ResolvedFolder(ec);
        if (ec || target.parent_path() != folder) return false;
    }
    Path = path;
    return true;
}

bool DeleteBoardFile(const std::string& Path) {
    std::error_code ec;
    const fs::file_status status = fs::symlink_status(Path, ec);
    if (ec || !fs::exists(status) || fs::is_directory(status)) return false;
    return fs::remove(Path, ec) && !ec;
}
