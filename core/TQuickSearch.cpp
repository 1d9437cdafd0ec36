// The folded texts of a row sit in one arena as "field 1 \x1f field 2 \x1f ...", one span per slot; a
// changed row's old span becomes garbage, and the arena is compacted when garbage outweighs the live text.
// The blank and the unit separator never occur in a word, so a word never matches across two fields.
#include "core/TQuickSearch.h"
#include "core/SlotRenumber.h"

#include "core/TNoticeRowOrder.h"
#include "core/Znb_fieldtext.h"

#include <algorithm>
#include <cstring>
#include <thread>

namespace {

constexpr uint64_t Unbuilt = ~uint64_t(0);
constexpr uint64_t LengthBits = 24;
constexpr uint64_t MaxLength = (uint64_t(1) << LengthBits) - 1; // a longer row is searched in its start
constexpr char FieldEnd = '\x1f';
constexpr size_t ParallelFrom = 16384; // fewer rows are scanned on the calling thread
constexpr size_t PastKept = 16;

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f' || c == FieldEnd;
}

// Appends the folded form of Text.
void Fold(std::string_view Text, std::string& Out) {
    if (!IsAsciiText(Text)) {
        AppendFoldedText(Text, Out);
        return;
    }
    const size_t at = Out.size();
    Out.append(Text);
    for (size_t i = at; i < Out.size(); ++i) {
        const char c = Out[i];
        if (c >= 'A' && c <= 'Z') Out[i] = char(c + ('a' - 'A'));
    }
}

bool Contains(const char* Text, size_t Length, const std::string& Word) {
#ifdef __GLIBC__
    return memmem(Text, Length, Word.data(), Word.size()) != nullptr;
#else
    return std::string_view(Text, Length).find(Word) != std::string_view::npos;
#endif
}

bool ContainsAll(const char* Text, size_t Length, const std::vector<std::string>& Words) {
    for (const std::string& w : Words)
        if (!Contains(Text, Length, w)) return false;
    return true;
}

} // namespace

std::string QuickSearchFold(std::string_view Text) {
    std::string out;
    Fold(Text, out);
    return out;
}

std::vector<std::string> QuickSearchWords(std::string_view Text) {
    std::vector<std::string> words;
    size_t i = 0;
    while (i < Text.size()) {
        while (i < Text.size() && IsBlank(Text[i]))
            ++i;
        const size_t begin = i;
        while (i < Text.size() && !IsBlank(Text[i]))
            ++i;
        if (i > begin) words.push_back(QuickSearchFold(Text.substr(begin, i - begin)));
    }
    return words;
}

std::string QuickSearchMatchText(int32_t Matches) {
    return "(" + std::to_string(Matches) + " match)";
}

struct TQuickSearch::TCache final : INoticeRowObserver {
    explicit TCache(TNoticeStore& AStore) : Store(AStore), Rows(AStore.RowsGeneration()) {
        Store.AddRowObserver(this);
    }
    ~TCache() override { Store.RemoveRowObserver(this); }

    TNoticeStore& Store;
    const std::vector<TNoticeField>* Fields = nullptr;
    std::vector<char> Arena;
    std::vector<uint64_t> Spans; // per slot: offset << LengthBits | length, or Unbuilt
    size_t Garbage = 0;
    uint64_t Rows; // the store's rows generation the texts were taken from
    std::string Scratch;

    void Clear() {
        Arena = {};
        Spans = {};
        Garbage = 0;
    }
    void Forget(int32_t Slot) {
        if (size_t(Slot) >= Spans.size() || Spans[size_t(Slot)] == Unbuilt) return;
        Garbage += Spans[size_t(Slot)] & MaxLength;
        Spans[size_t(Slot)] = Unbuilt;
    }
    void RowInserted(int32_t Slot) override { Forget(Slot); }
    void RowUpdated(int32_t Slot) override { Forget(Slot); }
    void RowDeleted(int32_t Slot) override { Forget(Slot); }
    // A new filter leaves the rows as they were; only rows replaced wholesale void the texts.
    // Compaction: each row's folded text stays where it is in the arena; only its slot changes.
    void SlotsRenumbered(std::span<const int32_t> NewSlotOf) override { RenumberSlots(Spans, NewSlotOf); }
    void RowsReset() override {
        if (Rows == Store.RowsGeneration()) return;
        Rows = Store.RowsGeneration();
        Clear();
    }

