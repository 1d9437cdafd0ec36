#include "core/TNoticeRowSort.h"

#include "core/TNoticeRowOrder.h"
#include "core/TNoticeStore.h"

#include <cstring>
#include <deque>
#include <memory>
#include <string>

namespace {

// One row being sorted: the digit of the current step, the row's slot, and which entry of the text table
// holds the text its column's digits are read from. Items start in key order and every step is stable, so
// rows that tie everywhere stay in key order without a last step by key. 16 bytes, so that a million of
// them move in a few milliseconds per radix pass.
struct TItem {
    uint64_t Digit;
    int32_t Slot;
    uint32_t Ref;
};
// Where a text column's digits come from, for the item whose Ref this is. Filled when a run first reaches
// the column; only text columns need the table.
struct TTextRef {
    const char* Text;
    uint32_t Len;
    bool FoldedCopy; // Text is a folded copy, not the row's own bytes
};

// Where the refinement of a run stands: column, folded or raw bytes of a text column, and which 7-byte
// chunk of them.
struct TStep {
    uint32_t Column;
    bool Raw;
    uint32_t Chunk;
};

struct TRun {
    int32_t Begin, End;
    TStep Step;
};

constexpr int32_t ComparisonRun = 16; // runs up to this size are finished by comparing rows
constexpr int32_t InsertionRun = 64;  // digit sorts up to this size are insertion sorts

class TSorter {
public:
    TSorter(const TNoticeStore& Store, const std::vector<TSortColumn>& Columns)
        : FStore(Store), FColumns(Columns) {
        for (const TSortColumn& c : Columns)
            FKinds.push_back(SortKindOf(c.Field));
    }

    void Sort(std::vector<int32_t>& Slots) {
        const int32_t n = static_cast<int32_t>(Slots.size());
        FItems.reset(new TItem[size_t(n)]); // left uninitialised: every item is written below
        for (int32_t i = 0; i < n; ++i)
            FItems[size_t(i)] = {0, Slots[size_t(i)], static_cast<uint32_t>(i)};
        FCount = n;
        FRuns.push_back({0, n, {0, false, 0}});
        while (!FRuns.empty()) {
            const TRun run = FRuns.back();
            FRuns.pop_back();
            Refine(run);
        }
        for (int32_t i = 0; i < n; ++i)
            Slots[size_t(i)] = FItems[size_t(i)].Slot;
    }

private:
    const TNoticeRecord& Row(int32_t slot) const { return FStore.RowBySlot(slot); }

    void Refine(const TRun& run) {
        const int32_t n = run.End - run.Begin;
        if (n < 2 || run.Step.Column >= FColumns.size()) return;
        if (n <= ComparisonRun) {
            FinishByComparison(run);
            return;
        }
        ComputeDigits(run);
        SortByDigit(run.Begin, run.End);
        const TSortColumn& col = FColumns[run.Step.Column];
        const uint64_t flip = col.Descending ? ~uint64_t(0) : 0;
        for (int32_t a = run.Begin; a < run.End;) {
            int32_t b = a + 1;
            while (b < run.End && FItems[size_t(b)].Digit == FItems[size_t(a)].Digit)
                ++b;
            if (b - a > 1) FRuns.push_back({a, b, Next(run.Step, FItems[size_t(a)].Digit ^ flip)});
            a = b;
        }
    }

    // The step after one whose digits tied at Digit (in ascending form).
    TStep Next(const TStep& step, uint64_t digit) const {
        const TStep nextColumn{step.Column + 1, false, 0};
        if (FKinds[step.Column] != TSortKind::Text || digit == 0) return nextColumn;
        if ((digit & 0xFF) == TextDigitMore) return {step.Column, step.Raw, step.Chunk + 1};
        return step.Raw ? nextColumn : TStep{step.Column, true, 0}; // equal folded: their bytes decide
    }

    void ComputeDigits(const TRun& run) {
        const TSortColumn& col = FColumns[run.Step.Column];
        const TNoticeField f = col.Field;
        const TSortKind kind = FKinds[run.Step.Column];
        const uint64_t flip = col.Descending ? ~uint64_t(0) : 0;
        const TStep& step = run.Step;
        if (kind == TSortKind::Text && !FTexts) FTexts.reset(new TTextRef[size_t(FCount)]);
        // The first chunk of a column reads the row; later ones read the text found then. Both are
        // fetched a few items ahead, as the items are in no particular order of memory.
        const bool readsRow = kind != TSortKind::Text || step.Chunk == 0;
        constexpr int32_t Ahead = 8;
        for (int32_t i = run.Begin; i < run.End; ++i) {
            if (i + 2 * Ahead < run.End) {
                const TItem& ahead = FItems[size_t(i + 2 * Ahead)];
                __builtin_prefetch(readsRow ? static_cast<const void*>(&Row(ahead.Slot))
                                            : &FTexts[ahead.Ref]);
            }
            if (i + Ahead < run.End && kind == TSortKind::Text) {
                const TItem& ahead = FItems[size_t(i + Ahead)];
                __builtin_prefetch(step.Chunk == 0 ? Row(ahead.Slot).AsString(f).data()
                                                   : FTexts[ahead.Ref].Text + step.Chunk * 7);
            }
            TItem& item = FItems[size_t(i)];
            uint64_t d;
            if (kind != TSortKind::Text) {
                d = NumericSortValue(Row(item.Slot), f, kind);
            } else if (step.Chunk > 0) {
                const TTextRef& t = FTexts[item.Ref];
                d = TextDigit(t.Text, t.Len, step.Chunk, !step.Raw && !t.FoldedCopy);
            } else {
                d = FirstTextDigit(item, f, step.Raw);
            }
            item.Digit = d ^ flip;
        }
    }

