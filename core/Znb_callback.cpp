#include "core/Znb_callback.h"

#include "adapters/ZNB_Cfg.h"
#include "adapters/Znb_log.h"
#include "core/TNoticeBoard.h"
#include "core/Znb_noticetext.h"

#include <deque>
#include <exception>
#include <mutex>
#include <string_view>
#include <thread>

namespace {

TNoticeBoard* TheBoard = nullptr;
std::thread::id BoardThread;

std::mutex QueueLock;
std::deque<std::string> Queue;
// The log of the last board installed. An adapter thread that calls after the board has gone logs there:
// by then the configuration may be gone as well, and only the board's thread may read it.
std::string LogName;
// Held while the wake function runs, so that replacing it waits for a call in progress.
std::mutex WakeLock;
std::function<void()> Wake;

int32_t Apply(std::string_view Text) noexcept {
    try {
        try {
            if (!TheBoard) throw Exception("Access violation: no notice board");
            TheBoard->Process_XML_Notice(Text);
            return 0;
        } catch (const std::exception& e) {
            ZS_Log(NBLogFileName(), "Process NoticeBoard :  Status =" + ExceptionText(e) + std::string(Text));
        }
    } catch (...) {
        // logging itself failed (memory); the adapter still hears of the failure
    }
    return ZNB_NOTICE_FAILED;
}

bool TakeNext(std::string& Text) {
    std::lock_guard<std::mutex> lock(QueueLock);
    if (Queue.empty()) return false;
    Text = std::move(Queue.front());
    Queue.pop_front();
    return true;
}

} // namespace

void SetNoticeBoard(TNoticeBoard* Board) {
    std::lock_guard<std::mutex> lock(QueueLock);
    TheBoard = Board;
    BoardThread = std::this_thread::get_id();
    // Taken on the board's thread, at installation and removal, from the configuration as it is then.
    std::string name = NBLogFileName();
    if (!name.empty()) LogName = std::move(name);
    if (!Board) Queue.clear();
}

TNoticeBoard* NoticeBoard() {
    return TheBoard;
}

void SetNoticeWake(std::function<void()> WakeFunction) {
    std::function<void()> old;
    {
        std::lock_guard<std::mutex> lock(WakeLock);
        old.swap(Wake);
        Wake = std::move(WakeFunction);
    }
    // The old function (and whatever it holds) goes only after no call of it can be running.
}

int32_t ProcessPendingNotices() {
    // A window that pumps events while a message is being applied must not start another one inside it.
    if (TheBoard && TheBoard->Busy()) return 0;
    // Only what is queued now: an adapter that keeps the queue full must not hold the board's thread (and
    // with it the window's painting and timers) for as long as it keeps sending. What arrives meanwhile
    // has woken the window for another call.
    int32_t applied = 0;
    std::string text;
    for (int32_t left = PendingNoticeCount(); left > 0 && TakeNext(text); --left) {
        Apply(text);
        ++applied;
    }
    return applied;
}

int32_t PendingNoticeCount() {
    std::lock_guard<std::mutex> lock(QueueLock);
    return static_cast<int32_t>(Queue.size());
}

extern "C" int32_t ZNA_CALL NoticeCallback(intptr_t, const char* const* XMLText, intptr_t) {
    try {
        if (!XMLText || !*XMLText) {
            std::string logName;
            {
                std::lock_guard<std::mutex> lock(QueueLock);
                logName = std::this_thread::get_id() == BoardThread ? NBLogFileName() : LogName;
            }
            ZS_Log(logName, "Process NoticeBoard :  Status =Access violation: no message text");
            return ZNB_NOTICE_FAILED;
        }
        // Only a queued message is copied: on the board's thread the adapter's text is applied in place,
        // as it stays valid until this call returns.
        const std::string_view text(*XMLText);
        bool queued = false;
        bool boardThread = false;
        std::string logName;
        {
            std::lock_guard<std::mutex> lock(QueueLock);
            boardThread = std::this_thread::get_id() == BoardThread;
            if (TheBoard && !boardThread) {
                Queue.emplace_back(text);
                queued = true;
            } else if (!boardThread) {
                logName = LogName;
            }
        }
        if (queued) {
            std::lock_guard<std::mutex> lock(WakeLock);
            if (Wake) Wake();
            return 0;
        }
        if (!boardThread) {
            // No board to queue for: this thread must not reach for one that may be installed meanwhile.
            ZS_Log(logName,
                   "Process NoticeBoard :  Status =Access violation: no notice board" + std::string(text));
            return ZNB_NOTICE_FAILED;
        }
        ProcessPendingNotices(); // messages queued earlier go first
        return Apply(text);
    } catch (...) {
        return ZNB_NOTICE_FAILED;
    }
}
