// A store filled and changed at random over texts that share long prefixes, differ in letter case only,
// leave ASCII, or are not UTF-8 at all, with nulls in every field the orders, filters and searches read.
#pragma once

#include "GridViewCheck.h"

#include "core/FilterExpression.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

class TRandomBoard {
public:
    // clang-format off
    static constexpr const char* Pieces[] = {
    "", "a", "A", "disk full", "DISK FULL", "Disk Full", "Tablespace TS_1", "tablespace ts_12 is 91% full",
    "TABLESPACE TS_1", "\u00e9t\u00e9", "\u00c9T\u00c9", "stra\u00dfe", "STRASSE", "\u03a9mega", "\u03c9MEGA",
    "_x", "zeta", "Zeta", "\xff\xfe"};
    // clang-format on
    explicit TRandomBoard(uint32_t seed) : FRng(seed) { FStore.SetFilterCompiler(CompileFilterExpression); }

    TNoticeStore& Store() { return FStore; }
    uint32_t Pick(uint32_t n) { return FRng() % n; }

    std::string Text(bool longOnes) {
        std::string s = Pieces[Pick(std::size(Pieces))];
        if (longOnes)
            for (uint32_t n = Pick(3); n > 0; --n)
                s += std::string(" ") + Pieces[Pick(std::size(Pieces))];
        return s;
    }
    // Sets one of the fields the orders and filters below use, or makes it null.
    void Randomize(TNoticeRecord& r, TNoticeField f) {
        if (Pick(8) == 0) {
            r.SetNull(f);
            return;
        }
        switch (f) {
        case nf_note_severity:
            r.SetInteger(f, int32_t(1 + Pick(4)));
            break;
        case nf_note_count:
            r.SetInteger(f, int32_t(Pick(200)) - 50);
            break;
        case nf_note_raised_date:
            r.SetDateTime(f, 46000 + Pick(30) / 4.0);
            break;
        case nf_note_summary:
            r.SetString(f, Text(true));
            break;
        default:
            r.SetString(f, Text(false));
            break;
        }
    }
    static constexpr TNoticeField Fields[] = {nf_note_severity,      nf_note_count,    nf_note_raised_date,
                                              nf_note_summary,       nf_note_pvo_node, nf_adpt_source_id,
                                              nf_note_group_notified};

    void Insert() {
        FStore.Append();
        FStore.Buffer().SetString(nf_adpt_orig_key, "K" + std::to_string(++FKeys));
        for (TNoticeField f : Fields)
            Randomize(FStore.Buffer(), f);
        FStore.Post();
    }
    // A notice whose originator key is taken (in another letter case) is refused and cancelled, as a
    // message's "new" of a known key is.
    void InsertTakenKey() {
        if (!GoToRandomRow()) return;
        const std::string taken(FStore.ActiveRecord().AsString(nf_adpt_orig_key));
        FStore.Append();
        FStore.Buffer().SetString(nf_adpt_orig_key, "k" + taken.substr(1));
        Randomize(FStore.Buffer(), nf_note_summary);
        EXPECT_THROW(FStore.Post(), EDatabaseError);
        FStore.Cancel();
    }
    // Moves to a random visible row; false when there is none.
    bool GoToRandomRow() {
        if (FStore.RecordCount() == 0) return false;
        FStore.SetRecNo(int32_t(1 + Pick(uint32_t(FStore.RecordCount()))));
        return true;
    }
    void Update() {
        if (!GoToRandomRow()) return;
        FStore.Edit();
        switch (Pick(4)) {
        case 0: // a value no order reads
            FStore.Buffer().SetString(nf_note_text, Text(true));
            break;
        case 1: // nothing at all
            break;
        default:
            for (uint32_t n = 1 + Pick(2); n > 0; --n)
                Randomize(FStore.Buffer(), Fields[Pick(std::size(Fields))]);
        }
        FStore.Post();
    }
    void Delete() {
        if (GoToRandomRow()) FStore.Delete();
    }
    void RandomChange() {
        const uint32_t p = Pick(11);
        if (p < 4)
            Insert();
        else if (p < 8)
            Update();
        else if (p < 10)
            Delete();
        else
            InsertTakenKey();
    }

    std::vector<TSortColumn> RandomColumns(uint32_t most) {
        std::vector<TSortColumn> cols;
        for (uint32_t n = Pick(most + 1); n > 0; --n)
            cols.push_back({Fields[Pick(std::size(Fields))], Pick(2) == 0});
        return cols;
    }

private:
    std::mt19937 FRng;
    TNoticeStore FStore;
    int FKeys = 0;
};
