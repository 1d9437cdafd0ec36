// An adapter for the tests. It records every call with its arguments, one line per call, and exposes that
// record and the stored callback through four extra exports that tests look up themselves:
//   const char* ZNBA_Test_Calls()             all lines so far, each ending in "\n"
//   void        ZNBA_Test_Reset()             forget the lines and the mutex, report state 2 again
//   int32_t     ZNBA_Test_Send(const char*)   hand an XML text to the stored callback (caller's thread)
//   void        ZNBA_Test_SetState(int32_t)   the state ZNA_Status reports (default 2)
// The first disconnect after a connect records the value of the board's start-up mutex, so a board that
// closed the mutex before disconnecting its adapters is caught.
// Compile-time switches turn it into the faulty variants the loader, the start-up and the configuration
// dialog must cope with (one throws from every entry point, one returns codes and states outside the
// contract).
#include "znb_adapter.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <mutex>
#include <semaphore.h>
#include <stdexcept>
#include <string>

namespace {

std::mutex gLock;
std::string gCalls;
ZNA_Notice_Callback gCallback = nullptr;
ZNA_Mutex gMutex = nullptr; // the board's start-up mutex from the last connect, until the next disconnect
int32_t gState = ZNA_STATE_ALL_OK;

void Record(const std::string& line) {
    std::lock_guard<std::mutex> lock(gLock);
    gCalls += line + "\n";
}

std::string Text(const char* p, int32_t size) {
    return (p ? std::string(p) : std::string("(null)")) + "/" + std::to_string(size);
}

void MaybeThrow(const char* entry) {
#ifdef ZNBA_TEST_THROWS
    throw std::runtime_error(std::string(entry) + " failed on purpose");
#else
    (void)entry;
#endif
}

// What an entry point returns: its normal result, or in the garbage variant a code no adapter should
// return, a different one at every call.
int32_t Code(int32_t normal) {
#ifdef ZNBA_TEST_GARBAGE
    static const int32_t codes[] = {
        INT32_MIN, -1, INT32_MAX, ZNA_ERR_NOTICE_FAILED, ZNA_ERR_GET_INFO_MISSING, 12345, -40003};
    static std::atomic<size_t> next{0};
    (void)normal;
    return codes[next++ % (sizeof codes / sizeof codes[0])];
#else
    return normal;
#endif
}

} // namespace

