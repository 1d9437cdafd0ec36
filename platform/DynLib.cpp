#include "platform/DynLib.h"

#include "platform/Process.h"

#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <link.h>
#include <sys/stat.h>

namespace {

thread_local int32_t tLastError = 0;
thread_local std::string tLastErrorText;

void SetLastError(int32_t code, std::string text) {
    tLastError = code;
    tLastErrorText = std::move(text);
}

bool EndsWithNoCase(const std::string& s, const char* suffix) {
    const size_t n = std::strlen(suffix);
    return s.size() >= n && ::strcasecmp(s.c_str() + s.size() - n, suffix) == 0;
}

// The name with the platform's ending: ".dll" replaced, a missing extension added.
std::string MapExtension(const std::string& name) {
    if (EndsWithNoCase(name, ".dll")) return name.substr(0, name.size() - 4) + ".so";
    const size_t slash = name.rfind('/');
    const std::string base = slash == std::string::npos ? name : name.substr(slash + 1);
    const size_t dot = base.rfind('.');
    const bool hasExt = dot != std::string::npos && dot > 0 && dot + 1 < base.size();
    return hasExt ? name : name + ".so";
}

bool FileThere(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && !S_ISDIR(st.st_mode);
}

std::string DlErrorText() {
    const char* e = ::dlerror();
    return e ? std::string(e) : std::string();
}

} // namespace

std::vector<std::string> LibraryCandidates(const std::string& name) {
    const std::string mapped = MapExtension(name);
    if (mapped.find('/') != std::string::npos) return {mapped};
    const std::string exe = ExecutableFolder();
    return {exe + mapped, exe + "plugins/" + mapped, mapped};
}

TLibHandle PvLoadLib(const std::string& name) {
    if (name.empty()) {
        SetLastError(ENOENT, SysErrorMessage(ENOENT));
        return nullptr;
    }
    const std::vector<std::string> candidates = LibraryCandidates(name);
    const bool searched = candidates.size() > 1;
    for (size_t i = 0; i < candidates.size(); ++i) {
        const std::string& path = candidates[i];
        const bool systemSearch = searched && i + 1 == candidates.size();
        if (!systemSearch && !FileThere(path)) continue;
        ::dlerror();
        // The last candidate of a bare name has no folder, so dlopen searches the system's own paths.
        if (void* h = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
            SetLastError(0, std::string());
            return h;
        }
        std::string text = DlErrorText();
        // The system loader says "cannot open shared object file: No such file or directory" when it found
        // nothing; anything else means it found a file it could not use.
        const bool notFound = systemSearch && (text.find(std::strerror(ENOENT)) != std::string::npos);
        SetLastError(notFound ? ENOENT : ENOEXEC, text.empty() ? SysErrorMessage(ENOEXEC) : text);
        return nullptr;
    }
    SetLastError(ENOENT, candidates.front() + ": " + SysErrorMessage(ENOENT));
    return nullptr;
}

void* GetProcAddress(TLibHandle library, const std::string& name) {
    if (!library) {
        SetLastError(EINVAL, SysErrorMessage(EINVAL));
        return nullptr;
    }
    ::dlerror();
    void* p = ::dlsym(library, name.c_str());
    if (!p) {
        const std::string text = DlErrorText();
        SetLastError(ENOENT, text.empty() ? name + ": " + SysErrorMessage(ENOENT) : text);
        return nullptr;
    }
    SetLastError(0, std::string());
    return p;
}

std::string LibraryFileName(TLibHandle library) {
    if (!library) return std::string();
    // dlinfo's link map names the file behind this very handle, even when the same name could resolve
    // to another file now.
    struct link_map* map = nullptr;
    if (::dlinfo(library, RTLD_DI_LINKMAP, &map) != 0 || !map || !map->l_name) {
        ::dlerror(); // the caller's last error stays as it was
        return std::string();
    }
    return map->l_name;
}

bool FreeLibrary(TLibHandle library) {
    if (!library) {
        SetLastError(EINVAL, SysErrorMessage(EINVAL));
        return false;
    }
    ::dlerror();
    if (::dlclose(library) != 0) {
        const std::string text = DlErrorText();
        SetLastError(EINVAL, text.empty() ? SysErrorMessage(EINVAL) : text);
        return false;
    }
    SetLastError(0, std::string());
    return true;
}

int32_t GetLastError() {
    return tLastError;
}

std::string GetLastErrorText() {
    return tLastErrorText.empty() ? SysErrorMessage(tLastError) : tLastErrorText;
}

std::string SysErrorMessage(int32_t code) {
    char buf[256];
    // GNU strerror_r returns the text (possibly a static string), never fails.
    const char* text = ::strerror_r(static_cast<int>(code), buf, sizeof(buf));
    return text && *text ? std::string(text) : "Unknown error " + std::to_string(code);
}
