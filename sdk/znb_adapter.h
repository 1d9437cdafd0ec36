/* The notice board adapter kit: the binary contract between the notice board and an adapter library.
 *
 * An adapter is a shared library that exports the seven entry points below under their plain C names.
 * The board loads it, looks the seven names up, connects it with the notice callback, polls its status and
 * passes acknowledgements and deletions back to it; the adapter pushes notices to the board as XML text
 * through the callback. Plain C (C11 and C++); every integer is 32 bits, every text a NUL-terminated
 * 8-bit buffer together with a size that counts the terminating NUL (text length + 1).
 *
 * Threads: the board calls every entry point from its own (user-interface) thread, one call at a time.
 * The adapter may call the notice callback from any thread (see ZNA_Notice_Callback).
 *
 * Order of calls over an adapter's life:
 *   load -> ZNA_Connect -> any number of ZNA_Status, ZNA_Set_Config, ZNA_Acknowledge_Note, ZNA_Delete_Note
 *   -> ZNA_Disconnect (possibly twice in a row) -> unload.
 * ZNA_Set_Config and ZNA_Status may also come before ZNA_Connect; an adapter that was never connected
 * still gets ZNA_Disconnect before it is unloaded. */
#ifndef ZNB_ADAPTER_H
#define ZNB_ADAPTER_H

#include <stdint.h>

/* The calling convention of every entry point and of the callback: stdcall on 32-bit Windows. */
#if defined(_WIN32) && !defined(_WIN64)
#define ZNA_CALL __stdcall
#else
#define ZNA_CALL
#endif

/* Put in front of each entry point an adapter defines, so that it is exported from the library. */
#if defined(_WIN32)
#define ZNA_EXPORT __declspec(dllexport)
#else
#define ZNA_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Status codes. Every entry point returns one; 0 is success. 40xxx are shared by the board and adapters,
 * 40100-40199 belong to the Duskmere adapter, 41xxx to the R/Vista adapter, 43xxx to library loading,
 * 44xxx to object creation and conversion, 47xxx to an adapter's pipe transport. An adapter may return
 * other codes; the board shows the system's text for them. */
enum {
    ZNA_OK = 0,
    ZNA_ERR_ADD_ENTRY_NOT_DEFINED = 40002, /* add notice board entry not defined (Duskmere server) */
    ZNA_ERR_BOARD_BUSY = 40003,            /* main notice board process busy */
    ZNA_ERR_NOTICE_NOT_FOUND = 40004,      /* notice to acknowledge not found */
    ZNA_ERR_SAVE_CONFIG = 40005,           /* configuration could not be saved to the ini file */
    ZNA_ERR_SET_CONFIG = 40008,            /* error setting configuration details */
    ZNA_ERR_DUSKMERE_BUSY = 40105,
    ZNA_ERR_DUSKMERE_GET_NAMES = 40106,
    ZNA_ERR_DUSKMERE_SHUT_DOWN = 40107,
    ZNA_ERR_DUSKMERE_GET_AGENTS = 40108,
    ZNA_ERR_RVISTA_NO_CONNECTIONS = 41003,
    ZNA_ERR_RVISTA_BUSY = 41004,
    ZNA_ERR_RVISTA_EMPTY_ENTRY = 41008,
    ZNA_ERR_FUNCTION_MISSING = 43000, /* load: one or more entry points missing */
    ZNA_ERR_GET_INFO_MISSING = 43001, /* load: only ZNA_Get_Info missing */
    ZNA_ERR_CREATE_OBJECT = 44000,
    ZNA_ERR_CREATE_SESSION_LIST = 44001,
    ZNA_ERR_STR_TO_INT = 44002,
    ZNA_ERR_PIPE_NOT_OPEN = 47000,
    ZNA_ERR_PIPE_WRITE = 47001,
    ZNA_ERR_LIST_READ = 47002,
    ZNA_ERR_LIST_ADD = 47003,
    ZNA_ERR_NOTICE_FAILED = 53244 /* returned by the callback when a message could not be processed */
};

/* Connection states reported by ZNA_Status. */
enum {
    ZNA_STATE_ALL_FAILED = 0,  /* all connections failed (or not connected) */
    ZNA_STATE_SOME_FAILED = 1, /* one or more connections failed */
    ZNA_STATE_ALL_OK = 2       /* all connections OK */
};

/* The board's start-up mutex "PV_NoticeBoard_Mutex": a sem_t* on POSIX (named semaphore
 * "/PV_NoticeBoard_Mutex.<uid>", one per user as a session's mutex is, 1 = free), a HANDLE on Windows. Owned by the board; valid from ZNA_Connect
 * until ZNA_Disconnect returns. An adapter that wants to serialise with the board's start-up waits on it
 * and posts (releases) it again at once; it never closes it. */
typedef void* ZNA_Mutex;

/* The board's notice callback, handed to the adapter by ZNA_Connect.
 *   reserved1, reserved2: ignored by the board; pass 0.
 *   xml_text: the address of a variable that holds a pointer to the NUL-terminated XML text of one notice
 *             message. Owned by the adapter; read during the call only (the board copies the text).
 * Result: 0 when the message was taken; 53244 when processing it failed (the board has logged why).
 * Thread: any. A call from the board's own thread is processed before it returns; a call from any other
 * thread is copied, queued for the board's thread (processed there in arrival order) and returns 0 at once.
 * Valid from ZNA_Connect until ZNA_Disconnect returns: no call may start after that. */