extern "C" {

#ifndef ZNBA_TEST_OMIT_GET_INFO
ZNA_EXPORT int32_t ZNA_CALL ZNA_Get_Info(void) {
    Record("Get_Info");
    MaybeThrow("ZNA_Get_Info");
    return Code(ZNA_OK);
}
#endif

#ifndef ZNBA_TEST_OMIT_SET_CONFIG
ZNA_EXPORT int32_t ZNA_CALL ZNA_Set_Config(intptr_t owner_window, const char* adapter_name,
                                           const char* folder, int32_t folder_size, const char* config,
                                           int32_t config_size) {
    Record("Set_Config " + std::to_string(owner_window) + " " + Text(adapter_name, 0) + " " +
           Text(folder, folder_size) + " " + Text(config, config_size));
    MaybeThrow("ZNA_Set_Config");
#ifdef ZNBA_TEST_SET_CONFIG_RESULT
    return ZNBA_TEST_SET_CONFIG_RESULT;
#else
    return Code(ZNA_OK);
#endif
}
#endif

ZNA_EXPORT int32_t ZNA_CALL ZNA_Connect(const char* folder, int32_t folder_size, ZNA_Mutex mutex,
                                        ZNA_Notice_Callback callback) {
    Record("Connect " + Text(folder, folder_size) + (mutex ? " mutex" : " nomutex") +
           (callback ? " callback" : " nocallback"));
    MaybeThrow("ZNA_Connect");
    std::lock_guard<std::mutex> lock(gLock);
    gCallback = callback;
    gMutex = mutex;
#ifdef ZNBA_TEST_CONNECT_RESULT
    return ZNBA_TEST_CONNECT_RESULT;
#else
    return Code(ZNA_OK);
#endif
}

ZNA_EXPORT int32_t ZNA_CALL ZNA_Disconnect(void) {
    // The first disconnect after a connect reads the board's mutex, which must still be open (and free).
    ZNA_Mutex mutex;
    {
        std::lock_guard<std::mutex> lock(gLock);
        mutex = gMutex;
        gMutex = nullptr;
    }
    int value = -1;
    if (mutex) ::sem_getvalue(static_cast<sem_t*>(mutex), &value);
    Record(mutex ? "Disconnect mutex " + std::to_string(value) : std::string("Disconnect"));
    MaybeThrow("ZNA_Disconnect");
    std::lock_guard<std::mutex> lock(gLock);
    gCallback = nullptr;
#ifdef ZNBA_TEST_DISCONNECT_RESULT
    return ZNBA_TEST_DISCONNECT_RESULT;
#else
    return Code(ZNA_OK);
#endif
}

#ifndef ZNBA_TEST_OMIT_STATUS
ZNA_EXPORT int32_t ZNA_CALL ZNA_Status(int32_t* state, char* info, int32_t* info_size) {
    Record(std::string("Status ") + (info ? "buffer/" : "(null)/") +
           std::to_string(info_size ? *info_size : -1));
    MaybeThrow("ZNA_Status");
#ifdef ZNBA_TEST_GARBAGE_STATUS
    // Nonsense on purpose: a state outside 0..2 and an undocumented result code that changes every call.
    static int32_t calls = 0;
    *state = 77;
    return 12345 + calls++;
#elif defined(ZNBA_TEST_GARBAGE)
    // States outside 0..2 with a success code, then with garbage codes; the size is scribbled over.
    static const int32_t states[] = {INT32_MIN, -7, 3, INT32_MAX};
    static std::atomic<size_t> calls{0};
    const size_t call = calls++;
    *state = states[call % 4];
    if (info_size) *info_size = -123;
    return call % 2 ? Code(ZNA_OK) : ZNA_OK;
#elif defined(ZNBA_TEST_STATUS_OVERFLOW)
    // Every byte of the buffer used and no NUL written, and a size claimed that is twice the buffer's.
    *state = gState;
    if (info && info_size && *info_size > 0) {
        for (int32_t i = 0; i < *info_size; ++i)
            info[i] = static_cast<char>('A' + i % 26);
        *info_size *= 2;
    }
    return ZNA_OK;
#else
    *state = gState;
    if (info && info_size && *info_size > 0) {
        const std::string text = "Test adapter: state " + std::to_string(gState);
        const size_t n = std::min(text.size(), static_cast<size_t>(*info_size - 1));
        text.copy(info, n);
        info[n] = '\0';
    }
    return ZNA_OK;
#endif
}
#endif

ZNA_EXPORT int32_t ZNA_CALL ZNA_Acknowledge_Note(const char* adpt_id, int32_t adpt_id_size, const char* code,
                                                 int32_t code_size) {
    Record("Acknowledge_Note " + Text(adpt_id, adpt_id_size) + " " + Text(code, code_size));
    MaybeThrow("ZNA_Acknowledge_Note");
    return Code(ZNA_OK);
}

#ifndef ZNBA_TEST_OMIT_DELETE
ZNA_EXPORT int32_t ZNA_CALL ZNA_Delete_Note(const char* adpt_id, int32_t adpt_id_size, const char* code,
                                            int32_t code_size) {
    Record("Delete_Note " + Text(adpt_id, adpt_id_size) + " " + Text(code, code_size));
    MaybeThrow("ZNA_Delete_Note");
    return Code(ZNA_OK);
}
#endif

ZNA_EXPORT const char* ZNBA_Test_Calls(void) {
    // Not thread_local: a library with thread-local destructors can never be unloaded, and the tests rely
    // on a fresh state after each unload.
    static std::string copy;
    std::lock_guard<std::mutex> lock(gLock);
    copy = gCalls;
    return copy.c_str();
}

ZNA_EXPORT void ZNBA_Test_Reset(void) {
    std::lock_guard<std::mutex> lock(gLock);
    gCalls.clear();
    gMutex = nullptr;
    gState = ZNA_STATE_ALL_OK;
}

ZNA_EXPORT int32_t ZNBA_Test_Send(const char* xml) {
    ZNA_Notice_Callback callback;
    {
        std::lock_guard<std::mutex> lock(gLock);
        callback = gCallback;
    }
    if (!callback) return -1;
    return callback(0, &xml, 0);
}

ZNA_EXPORT void ZNBA_Test_SetState(int32_t state) {
    gState = state;
}

} // extern "C"
