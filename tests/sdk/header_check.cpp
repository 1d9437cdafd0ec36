// Includes the adapter kit header as C++20 and defines one entry point with its declared type.
#include "znb_adapter.h"

extern "C" ZNA_EXPORT int32_t ZNA_CALL ZNA_Delete_Note(const char* adpt_id, int32_t adpt_id_size,
                                                       const char* code, int32_t code_size) {
    return adpt_id != nullptr && code != nullptr && adpt_id_size > 0 && code_size > 0
               ? ZNA_OK
               : ZNA_ERR_NOTICE_NOT_FOUND;
}

int main() {
    ZNA_Delete_Note_Fn del = &ZNA_Delete_Note;
    ZNA_Notice_Callback callback = nullptr;
    static_cast<void>(callback);
    return del("DEMO", 5, "X", 2) == ZNA_OK && del(nullptr, 0, "X", 2) == ZNA_ERR_NOTICE_NOT_FOUND ? 0 : 1;
}
