// The board's notice callback: the routine every adapter is handed in ZNA_Connect and calls with one XML
// notice message. It reaches the one board installed with SetNoticeBoard.
//
// Threads: the thread that installs the board is the board's thread. A call on that thread applies the
// message at once (after any messages still queued from other threads, so arrival order holds). A call from
// any other thread copies the text, queues it, calls the wake function (so a window can schedule
// ProcessPendingNotices on its thread) and returns 0 at once; the queue is guarded by a mutex. Only the
// board's thread ever enters the board.
// Failures: never throws. A message that fails is logged ("Process NoticeBoard :  Status =" + error + whole
// text) and the call returns 53244; this covers a null text pointer and a call with no board installed
// (from any thread). A call from another thread after the board has gone logs to the log the board used
// (taken when the board was installed or removed), since the configuration may be gone by then.
#pragma once

#include "sdk/znb_adapter.h"

#include <cstdint>
#include <functional>
#include <string>

class TNoticeBoard;

// The result of a message whose processing raised.
constexpr int32_t ZNB_NOTICE_FAILED = 53244;

// Installs the board the callback feeds (not owned; null: none) and makes the calling thread its thread.
// The owner calls SetNoticeBoard(nullptr) before destroying the board; queued messages are then dropped.
void SetNoticeBoard(TNoticeBoard* Board);
TNoticeBoard* NoticeBoard();

// Called on the adapter's thread right after a message was queued; empty: none. Must not block and must
// not call SetNoticeWake. Once SetNoticeWake returns, the function it replaced is not running and never
// runs again, so a window may free what the old one refers to.
void SetNoticeWake(std::function<void()> Wake);

// The callback handed to adapters (type ZNA_Notice_Callback). Only XMLText is used.
extern "C" int32_t ZNA_CALL NoticeCallback(intptr_t Reserved1, const char* const* XMLText,
                                           intptr_t Reserved2);

// Applies the messages queued when it is called, in arrival order (later ones wait for the next call, which
// their wake asks for); board thread only. Returns how many were applied (none while the board is busy
// applying a message: they wait for the next call).
int32_t ProcessPendingNotices();
// Number of messages waiting; any thread.
int32_t PendingNoticeCount();
