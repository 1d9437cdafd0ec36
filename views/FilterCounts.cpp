// Each counted slot keeps the marks of the filters it passed, since the store tells of an update or a
// deletion only after the old values are gone. Slots below FNext are counted; the first count walks
// FNext up to the end, and a row added at the end once it is there is counted at once.
#include "views/FilterCounts.h"
#include "core/SlotRenumber.h"

#include "core/FilterExpression.h"
#include "views/FilterApply.h"

#include <algorithm>
#include <strings.h>

struct TFilterCounts::TFilter {
    std::unique_ptr<IRowFilter> Compiled; // null: passes every row
};

TFilterCounts::TFilterCounts(TNoticeStore& Store) : FStore(Store), FRows(Store.RowsGeneration()) {
    FStore.AddRowObserver(this);
}

TFilterCounts::~TFilterCounts() {
    FStore.RemoveRowObserver(this);
}

void TFilterCounts::SetFilters(const std::vector<std::string>& Names, const std::vector<std::string>& Texts) {
    std::vector<std::shared_ptr<TFilter>> filters;
    for (size_t i = 0; i < Names.size(); ++i) {
        auto filter = std::make_shared<TFilter>();
        const std::string& text = i < Texts.size() ? Texts[i] : std::string();
        try {
            if (!text.empty()) filter->Compiled = CompileFilterExpression(text);
        } catch (const EFilterExpressionError&) {
            filter.reset();
        }
        filters.push_back(std::move(filter));
    }
    FNames = Names;
    FFilters = std::move(filters);
    FWords = std::max<size_t>(1, (FFilters.size() + 63) / 64);
    Restart();
}

void TFilterCounts::SetFilterNames(const std::vector<std::string>& Names, const std::string& Folder) {
    std::vector<std::string> texts(Names.size());
    for (size_t i = 0; i < Names.size(); ++i)
        FilterTextForName(Names[i], Folder, texts[i]);
    SetFilters(Names, texts);
}

void TFilterCounts::Restart() {
    FRows = FStore.RowsGeneration();
    FNext = 0;
    FCounts.assign(FFilters.size(), 0);
    FCounted.assign(size_t(FStore.SlotCount()), 0);
    FMarks.assign(size_t(FStore.SlotCount()) * FWords, 0);
    ++FRevision;
}

bool TFilterCounts::Done() const {
    return FNext >= FStore.SlotCount();
}

bool TFilterCounts::Step(int32_t Rows) {
    const int32_t size = FStore.SlotCount();
    const int32_t end = FNext + std::min(std::max(Rows, 1), size - FNext);
    constexpr int32_t Ahead = 8; // each row's text is a heap block of its own: fetch ahead
    for (int32_t s = FNext; s < end; ++s) {
        if (s + Ahead < size) __builtin_prefetch(FStore.RowBySlot(s + Ahead).TextData());
        if (FStore.SlotLive(s)) Take(s);
    }
    const bool finished = FNext < size && end >= size;
    FNext = std::max(FNext, end);
    if (finished) ++FRevision;
    return Done();
}

void TFilterCounts::CountAll() {
    while (!Step(1 << 16)) {
    }
}

int32_t TFilterCounts::Count(size_t Index) const {
    if (Index >= FFilters.size() || !FFilters[Index] || !Done()) return -1;
    return FCounts[Index];
}

int32_t TFilterCounts::Count(const std::string& Name) const {
    for (size_t i = 0; i < FNames.size(); ++i)
        if (strcasecmp(FNames[i].c_str(), Name.c_str()) == 0) return Count(i);
    return -1;
}

void TFilterCounts::Take(int32_t Slot) {
    const size_t slot = size_t(Slot);
    if (slot >= FCounted.size()) {
        // Grow by half again at least, so that rows arriving one by one do not copy the marks each time.
        const size_t size = std::max(slot + 1, FCounted.size() + FCounted.size() / 2);
        FCounted.resize(size, 0);
        FMarks.resize(size * FWords, 0);
    }
    const TNoticeRecord& row = FStore.RowBySlot(Slot);
    uint64_t* marks = &FMarks[slot * FWords];
    std::fill(marks, marks + FWords, 0);
    for (size_t i = 0; i < FFilters.size(); ++i) {
        const TFilter* f = FFilters[i].get();
        if (!f || (f->Compiled && !f->Compiled->Accept(row))) continue;
        marks[i / 64] |= uint64_t(1) << (i % 64);
        ++FCounts[i];
    }
    FCounted[slot] = 1;
    ++FRevision;
}

void TFilterCounts::Leave(int32_t Slot) {
    const size_t slot = size_t(Slot);
    if (slot >= FCounted.size() || !FCounted[slot]) return;
    const uint64_t* marks = &FMarks[slot * FWords];
    for (size_t i = 0; i < FFilters.size(); ++i)
        if (marks[i / 64] >> (i % 64) & 1) --FCounts[i];
    FCounted[slot] = 0;
    ++FRevision;
}

void TFilterCounts::RowInserted(int32_t Slot) {
    if (Slot > FNext) return; // the first count reaches it later
    try {
        Take(Slot);
        if (Slot == FNext) ++FNext;
    } catch (...) {
        // no memory for its marks: FNext stays on it, so the first count's next step takes it again
    }
}

void TFilterCounts::RowUpdated(int32_t Slot) {
    if (Slot >= FNext) return;
    Leave(Slot);
    RowInserted(Slot);
}

void TFilterCounts::RowDeleted(int32_t Slot) {
    if (Slot < FNext) Leave(Slot);
}

void TFilterCounts::RowsReset() {
    if (FRows == FStore.RowsGeneration()) return; // a new filter for the store changes no row
    try {
        Restart();
    } catch (...) {
        FFilters.clear(); // out of memory: no counts rather than wrong ones
        FNames.clear();
        FCounts.clear();
    }
}

void TFilterCounts::SlotsRenumbered(std::span<const int32_t> NewSlotOf) {
    // The first count goes on from the first renumbered slot at or past where it stood.
    int32_t next = 0;
    for (int32_t s = 0; s < FNext && size_t(s) < NewSlotOf.size(); ++s)
        if (NewSlotOf[size_t(s)] >= 0) ++next;
    if (size_t(FNext) > NewSlotOf.size()) next += FNext - int32_t(NewSlotOf.size());
    FNext = next;
    RenumberSlots(FMarks, NewSlotOf, FWords);
    RenumberSlots(FCounted, NewSlotOf);
}
