// The demo adapter's entry points. Connecting starts one worker thread that posts a NoticeList every
// interval (the first at once) and sends the answers to acknowledgements and deletions; disconnecting
// stops and joins it. The worker calls the board's callback itself: the board queues such calls for its
// own thread, so nothing here ever waits for the board.
//
// Settings (environment, read at connect):
//   ZNBA_DEMO_INTERVAL_MS  milliseconds between two simulation steps (default 4000, at least 10)
//   ZNBA_DEMO_SEED         seed of the simulation, for repeatable runs (default: from the clock)
//   ZNBA_DEMO_SOURCE_TYPE  adpt_source_type of the notices (default "demo"); "R/Vista" makes the demo play
//                          that product, whose notices the board lets the user acknowledge
#include "DemoEstate.h"
#include "znb_adapter.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <ctime>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace {

struct TDemoAdapter {
    std::mutex Lock;
    std::condition_variable Wake;
    bool Stop = false;
    bool Connected = false;
    ZNA_Notice_Callback Callback = nullptr;
    std::chrono::milliseconds Interval{4000};
    std::unique_ptr<TDemoEstate> Estate;
    std::deque<std::string> Replies; // answers waiting to be sent, in order
    std::thread Worker;

    // A host that unloads the library without disconnecting still gets a clean stop.
    ~TDemoAdapter() {
        if (!Worker.joinable()) return;
        {
            std::lock_guard<std::mutex> lock(Lock);
            Stop = true;
        }
        Wake.notify_all();
        Worker.join();
    }
};

TDemoAdapter gDemo;

long EnvNumber(const char* name, long fallback) {
    const char* v = std::getenv(name);
    if (!v || !*v) return fallback;
    char* end = nullptr;
    const long n = std::strtol(v, &end, 10);
    return end && *end == '\0' ? n : fallback;
}

void Send(ZNA_Notice_Callback callback, const std::string& xml) {
    const char* text = xml.c_str();
    callback(0, &text, 0);
}

void WorkerLoop() {
    std::unique_lock<std::mutex> lock(gDemo.Lock);
    auto nextTick = std::chrono::steady_clock::now();
    while (!gDemo.Stop) {
        std::deque<std::string> out;
        out.swap(gDemo.Replies);
        if (std::chrono::steady_clock::now() >= nextTick) {
            out.push_back(gDemo.Estate->Tick());
            nextTick = std::chrono::steady_clock::now() + gDemo.Interval;
        }
        const ZNA_Notice_Callback callback = gDemo.Callback;
        lock.unlock();
        for (const std::string& xml : out)
            Send(callback, xml);
        lock.lock();
        gDemo.Wake.wait_until(lock, nextTick, [] { return gDemo.Stop || !gDemo.Replies.empty(); });
    }
}

void CopyInfo(const std::string& text, char* info, const int32_t* info_size) {
    if (!info || !info_size || *info_size <= 0) return;
    const size_t n = std::min(text.size(), static_cast<size_t>(*info_size - 1));
    text.copy(info, n);
    info[n] = '\0';
}

int32_t QueueReply(std::string (TDemoEstate::*answer)(const std::string&), const char* code) {
    std::lock_guard<std::mutex> lock(gDemo.Lock);
    if (!gDemo.Estate || !code) return ZNA_ERR_NOTICE_NOT_FOUND;
    std::string reply = ((*gDemo.Estate).*answer)(code);
    if (reply.empty()) return ZNA_ERR_NOTICE_NOT_FOUND;
    if (gDemo.Connected) gDemo.Replies.push_back(std::move(reply));
    gDemo.Wake.notify_one();
    return ZNA_OK;
}

} // namespace

extern "C" {

ZNA_EXPORT int32_t ZNA_CALL ZNA_Get_Info(void) {
    return ZNA_OK;
}

ZNA_EXPORT int32_t ZNA_CALL ZNA_Set_Config(intptr_t, const char*, const char*, int32_t, const char*,
                                           int32_t) {
    return ZNA_OK; // nothing to configure: the demo is set up through its environment
}

ZNA_EXPORT int32_t ZNA_CALL ZNA_Connect(const char*, int32_t, ZNA_Mutex, ZNA_Notice_Callback callback) {
    if (!callback) return ZNA_ERR_SET_CONFIG;
    std::lock_guard<std::mutex> lock(gDemo.Lock);
    if (gDemo.Connected) return ZNA_OK;
    gDemo.Interval = std::chrono::milliseconds(std::max(10L, EnvNumber("ZNBA_DEMO_INTERVAL_MS", 4000)));
    const long seed = EnvNumber("ZNBA_DEMO_SEED", static_cast<long>(std::time(nullptr)));
    const char* sourceType = std::getenv("ZNBA_DEMO_SOURCE_TYPE");
    gDemo.Estate = std::make_unique<TDemoEstate>(static_cast<uint32_t>(seed),
                                                 sourceType && *sourceType ? sourceType : "demo");
    gDemo.Callback = callback;
    gDemo.Stop = false;
    gDemo.Replies.clear();
    gDemo.Connected = true;
    try {
        gDemo.Worker = std::thread(WorkerLoop);
    } catch (...) {
        gDemo.Connected = false;
        return ZNA_ERR_CREATE_OBJECT;
    }
    return ZNA_OK;
}

ZNA_EXPORT int32_t ZNA_CALL ZNA_Disconnect(void) {
    {
        std::lock_guard<std::mutex> lock(gDemo.Lock);
        gDemo.Stop = true;
        gDemo.Connected = false;
    }
    gDemo.Wake.notify_all();
    if (gDemo.Worker.joinable() && gDemo.Worker.get_id() != std::this_thread::get_id()) gDemo.Worker.join();
    std::lock_guard<std::mutex> lock(gDemo.Lock);
    gDemo.Callback = nullptr;
    return ZNA_OK;
}

ZNA_EXPORT int32_t ZNA_CALL ZNA_Status(int32_t* state, char* info, int32_t* info_size) {
    if (!state) return ZNA_ERR_SET_CONFIG;
    std::lock_guard<std::mutex> lock(gDemo.Lock);
    *state = gDemo.Connected ? ZNA_STATE_ALL_OK : ZNA_STATE_ALL_FAILED;
    std::string text = gDemo.Connected ? "Demo adapter: connected, a step every " +
                                             std::to_string(gDemo.Interval.count()) + " ms"
                                       : std::string("Demo adapter: not connected");
    if (gDemo.Estate)
        text += "; " + std::to_string(gDemo.Estate->Raised()) + " notices raised, " +
                std::to_string(gDemo.Estate->Live()) + " live";
    CopyInfo(text, info, info_size);
    return ZNA_OK;
}

ZNA_EXPORT int32_t ZNA_CALL ZNA_Acknowledge_Note(const char*, int32_t, const char* code, int32_t) {
    return QueueReply(&TDemoEstate::Acknowledge, code);
}

ZNA_EXPORT int32_t ZNA_CALL ZNA_Delete_Note(const char*, int32_t, const char* code, int32_t) {
    return QueueReply(&TDemoEstate::Delete, code);
}

} // extern "C"
