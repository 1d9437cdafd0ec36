// SortNoticeRows: the whole-store sort behind the grid's view. A re-sort of a million rows used to be
// dominated by its scratch memory (a 16-byte item per row, twice, first touched page by page) rather than
// by sorting; the counting order below needs a byte per slot when the first column has few values.
#include "core/TNoticeRowOrder.h"
#include "core/TNoticeRowSort.h"
#include "core/TNoticeStore.h"

#include <algorithm>
#include <array>
#include <memory>

namespace {

constexpr uint8_t NotMember = 0xFF;
// The byte of a non-null value is 128 + its distance from the first value met, so values within 126 of
// that one fit in 1..254, and 0 is null's.
constexpr int64_t ValueBias = 128;
// Distinct values the counting order takes on: each costs a pass over a byte per slot.
constexpr int MaxCountedValues = 16;
// Rows read ahead of the one being read: a row is a cache miss of its own.
constexpr int32_t Ahead = 16;
// Slots handed to the sink at a time.
constexpr int32_t Piece = 1024;

bool IsMember(const TNoticeStore& Store, bool Filtered, int32_t Slot) {
    return Filtered ? Store.SlotPasses(Slot) : Store.SlotLive(Slot);
}

// Hands over the slots from First to Last (inclusive) whose byte is Value, in slot order. Branch-free, as
// the values of neighbouring slots are in no particular pattern.
void TakeSlotsOf(const uint8_t* Bytes, uint8_t Value, int32_t First, int32_t Last, INoticeSlotSink& Sink) {
    int32_t piece[Piece + 1];
    int32_t n = 0;
    for (int32_t s = First; s <= Last; ++s) {
        piece[n] = s;
        n += Bytes[s] == Value;
        if (n == Piece) {
            Sink.Take(piece, n);
            n = 0;
        }
    }
    if (n > 0) Sink.Take(piece, n);
}

class TCountingOrder {
public:
    TCountingOrder(const TNoticeStore& Store, const std::vector<TSortColumn>& Columns, bool Filtered)
        : FStore(Store), FColumns(Columns), FFiltered(Filtered) {}

    // Reads the first column into a byte per slot; false when it is no integer column or its values among
    // the rows are too many or too far apart.
    bool Read() {
        if (FColumns.empty() || SortKindOf(FColumns[0].Field) != TSortKind::Integer) return false;
        const TNoticeField f = FColumns[0].Field;
        const int32_t slots = FStore.SlotCount();
        FBytes.reset(new uint8_t[size_t(slots)]);
        int64_t base = 0;
        bool based = false;
        for (int32_t s = 0; s < slots; ++s) {
            if (!IsMember(FStore, FFiltered, s)) {
                FBytes[size_t(s)] = NotMember;
                continue;
            }
            if (s + Ahead < slots) __builtin_prefetch(&FStore.RowBySlot(s + Ahead));
            const TNoticeRecord& row = FStore.RowBySlot(s);
            uint8_t b = 0;
            if (!row.IsNull(f)) {
                const int64_t v = row.AsInteger(f);
                if (!based) {
                    base = v;
                    based = true;
                }
                const int64_t d = v - base + ValueBias;
                if (d < 1 || d >= NotMember) return false;
                b = static_cast<uint8_t>(d);
            }
            FBytes[size_t(s)] = b;
            if (FCounts[b]++ == 0) FFirst[b] = s;
            FLast[b] = s;
        }
        int values = 0;
        for (int b = 0; b < NotMember; ++b)
            if (FCounts[b] > 0) {
                FTotal += FCounts[b];
                FMostOfOne = std::max(FMostOfOne, FCounts[b]);
                ++values;
            }
        return values <= MaxCountedValues;
    }

    // Values in the column's direction (null first when ascending, last when descending); within a value,
    // slot order is key order, which is the order of rows that tie on every column.
    void HandOver(INoticeSlotSink& Sink) {
        const std::vector<TSortColumn> rest(FColumns.begin() + 1, FColumns.end());
        std::vector<int32_t> run;
        if (!rest.empty()) run.reserve(size_t(FMostOfOne));
        Sink.Begin(FTotal);
        const bool down = FColumns[0].Descending;
        for (int i = 0; i < NotMember; ++i) {
            const uint8_t b = static_cast<uint8_t>(down ? NotMember - 1 - i : i);
            if (FCounts[b] == 0) continue;
            if (rest.empty()) {
                TakeSlotsOf(FBytes.get(), b, FFirst[b], FLast[b], Sink);
                continue;
            }
            run.clear();
            for (int32_t s = FFirst[b]; s <= FLast[b]; ++s)
                if (FBytes[size_t(s)] == b) run.push_back(s);
            if (run.size() > 1) SortNoticeSlots(FStore, rest, run);
            Sink.Take(run.data(), static_cast<int32_t>(run.size()));
        }
    }

private:
    const TNoticeStore& FStore;
    const std::vector<TSortColumn>& FColumns;
    const bool FFiltered;
    std::unique_ptr<uint8_t[]> FBytes; // per slot: its value's byte, or NotMember
    std::array<int32_t, NotMember> FCounts{}, FFirst{}, FLast{};
    int32_t FTotal = 0, FMostOfOne = 0;
};

} // namespace

void SortNoticeRows(const TNoticeStore& Store, const std::vector<TSortColumn>& Columns, bool Filtered,
                    INoticeSlotSink& Sink) {
    const int32_t slots = Store.SlotCount();
    if (Columns.empty()) { // key order is slot order
        int32_t count = 0;
        for (int32_t s = 0; s < slots; ++s)
            count += IsMember(Store, Filtered, s);
        Sink.Begin(count);
        int32_t piece[Piece];
        int32_t n = 0;
        for (int32_t s = 0; s < slots; ++s) {
            if (!IsMember(Store, Filtered, s)) continue;
            piece[n++] = s;
            if (n == Piece) {
                Sink.Take(piece, n);
                n = 0;
            }
        }
        if (n > 0) Sink.Take(piece, n);
        return;
    }
    {
        TCountingOrder counting(Store, Columns, Filtered);
        if (counting.Read()) {
            counting.HandOver(Sink);
            return;
        }
    }
    std::vector<int32_t> members;
    members.reserve(size_t(Filtered ? Store.RecordCount() : Store.TotalCount()));
    for (int32_t s = 0; s < slots; ++s)
        if (IsMember(Store, Filtered, s)) members.push_back(s);
    SortNoticeSlots(Store, Columns, members);
    Sink.Begin(static_cast<int32_t>(members.size()));
    Sink.Take(members.data(), static_cast<int32_t>(members.size()));
}
