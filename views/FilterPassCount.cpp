#include "views/FilterPassCount.h"

#include "core/FilterExpression.h"
#include "core/TNoticeStore.h"

#include <algorithm>

void TFilterPassCount::Start(const TNoticeStore& Store, const std::string& Text) {
    Reset();
    FFilter = CompileFilterExpression(Text); // raises before anything is set up
    FStore = &Store;
    FTotal = Store.TotalCount();
}

void TFilterPassCount::Reset() {
    FStore = nullptr;
    FFilter.reset();
    FNext = 0;
    FPassed = 0;
    FTotal = 0;
    FDone = false;
}

bool TFilterPassCount::Step(int32_t Rows) {
    if (FDone) return true;
    if (!FStore) return false;
    const int32_t size = FStore->SlotCount();
    const int32_t end = FNext + std::min(std::max(Rows, 1), size - FNext);
    // Each row's text sits in its own heap block; fetching a few rows ahead keeps a text filter from
    // waiting on memory, as the store's own recount does.
    constexpr int32_t Ahead = 8;
    const bool prefetch = FFilter->ReadsText();
    for (int32_t s = FNext; s < end; ++s) {
        if (prefetch && s + Ahead < size) __builtin_prefetch(FStore->RowBySlot(s + Ahead).TextData());
        if (FStore->SlotLive(s) && FFilter->Accept(FStore->RowBySlot(s))) ++FPassed;
    }
    FNext = end;
    if (FNext < size) return false;
    FDone = true;
    FStore = nullptr;
    FFilter.reset();
    return true;
}

double TFilterPassCount::Progress() const {
    if (FDone) return 1.0;
    if (!FStore || FStore->SlotCount() == 0) return 0.0;
    return double(FNext) / double(FStore->SlotCount());
}
