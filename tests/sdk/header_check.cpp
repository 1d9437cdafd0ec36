// Includes the kit headers as C++20 and defines one entry point of each with its declared type.
#include "xmlreporting.h"
#include "znb_adapter.h"

extern "C" ZNA_EXPORT int32_t ZNA_CALL ZNA_Delete_Note(const char* adpt_id, int32_t adpt_id_size,
                                                       const char* code, int32_t code_size) {
    return adpt_id != nullptr && code != nullptr && adpt_id_size > 0 && code_size > 0
               ? ZNA_OK
               : ZNA_ERR_NOTICE_NOT_FOUND;
}

extern "C" NBR_EXPORT int32_t NBR_CALL printFromXML(const char* xml_text, const unsigned char* text3,
                                                    const unsigned char* text4, const unsigned char* text5) {
    return xml_text != nullptr && text3 != nullptr && text4 != nullptr && text5 != nullptr ? NBR_OK
                                                                                           : NBR_ERR_ARGUMENT;
}

int main() {
    ZNA_Delete_Note_Fn del = &ZNA_Delete_Note;
    ZNA_Notice_Callback callback = nullptr;
    static_cast<void>(callback);
    NBR_printFromXML_Fn print = &printFromXML;
    const NBR_ShortString empty = {};
    return del("DEMO", 5, "X", 2) == ZNA_OK && del(nullptr, 0, "X", 2) == ZNA_ERR_NOTICE_NOT_FOUND &&
                   print("<report/>", empty, empty, empty) == NBR_OK &&
                   print(nullptr, empty, empty, empty) == NBR_ERR_ARGUMENT
               ? 0
               : 1;
}