    // The first chunk of a text column: finds the text (folding a non-ASCII one into a copy for the folded
    // step, and going back to the row's bytes for the raw step).
    uint64_t FirstTextDigit(const TItem& item, TNoticeField f, bool raw) {
        const TNoticeRecord& row = Row(item.Slot);
        if (row.IsNull(f)) return 0; // null
        const std::string_view text = row.AsString(f);
        TTextRef& t = FTexts[item.Ref];
        t = {text.data(), static_cast<uint32_t>(text.size()), false};
        if (!raw && !IsAsciiText(text)) {
            std::string& folded = FFolded.emplace_back();
            AppendFoldedText(text, folded);
            t = {folded.data(), static_cast<uint32_t>(folded.size()), true};
        }
        return TextDigit(t.Text, t.Len, 0, !raw && !t.FoldedCopy);
    }

    // Stable sort of items [begin, end) by digit: insertion sort when short, else an LSD radix sort over the
    // bytes in which the digits differ.
    void SortByDigit(int32_t begin, int32_t end) {
        TItem* a = FItems.get() + begin;
        const int32_t n = end - begin;
        if (n <= InsertionRun) {
            for (int32_t i = 1; i < n; ++i) {
                const TItem x = a[i];
                int32_t j = i;
                for (; j > 0 && a[j - 1].Digit > x.Digit; --j)
                    a[j] = a[j - 1];
                a[j] = x;
            }
            return;
        }
        static thread_local uint32_t counts[8][256];
        std::memset(counts, 0, sizeof counts);
        for (int32_t i = 0; i < n; ++i) {
            const uint64_t d = a[i].Digit;
            for (int b = 0; b < 8; ++b)
                ++counts[b][(d >> (8 * b)) & 0xFF];
        }
        if (!FSpare) FSpare.reset(new TItem[size_t(FCount)]);
        TItem* src = a;
        TItem* dst = FSpare.get() + begin;
        for (int b = 0; b < 8; ++b) {
            uint32_t* c = counts[b];
            if (c[(a[0].Digit >> (8 * b)) & 0xFF] == static_cast<uint32_t>(n)) continue; // all alike
            uint32_t sum = 0;
            for (int v = 0; v < 256; ++v) {
                const uint32_t k = c[v];
                c[v] = sum;
                sum += k;
            }
            for (int32_t i = 0; i < n; ++i)
                dst[c[(src[i].Digit >> (8 * b)) & 0xFF]++] = src[i];
            std::swap(src, dst);
        }
        if (src != a) std::memcpy(a, src, sizeof(TItem) * size_t(n));
    }

    // A short run: stable insertion sort comparing the rows from the run's column on.
    void FinishByComparison(const TRun& run) {
        TItem* a = FItems.get() + run.Begin;
        const int32_t n = run.End - run.Begin;
        const TSortColumn* cols = FColumns.data() + run.Step.Column;
        const size_t count = FColumns.size() - run.Step.Column;
        for (int32_t i = 1; i < n; ++i) {
            const TItem x = a[i];
            const TNoticeRecord& rx = Row(x.Slot);
            int32_t j = i;
            for (; j > 0 && CompareNoticeColumns(Row(a[j - 1].Slot), rx, cols, count) > 0; --j)
                a[j] = a[j - 1];
            a[j] = x;
        }
    }

    const TNoticeStore& FStore;
    const std::vector<TSortColumn>& FColumns;
    std::vector<TSortKind> FKinds;
    std::unique_ptr<TItem[]> FItems;
    std::unique_ptr<TItem[]> FSpare; // the radix sort's second buffer, made when first needed
    std::unique_ptr<TTextRef[]> FTexts;
    int32_t FCount = 0;
    std::vector<TRun> FRuns;
    std::deque<std::string> FFolded; // folded copies of non-ASCII texts; deque: their data never moves
};

} // namespace

void SortNoticeSlots(const TNoticeStore& Store, const std::vector<TSortColumn>& Columns,
                     std::vector<int32_t>& Slots) {
    TSorter(Store, Columns).Sort(Slots);
}
