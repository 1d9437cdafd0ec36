// A notice store driven by random changes beside a plain model of its rows (a map by nb_internal_key),
// with a grid view over it, and a check of everything the store and the view promise against the model:
// counts, key order under First/Next and Last/Prior, record numbers, bookmarks, seeks on both indexes (of
// every originator key any driver ever issued, so a copy never finds the other side's), slots in key order,
// and the view against a brute-force sort.
#pragma once

#include "GridViewCheck.h"

#include "core/FilterExpression.h"

#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

struct TModelRow {
    std::string OrigKey;
    int32_t Severity = 0;
};
using TStoreModel = std::map<int32_t, TModelRow>;

class TStoreDriver {
public:
    explicit TStoreDriver(uint32_t seed) : FRng(seed) {
        FStore.SetFilterCompiler(CompileFilterExpression);
        FView = std::make_unique<TNoticeGridView>(FStore);
    }

    TNoticeStore& Store() { return FStore; }
    TNoticeGridView& View() { return *FView; }
    const TStoreModel& Model() const { return FModel; }
    uint32_t Pick(uint32_t n) { return FRng() % n; }

    // Becomes a copy of another driver's store, model and view order (the way a dialog copies the board).
    void CopyFrom(TStoreDriver& other) {
        FView.reset();
        FStore.CopyFrom(other.FStore);
        FView = std::make_unique<TNoticeGridView>(FStore, *other.FView);
        FModel = other.FModel;
        FMinSeverity = other.FMinSeverity;
        FIssued = other.FIssued;
    }

    void Insert() {
        const std::string key = "K" + std::to_string(++FLastOrigKey) + (Pick(2) ? "a" : "B");
        const int32_t severity = int32_t(1 + Pick(4));
        FStore.Append();
        FStore.Buffer().SetString(nf_adpt_orig_key, key);
        FStore.Buffer().SetInteger(nf_note_severity, severity);
        FStore.Buffer().SetString(nf_note_summary, "summary " + std::to_string(Pick(5)));
        FStore.Post();
        FModel[++FIssued] = {key, severity};
        const int32_t last = FStore.SlotCount() - 1; // the row may be filtered out, so not current
        ASSERT_EQ(FStore.RowBySlot(last).AsInteger(nf_nb_internal_key), FIssued) << "keys follow one another";
    }
    // A random visible row becomes current; its key, or 0 when nothing is visible.
    int32_t GoToRandomRow() {
        if (FStore.RecordCount() == 0) return 0;
        FStore.SetRecNo(int32_t(1 + Pick(uint32_t(FStore.RecordCount()))));
        return FStore.GetBookmark();
    }
    void Update() {
        const int32_t key = GoToRandomRow();
        if (!key) return;
        const int32_t severity = int32_t(1 + Pick(4));
        FStore.Edit();
        FStore.Buffer().SetInteger(nf_note_severity, severity);
        FStore.Post();
        FModel[key].Severity = severity;
    }
    void Delete() {
        const int32_t key = GoToRandomRow();
        if (!key) return;
        FStore.Delete();
        FModel.erase(key);
    }
    // Deletes by originator key, the way the protocol does.
    void DeleteByOrigKey() {
        if (FModel.empty()) return;
        auto it = FModel.begin();
        std::advance(it, Pick(uint32_t(FModel.size())));
        FStore.SetIndexName(TNoticeStore::OrigKeyIndexName);
        const bool found = FStore.FindKey(it->second.OrigKey);
        FStore.SetIndexName(TNoticeStore::PrimaryIndexName);
        ASSERT_EQ(found, Visible(it->second));
        if (!found) return;
        FStore.Delete();
        FModel.erase(it);
    }
    void SetFilter(int32_t minSeverity) {
        FStore.SetFilterText(minSeverity ? "note_severity >= " + std::to_string(minSeverity) : "");
        FMinSeverity = minSeverity;
    }
    void RandomChange() {
        const uint32_t p = Pick(20);
        if (p < 8)
            Insert();
        else if (p < 11)
            Update();
        else if (p < 15)
            Delete();
        else if (p < 18)
            DeleteByOrigKey();
        else if (p < 19)
            FStore.SetFiltered(!FStore.Filtered());
        else if (Pick(2))
            SetFilter(int32_t(Pick(4)));
        else
            SetRandomOrder();
    }
    void SetRandomOrder() {
        static constexpr TNoticeField Fields[] = {nf_note_severity, nf_note_summary, nf_adpt_orig_key};
        std::vector<TSortColumn> groups, sorts;
        for (uint32_t n = Pick(2); n > 0; --n)
            groups.push_back({Fields[Pick(3)], Pick(2) == 0});
        for (uint32_t n = Pick(3); n > 0; --n)
            sorts.push_back({Fields[Pick(3)], Pick(2) == 0});
        FView->SetOrder(groups, sorts);
    }

