// Adapters for the tests that post from a thread of their own and break the kit's rules on purpose.
//   ZNBA_TEST_LATE_POSTS   posts one small notice per millisecond from connect on; ZNA_Disconnect lets
//                          the thread go on posting (it waits until a few posts happened during the call)
//                          and returns without stopping it, so calls arrive after the board let go of the
//                          adapter and, later, after the board itself is gone. The thread ends when
//                          ZNBA_Test_Stop is called (or after a minute). The library pins itself in memory
//                          at connect, so the thread's code outlives the board's unload.
//   ZNBA_TEST_BIG_MESSAGES posts three messages of more than 10 MB each from its thread after connect: one
//                          notice with a 10 MB text, a list of 40 000 notices, and an update that replaces
//                          the big text; the thread is joined at disconnect.
// Extra exports the tests look up themselves:
//   int32_t ZNBA_Test_Posted(int32_t which)  posts so far: 0 all, 1 during ZNA_Disconnect, 2 after it,
//                                            3 the callback's refusals (nonzero results)
//   void    ZNBA_Test_Stop(void)             ends the thread and waits for it
#include "znb_adapter.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <dlfcn.h>
#include <mutex>
#include <string>
#include <thread>

namespace {

std::mutex gLock;
std::condition_variable gChanged;
ZNA_Notice_Callback gCallback = nullptr;
std::thread gThread;
std::atomic<bool> gStop{false};
enum class TPhase { Connected, Disconnecting, Disconnected } gPhase = TPhase::Connected;
std::atomic<int32_t> gPosted[4];

void Post(const std::string& xml) {
    ZNA_Notice_Callback callback;
    TPhase phase;
    {
        std::lock_guard<std::mutex> lock(gLock);
        callback = gCallback;
        phase = gPhase;
    }
    if (!callback) return;
    const char* text = xml.c_str();
    const int32_t rc = callback(0, &text, 0);
    ++gPosted[0];
    if (phase == TPhase::Disconnecting) ++gPosted[1];
    if (phase == TPhase::Disconnected) ++gPosted[2];
    if (rc != ZNA_OK) ++gPosted[3];
    gChanged.notify_all();
}

std::string Notice(const std::string& command, const std::string& key, const std::string& text) {
    return "<Notice><Command>" + command + "</Command><adpt_id>late</adpt_id><adpt_orig_key>" + key +
           "</adpt_orig_key><adpt_source_type>late</adpt_source_type><note_severity>2</note_severity>"
           "<note_text>" +
           text + "</note_text></Notice>";
}

std::string Message(const std::string& notices) {
    return "<Msg><NoticeList>" + notices + "</NoticeList></Msg>";
}

#ifdef ZNBA_TEST_LATE_POSTS
void Run() {
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    for (int n = 0; !gStop && std::chrono::steady_clock::now() < giveUp; ++n) {
        Post(Message(Notice("post", "late/" + std::to_string(n % 500), "post " + std::to_string(n))));
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

// Keeps this library mapped after the board unloads it: the thread runs on.
void Pin() {
    Dl_info info;
    if (::dladdr(reinterpret_cast<void*>(&Pin), &info) && info.dli_fname)
        ::dlopen(info.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
}
#else
void Run() {
    const std::string big(10 * 1024 * 1024, 'b');
    Post(Message(Notice("post", "big/text", big)));
    std::string many;
    for (int i = 0; i < 40000; ++i)
        many += Notice("post", "big/" + std::to_string(i), std::string(220, static_cast<char>('a' + i % 26)));
    Post(Message(many));
    Post(Message(Notice("update", "big/text", std::string(10 * 1024 * 1024 + 1, 'c'))));
}
#endif

} // namespace

extern "C" {

ZNA_EXPORT int32_t ZNA_CALL ZNA_Get_Info(void) {
    return ZNA_OK;
}

ZNA_EXPORT int32_t ZNA_CALL ZNA_Set_Config(intptr_t, const char*, const char*, int32_t, const char*,
                                           int32_t) {
    return ZNA_OK;
}

ZNA_EXPORT int32_t ZNA_CALL ZNA_Connect(const char*, int32_t, ZNA_Mutex, ZNA_Notice_Callback callback) {
    std::lock_guard<std::mutex> lock(gLock);
    gCallback = callback;
    gPhase = TPhase::Connected;
    if (!gThread.joinable()) {
#ifdef ZNBA_TEST_LATE_POSTS
        Pin();
#endif
        gStop = false;
        gThread = std::thread(Run);
    }
    return ZNA_OK;
}

ZNA_EXPORT int32_t ZNA_CALL ZNA_Disconnect(void) {
#ifdef ZNBA_TEST_LATE_POSTS
    std::unique_lock<std::mutex> lock(gLock);
    if (gPhase != TPhase::Connected) return ZNA_OK; // the second disconnect of an unload
    gPhase = TPhase::Disconnecting;
    const int32_t before = gPosted[1];
    gChanged.wait_for(lock, std::chrono::seconds(5), [&] { return gPosted[1] >= before + 5; });
    gPhase = TPhase::Disconnected; // and the callback is kept: the thread goes on using it
#else
    if (gThread.joinable()) gThread.join();
    std::lock_guard<std::mutex> lock(gLock);
    gCallback = nullptr;
#endif
    return ZNA_OK;
}

ZNA_EXPORT int32_t ZNA_CALL ZNA_Status(int32_t* state, char*, int32_t*) {
    *state = ZNA_STATE_ALL_OK;
    return ZNA_OK;
}

ZNA_EXPORT int32_t ZNA_CALL ZNA_Acknowledge_Note(const char*, int32_t, const char*, int32_t) {
    return ZNA_OK;
}

ZNA_EXPORT int32_t ZNA_CALL ZNA_Delete_Note(const char*, int32_t, const char*, int32_t) {
    return ZNA_OK;
}

ZNA_EXPORT int32_t ZNBA_Test_Posted(int32_t which) {
    return which >= 0 && which < 4 ? gPosted[which].load() : -1;
}

ZNA_EXPORT void ZNBA_Test_Stop(void) {
    gStop = true;
    if (gThread.joinable()) gThread.join();
}

} // extern "C"
