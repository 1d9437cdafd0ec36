// The grid's quick search: narrows a notice view (TNoticeGridView::SetNarrowing) to the rows whose shown
// texts contain every word typed, in any order and any letter case (Unicode simple case folding, as the
// grid's sort folds). A word matches inside one field's text, never across two. An empty text (or one of
// blanks only) narrows nothing, so the view is exactly what it was without a search.
//
// Speed: each row's shown texts, folded, are kept in one arena, built the first time they are needed (or
// by Prepare) and kept up to date as the store's rows change (a changed row is folded again when next
// searched). A search scans the arena; typing more letters only drops rows from the last answer, so the
// view keeps its order and sorts nothing. Scans use up to Threads() threads inside the call.
//
// Ownership: owned by the grid (or a test); the store must outlive it and it must outlive its installation
// in a view. The store's thread only. Failures: std::bad_alloc from a search leaves the last answer.
#pragma once

#include "core/TNoticeStore.h"
#include "core/TRowNarrowing.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class TQuickSearch final : public IRowNarrowing {
public:
    explicit TQuickSearch(TNoticeStore& Store);
    ~TQuickSearch() override;
    TQuickSearch(const TQuickSearch&) = delete;
    TQuickSearch& operator=(const TQuickSearch&) = delete;

    // The fields searched: the grid's shown columns. Changing them drops the kept texts.
    void SetFields(std::vector<TNoticeField> Fields);
    const std::vector<TNoticeField>& Fields() const { return FFields; }

    // The text typed (UTF-8). Words are separated by blanks.
    void SetText(std::string_view Text);
    const std::string& Text() const { return FText; }
    // The folded words that decide, longest first; a word inside another word is left out.
    const std::vector<std::string>& Words() const { return FWords; }

    // Worker threads for a scan (1 = none; the default is the machine's cores, at most 4).
    void SetThreads(int Threads);
    int Threads() const { return FThreads; }
    // Folds every row's texts now (a window may call it when the search box gets the focus).
    void Prepare();
    // Bytes of folded text kept (live and awaiting reuse).
    size_t CacheBytes() const;

    // IRowNarrowing.
    bool Narrows() const override { return !FWords.empty(); }
    uint64_t Generation() const override { return FGeneration; }
    bool Refines(uint64_t Since) const override;
    bool Matches(int32_t Slot) const override;
    void Narrow(std::vector<int32_t>& Slots) override;

private:
    struct TCache;
    TNoticeStore& FStore;
    std::vector<TNoticeField> FFields;
    std::string FText;
    std::vector<std::string> FWords;
    uint64_t FGeneration = 1;
    // Recent generations and their words, to tell a narrowing from a widening.
    struct TPast {
        uint64_t Generation;
        std::vector<std::string> Words;
    };
    std::vector<TPast> FPast;
    int FThreads = 1;
    std::unique_ptr<TCache> FCache;
};

// Splits a text into blank-separated words and folds each (ASCII by table, the rest by Unicode simple case
// folding): the form in which texts and words are compared.
std::vector<std::string> QuickSearchWords(std::string_view Text);
// The folded form of a text (as the search compares it).
std::string QuickSearchFold(std::string_view Text);
// The status bar's note of the rows found: "(N match)".
std::string QuickSearchMatchText(int32_t Matches);