    bool Visible(const TModelRow& row) const {
        return !FStore.Filtered() || FMinSeverity == 0 || row.Severity >= FMinSeverity;
    }

    void ExpectMatches() {
        std::vector<int32_t> visible;
        for (const auto& [key, row] : FModel)
            if (Visible(row)) visible.push_back(key);
        ASSERT_EQ(FStore.TotalCount(), int32_t(FModel.size()));
        ASSERT_EQ(FStore.RecordCount(), int32_t(visible.size()));
        std::vector<int32_t> walked;
        for (FStore.First(); !FStore.Eof(); FStore.Next()) {
            walked.push_back(FStore.GetBookmark());
            ASSERT_EQ(FStore.RecNo(), int32_t(walked.size()));
        }
        ASSERT_EQ(walked, visible);
        walked.clear();
        for (FStore.Last(); !FStore.Bof(); FStore.Prior())
            walked.insert(walked.begin(), FStore.GetBookmark());
        ASSERT_EQ(walked, visible);
        for (int32_t key = 0; key <= FIssued + 1; ++key) {
            const auto it = FModel.find(key);
            const bool live = it != FModel.end();
            const int32_t slot = FStore.SlotOfKey(key);
            ASSERT_EQ(slot >= 0, live) << "key " << key;
            if (live) {
                ASSERT_EQ(FStore.RowBySlot(slot).AsInteger(nf_nb_internal_key), key);
            }
            ASSERT_EQ(FStore.BookmarkValid(key), live && Visible(it->second)) << "key " << key;
            ASSERT_EQ(FStore.FindKey(std::to_string(key)), live && Visible(it->second)) << "key " << key;
        }
        std::map<std::string, int32_t> byOrigKey;
        for (const auto& [key, row] : FModel)
            byOrigKey[row.OrigKey] = key;
        FStore.SetIndexName(TNoticeStore::OrigKeyIndexName);
        for (int n = 1; n <= FLastOrigKey; ++n) {
            for (const char* suffix : {"a", "B"}) {
                const auto it = byOrigKey.find("K" + std::to_string(n) + suffix);
                const bool shown = it != byOrigKey.end() && Visible(FModel.at(it->second));
                const std::string lower = "k" + std::to_string(n) + char(std::tolower(*suffix));
                ASSERT_EQ(FStore.FindKey(lower), shown) << lower;
                if (shown) {
                    ASSERT_EQ(FStore.GetBookmark(), it->second);
                }
            }
        }
        FStore.SetIndexName(TNoticeStore::PrimaryIndexName);
        int32_t lastKey = 0;
        for (int32_t s = 0; s < FStore.SlotCount(); ++s) {
            if (!FStore.SlotLive(s)) continue;
            const int32_t key = FStore.RowBySlot(s).AsInteger(nf_nb_internal_key);
            ASSERT_GT(key, lastKey) << "slots in key order";
            lastKey = key;
        }
        ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(*FView));
    }

private:
    std::mt19937 FRng;
    TNoticeStore FStore;
    std::unique_ptr<TNoticeGridView> FView;
    TStoreModel FModel;
    int32_t FMinSeverity = 0;
    int32_t FIssued = 0;                // the last key issued
    inline static int FLastOrigKey = 0; // originator keys are unique across drivers
};