    // The folded shown texts of a row.
    void FoldRow(const TNoticeRecord& Row, std::string& Out) const {
        Out.clear();
        for (TNoticeField f : *Fields) {
            if (TNoticeRecord::StringSlot(f) >= 0)
                Fold(Row.AsString(f), Out);
            else if (!Row.IsNull(f))
                Fold(FieldDisplayText(Row, f), Out);
            Out += FieldEnd;
        }
    }
    void Build(int32_t Slot) {
        FoldRow(Store.RowBySlot(Slot), Scratch);
        const size_t length = std::min<size_t>(Scratch.size(), MaxLength);
        Spans[size_t(Slot)] = uint64_t(Arena.size()) << LengthBits | length;
        Arena.insert(Arena.end(), Scratch.data(), Scratch.data() + length);
    }
    // Folds the rows of Slots that are not kept yet (all of them when Slots is null).
    void Ensure(const std::vector<int32_t>* Slots) {
        const int32_t count = Store.SlotCount();
        if (Spans.size() < size_t(count)) Spans.resize(size_t(count), Unbuilt);
        if (Garbage > 1 << 20 && Garbage > Arena.size() / 2) Compact();
        const auto want = [&](int32_t s) { return Spans[size_t(s)] == Unbuilt && Store.SlotLive(s); };
        if (Slots) {
            for (int32_t s : *Slots)
                if (want(s)) Build(s);
        } else {
            for (int32_t s = 0; s < count; ++s)
                if (want(s)) Build(s);
        }
    }
    void Compact() {
        std::vector<char> arena;
        arena.reserve(Arena.size() - Garbage);
        for (uint64_t& span : Spans) {
            if (span == Unbuilt) continue;
            const size_t at = size_t(span >> LengthBits), length = size_t(span & MaxLength);
            span = uint64_t(arena.size()) << LengthBits | length;
            arena.insert(arena.end(), Arena.begin() + at, Arena.begin() + at + length);
        }
        Arena.swap(arena);
        Garbage = 0;
    }
    bool Kept(int32_t Slot, const std::vector<std::string>& Words) const {
        const uint64_t span = Spans[size_t(Slot)];
        if (span == Unbuilt) return false; // not live
        return ContainsAll(Arena.data() + (span >> LengthBits), size_t(span & MaxLength), Words);
    }
};

TQuickSearch::TQuickSearch(TNoticeStore& Store)
    : FStore(Store), FThreads(int(std::clamp(std::thread::hardware_concurrency(), 1u, 4u))),
      FCache(std::make_unique<TCache>(Store)) {
    FCache->Fields = &FFields;
}

TQuickSearch::~TQuickSearch() = default;

void TQuickSearch::SetFields(std::vector<TNoticeField> Fields) {
    if (Fields == FFields) return;
    FFields = std::move(Fields);
    FCache->Clear();
    FPast.clear();                // texts of other fields: nothing is known about the rows any more
    if (Narrows()) ++FGeneration; // without words the fields decide nothing
}

void TQuickSearch::SetText(std::string_view Text) {
    FText.assign(Text);
    std::vector<std::string> words = QuickSearchWords(Text);
    // Longest first (most likely to fail early); a word inside another adds nothing.
    std::stable_sort(words.begin(), words.end(),
                     [](const std::string& a, const std::string& b) { return a.size() > b.size(); });
    std::vector<std::string> kept;
    for (std::string& w : words) {
        const bool inside = std::any_of(kept.begin(), kept.end(),
                                        [&](const std::string& k) { return k.find(w) != std::string::npos; });
        if (!inside) kept.push_back(std::move(w));
    }
    if (kept == FWords) return;
    FPast.push_back({FGeneration, std::move(FWords)});
    if (FPast.size() > PastKept) FPast.erase(FPast.begin());
    FWords = std::move(kept);
    ++FGeneration;
}

void TQuickSearch::SetThreads(int Threads) {
    FThreads = std::max(1, Threads);
}

void TQuickSearch::Prepare() {
    FCache->Ensure(nullptr);
}

size_t TQuickSearch::CacheBytes() const {
    return FCache->Arena.capacity() + FCache->Spans.capacity() * sizeof(uint64_t);
}

bool TQuickSearch::Refines(uint64_t Since) const {
    if (Since == FGeneration) return true;
    for (const TPast& past : FPast) {
        if (past.Generation != Since) continue;
        // Each old word lies inside a new one, so a row with all new words has all old ones.
        return std::all_of(past.Words.begin(), past.Words.end(), [&](const std::string& old) {
            return std::any_of(FWords.begin(), FWords.end(),
                               [&](const std::string& w) { return w.find(old) != std::string::npos; });
        });
    }
    return false;
}

bool TQuickSearch::Matches(int32_t Slot) const {
    if (FWords.empty()) return true;
    if (!FStore.SlotLive(Slot)) return false;
    std::string& text = FCache->Scratch;
    FCache->FoldRow(FStore.RowBySlot(Slot), text);
    return ContainsAll(text.data(), text.size(), FWords);
}

void TQuickSearch::Narrow(std::vector<int32_t>& Slots) {
    if (FWords.empty()) return;
    FCache->Ensure(&Slots);
    const TCache& cache = *FCache;
    const size_t n = Slots.size();
    std::vector<uint8_t> keep(n);
    const auto scan = [&](size_t begin, size_t end) {
        for (size_t i = begin; i < end; ++i)
            keep[i] = cache.Kept(Slots[i], FWords);
    };
    const size_t parts = n < ParallelFrom ? 1 : size_t(FThreads);
    std::vector<std::thread> workers;
    for (size_t p = 1; p < parts; ++p) {
        try {
            workers.emplace_back(scan, n * p / parts, n * (p + 1) / parts);
        } catch (const std::system_error&) {
            scan(n * p / parts, n * (p + 1) / parts); // no thread to be had: this one does the part
        }
    }
    scan(0, n / parts);
    for (std::thread& t : workers)
        t.join();
    size_t out = 0;
    for (size_t i = 0; i < n; ++i)
        if (keep[i]) Slots[out++] = Slots[i];
    Slots.resize(out);
}
