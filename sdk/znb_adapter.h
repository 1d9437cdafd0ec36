/* The notice board adapter kit: the binary contract between the notice board and an adapter library.
 * Plain C (C11 and C++); see the adapter author's section of the README.
 * This first version declares the notice callback; the entry points follow with the adapter loader. */
#ifndef ZNB_ADAPTER_H
#define ZNB_ADAPTER_H

#include <stdint.h>

#if defined(_WIN32) && !defined(_WIN64)
#define ZNA_CALL __stdcall
#else
#define ZNA_CALL
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* The board's notice callback, handed to the adapter by ZNA_Connect.
 *   reserved1, reserved2: ignored by the board; pass 0.
 *   xml_text: the address of a variable that holds a pointer to the NUL-terminated XML text of one notice
 *             message. Owned by the adapter; read during the call only (the board copies the text).
 * Result: 0 when the message was taken; 53244 when processing it failed (the board has logged why).
 * Thread: any. A call from the board's own thread is processed before it returns; a call from any other
 * thread is copied, queued for the board's thread (processed there in arrival order) and returns 0 at once. */
typedef int32_t(ZNA_CALL* ZNA_Notice_Callback)(intptr_t reserved1, const char* const* xml_text,
                                                intptr_t reserved2);

#ifdef __cplusplus
}
#endif

#endif /* ZNB_ADAPTER_H */
