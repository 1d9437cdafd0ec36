#include "reports/Uxmlprintdll_interface.h"

#include "platform/DynLib.h"
#include "support/Exception.h"
#include "xmlreporting.h"

#include <algorithm>
#include <cstring>

namespace {

// The library stays loaded exactly as long as this lives.
class TLoadedLibrary {
public:
    explicit TLoadedLibrary(TLibHandle Handle) : FHandle(Handle) {}
    ~TLoadedLibrary() { FreeLibrary(FHandle); }
    TLoadedLibrary(const TLoadedLibrary&) = delete;
    TLoadedLibrary& operator=(const TLoadedLibrary&) = delete;
    TLibHandle Handle() const { return FHandle; }

private:
    TLibHandle FHandle;
};

// One length byte, then at most 255 bytes of the text.
struct TShortString {
    explicit TShortString(const std::string& Text) {
        const size_t length = std::min<size_t>(Text.size(), 255);
        Bytes[0] = static_cast<unsigned char>(length);
        std::memcpy(Bytes + 1, Text.data(), length);
    }
    NBR_ShortString Bytes = {};
};

} // namespace

void launchReport(const std::string& LibraryName, const std::string& XmlText, const std::string& Text3,
                  const std::string& Text4, const std::string& Text5) {
    if (LibraryName.empty()) return;
    const TLibHandle handle = PvLoadLib(LibraryName);
    if (!handle) throw Exception("Unable to Load DLL" + LibraryName);
    const TLoadedLibrary library(handle);
    const auto print =
        reinterpret_cast<NBR_printFromXML_Fn>(GetProcAddress(library.Handle(), "printFromXML"));
    if (!print) throw Exception(GetLastErrorText());
    const TShortString text3(Text3), text4(Text4), text5(Text5);
    print(XmlText.c_str(), text3.Bytes, text4.Bytes, text5.Bytes);
}