typedef int32_t(ZNA_CALL* ZNA_Notice_Callback)(intptr_t reserved1, const char* const* xml_text,
                                               intptr_t reserved2);

/* ZNA_Get_Info: looked up when the library is loaded but never called by the board; its arguments and
 * result are the adapter's own. It must be exported all the same (a library without it loads with code
 * 43001 and is disabled). */
typedef int32_t(ZNA_CALL* ZNA_Get_Info_Fn)(void);

/* ZNA_Set_Config: the user pressed "configure" for this adapter in the configuration dialog; the adapter
 * may show its own modal configuration dialog.
 *   owner_window: the board's main window (a native window id), for parenting that dialog; may be 0.
 *   adapter_name: the adapter's configured name. folder / folder_size: the notice board folder with a
 *   trailing separator. config / config_size: a further configuration text, passed empty ("" and 1).
 * All texts are owned by the board and stay valid until the adapter is unloaded.
 * Thread: the board's. Result: 0 when the configuration was accepted. May come before ZNA_Connect. */
typedef int32_t(ZNA_CALL* ZNA_Set_Config_Fn)(intptr_t owner_window, const char* adapter_name,
                                             const char* folder, int32_t folder_size, const char* config,
                                             int32_t config_size);

/* ZNA_Connect: start delivering notices.
 *   folder / folder_size: the notice board folder with a trailing separator; owned by the board, valid
 *   until the adapter is unloaded (the adapter may keep the pointer for the life of the connection).
 *   mutex: the board's start-up mutex (see ZNA_Mutex). callback: where to send notice messages.
 * Thread: the board's, once per start-up. Result: 0 when connected; otherwise the board logs the code
 * and treats the adapter as failed (it is still disconnected and unloaded on close). */
typedef int32_t(ZNA_CALL* ZNA_Connect_Fn)(const char* folder, int32_t folder_size, ZNA_Mutex mutex,
                                          ZNA_Notice_Callback callback);

/* ZNA_Disconnect: stop delivering notices; when it returns, no thread of the adapter may call the
 * callback any more. Called when the board closes, possibly twice in a row, and also for an adapter that
 * never connected: it must be harmless then. Thread: the board's. Result: 0 on success; a failure is
 * noted and the library is unloaded all the same. */
typedef int32_t(ZNA_CALL* ZNA_Disconnect_Fn)(void);

/* ZNA_Status: report the connection state.
 *   state: receives ZNA_STATE_ALL_FAILED, ZNA_STATE_SOME_FAILED or ZNA_STATE_ALL_OK; owned by the board.
 *   info: a buffer for a free-text report, or NULL (the periodic status poll passes NULL and a size of 0);
 *   info_size: holds the buffer's size in bytes. The adapter writes at most that many bytes including the
 *   NUL. Both are owned by the board and valid during the call only.
 * Thread: the board's (every 30 s, and from the configuration dialog). Result: 0 when state was set; on
 * any other result the board ignores state. */
typedef int32_t(ZNA_CALL* ZNA_Status_Fn)(int32_t* state, char* info, int32_t* info_size);

/* ZNA_Acknowledge_Note / ZNA_Delete_Note: the user acknowledged or deleted a notice of this adapter.
 *   adpt_id / adpt_id_size: the notice's adpt_id; code / code_size: its ack_code (acknowledge) or
 *   del_code (delete), both exactly as the adapter sent them (not trimmed).
 * Texts are owned by the board and stay valid until the adapter is unloaded. The board does not change
 * the notice itself: the adapter answers, when it sees fit, with a notice message ("update" with an
 * ack_date, or "delete"). Thread: the board's. Result: ignored by the board. */
typedef int32_t(ZNA_CALL* ZNA_Acknowledge_Note_Fn)(const char* adpt_id, int32_t adpt_id_size,
                                                   const char* code, int32_t code_size);
typedef int32_t(ZNA_CALL* ZNA_Delete_Note_Fn)(const char* adpt_id, int32_t adpt_id_size, const char* code,
                                              int32_t code_size);

/* The entry points an adapter defines (each with ZNA_EXPORT). The board never throws into them and they
 * must never let an exception or a longjmp out. */
ZNA_EXPORT int32_t ZNA_CALL ZNA_Get_Info(void);
ZNA_EXPORT int32_t ZNA_CALL ZNA_Set_Config(intptr_t owner_window, const char* adapter_name,
                                           const char* folder, int32_t folder_size, const char* config,
                                           int32_t config_size);
ZNA_EXPORT int32_t ZNA_CALL ZNA_Connect(const char* folder, int32_t folder_size, ZNA_Mutex mutex,
                                        ZNA_Notice_Callback callback);
ZNA_EXPORT int32_t ZNA_CALL ZNA_Disconnect(void);
ZNA_EXPORT int32_t ZNA_CALL ZNA_Status(int32_t* state, char* info, int32_t* info_size);
ZNA_EXPORT int32_t ZNA_CALL ZNA_Acknowledge_Note(const char* adpt_id, int32_t adpt_id_size, const char* code,
                                                 int32_t code_size);
ZNA_EXPORT int32_t ZNA_CALL ZNA_Delete_Note(const char* adpt_id, int32_t adpt_id_size, const char* code,
                                            int32_t code_size);

#ifdef __cplusplus
}
#endif

#endif /* ZNB_ADAPTER_H */
