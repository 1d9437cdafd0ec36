/* Includes the adapter kit header as C11 and defines one entry point with its declared type. */
#include "znb_adapter.h"

ZNA_EXPORT int32_t ZNA_CALL ZNA_Status(int32_t* state, char* info, int32_t* info_size) {
    (void)info;
    (void)info_size;
    *state = ZNA_STATE_ALL_OK;
    return ZNA_OK;
}

int main(void) {
    ZNA_Status_Fn status = &ZNA_Status;
    int32_t state = ZNA_STATE_ALL_FAILED;
    int32_t size = 0;
    ZNA_Mutex mutex = 0;
    (void)mutex;
    if (status(&state, 0, &size) != ZNA_OK) return 1;
    return state == ZNA_STATE_ALL_OK && ZNA_ERR_FUNCTION_MISSING == 43000 && ZNA_ERR_NOTICE_FAILED == 53244
               ? 0
               : 1;
}
