// The store tells a change only after the old values are gone, so each slot remembers the bucket it was
// counted in (a byte a row).
#include "core/TSeverityCounts.h"
#include "core/SlotRenumber.h"

#include <numeric>

namespace {

uint8_t BucketOf(const TNoticeRecord& Row) {
    if (Row.IsNull(nf_note_severity)) return 0;
    const int32_t severity = Row.AsInteger(nf_note_severity);
    return severity >= 1 && severity <= 4 ? uint8_t(severity) : 0;
}

} // namespace

TSeverityCounts::TSeverityCounts(TNoticeStore& Store) : FStore(Store) {
    Recount();
    FStore.AddRowObserver(this);
}

TSeverityCounts::~TSeverityCounts() {
    FStore.RemoveRowObserver(this);
}

int32_t TSeverityCounts::Total() const {
    return std::accumulate(FCounts.begin(), FCounts.end(), int32_t(0));
}

int32_t TSeverityCounts::Worst() const {
    for (int32_t severity = 4; severity >= 1; --severity)
        if (FCounts[size_t(severity)] > 0) return severity;
    return 0;
}

void TSeverityCounts::Take(int32_t Slot) {
    if (size_t(Slot) >= FCounted.size()) FCounted.resize(size_t(Slot) + 1);
    const uint8_t bucket = BucketOf(FStore.RowBySlot(Slot));
    FCounted[size_t(Slot)] = uint8_t(bucket + 1);
    ++FCounts[bucket];
    ++FRevision;
}

void TSeverityCounts::Leave(int32_t Slot) {
    if (size_t(Slot) >= FCounted.size() || FCounted[size_t(Slot)] == 0) return;
    --FCounts[FCounted[size_t(Slot)] - 1u];
    FCounted[size_t(Slot)] = 0;
    ++FRevision;
}

void TSeverityCounts::RowInserted(int32_t Slot) {
    try {
        Take(Slot);
    } catch (...) {
        // no memory for the slot's byte: the counts are taken again from scratch at the next reset
    }
}

void TSeverityCounts::RowUpdated(int32_t Slot) {
    Leave(Slot);
    RowInserted(Slot);
}

void TSeverityCounts::RowDeleted(int32_t Slot) {
    Leave(Slot);
}

void TSeverityCounts::RowsReset() {
    if (FRows == FStore.RowsGeneration()) return; // a new filter changes no row
    try {
        Recount();
    } catch (...) {
        FCounts = {}; // out of memory: nothing counted rather than wrong counts
        FCounted.clear();
    }
}

void TSeverityCounts::Recount() {
    FRows = FStore.RowsGeneration();
    FCounts = {};
    FCounted.assign(size_t(FStore.SlotCount()), 0);
    for (int32_t s = 0; s < FStore.SlotCount(); ++s)
        if (FStore.SlotLive(s)) Take(s);
    ++FRevision;
}

void TSeverityCounts::SlotsRenumbered(std::span<const int32_t> NewSlotOf) {
    RenumberSlots(FCounted, NewSlotOf);
}
