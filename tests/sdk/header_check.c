/* Includes the kit headers as C11 and defines one entry point of each with its declared type. */
#include "xmlreporting.h"
#include "znb_adapter.h"

ZNA_EXPORT int32_t ZNA_CALL ZNA_Status(int32_t* state, char* info, int32_t* info_size) {
    (void)info;
    (void)info_size;
    *state = ZNA_STATE_ALL_OK;
    return ZNA_OK;
}

NBR_EXPORT int32_t NBR_CALL printFromXML(const char* xml_text, const unsigned char* text3,
                                         const unsigned char* text4, const unsigned char* text5) {
    (void)text4;
    (void)text5;
    return xml_text && text3 && text3[0] == 0 ? NBR_OK : NBR_ERR_ARGUMENT;
}

int main(void) {
    ZNA_Status_Fn status = &ZNA_Status;
    NBR_printFromXML_Fn print = &printFromXML;
    NBR_ShortString empty = {0};
    int32_t state = ZNA_STATE_ALL_FAILED;
    int32_t size = 0;
    ZNA_Mutex mutex = 0;
    (void)mutex;
    if (status(&state, 0, &size) != ZNA_OK) return 1;
    if (print("<report/>", empty, empty, empty) != NBR_OK || sizeof(NBR_ShortString) != 256) return 1;
    return state == ZNA_STATE_ALL_OK && ZNA_ERR_FUNCTION_MISSING == 43000 && ZNA_ERR_NOTICE_FAILED == 53244
               ? 0
               : 1;
}
