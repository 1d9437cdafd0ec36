// What most benchmarks start from: a board filled through the notice callback with typical notices
// (NoticeSamples.h), one per size, made once for the whole run; a message sent the way an adapter sends
// it; and the calling thread's CPU time, which a shared machine disturbs less than wall time.
#pragma once

#include "NoticeSamples.h"

#include "core/TNoticeBoard.h"
#include "core/Znb_callback.h"

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <map>
#include <memory>
#include <string>

inline void SendToBoard(const std::string& xml) {
    const char* text = xml.c_str();
    NoticeCallback(0, &text, 0);
}

// Posts that many typical notices (keys Prefix + number) to the callback's board, 1000 to a message.
inline void FillBoard(int64_t rows, const char* Prefix = "fill") {
    for (int64_t first = 0; first < rows; first += 1000)
        SendToBoard(SampleMessage(Prefix, first, int(std::min<int64_t>(1000, rows - first))));
}

// The board of that many notices, installed as the callback's board.
inline TNoticeBoard& SampleBoard(int64_t rows) {
    static std::map<int64_t, std::unique_ptr<TNoticeBoard>> boards;
    auto& board = boards[rows];
    if (!board) {
        board = std::make_unique<TNoticeBoard>();
        SetNoticeBoard(board.get());
        FillBoard(rows);
    }
    SetNoticeBoard(board.get());
    return *board;
}

inline double ThreadSeconds() {
    timespec ts;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return double(ts.tv_sec) + double(ts.tv_nsec) * 1e-9;
}
