// The whole notice path: one fuzz input is one message handed to the notice callback of a board that holds
// a few thousand notices, with a filter set and a grid view ordered by two columns. After every message
// the view must still be the store's filtered rows in the view's order, and the board must be idle with
// its filter restored; a desync aborts.
//
// The board carries over from one input to the next (so messages meet the rows earlier ones left) and is
// built afresh every ResetEvery inputs, so an input depends on at most that many before it. The replay
// starts each run on a fresh board.
#include "FuzzSupport.h"

#include "adapters/ZNB_Cfg.h"
#include "core/TNoticeBoard.h"
#include "core/TNoticeGridView.h"
#include "core/Znb_callback.h"

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int SeedRows = 3000;
constexpr int ResetEvery = 64;
// The whole view is checked every WalkEvery inputs while fuzzing (a walk costs more than a message), on
// every input when replaying.
#ifdef NB_FUZZ_REPLAY
constexpr int WalkEvery = 1;
#else
constexpr int WalkEvery = 16;
#endif
const char* const FilterText = "note_severity >= 'Warning' OR note_summary LIKE '%disk%'\r\n"
                               "OR note_pvo_node IN ('node3', 'NODE4')";

const char* const Summaries[] = {
    "Disk full on /u01", "disk almost FULL",  "Backup failed", "", "Listener &lt;LISTENER&gt; is down",
    "CPU at 97%",        "Ärger mit Umlauten"};

// The seed notices: keys key0 .. key2999 (inputs use the same names), every field kind, some fields
// missing so that the sort meets nulls, values that tie on the first sort column.
std::string SeedMessage(int First, int Count) {
    std::string xml = "<NoticeMessage><NoticeList>";
    char text[512];
    for (int i = First; i < First + Count; ++i) {
        const int severity = 1 + (i * 7) % 4;
        std::snprintf(text, sizeof text,
                      "<Notice><Command>%s</Command><adpt_orig_key>key%d</adpt_orig_key>"
                      "<adpt_id>A%d</adpt_id><adpt_source_type>%s</adpt_source_type>"
                      "<adpt_source_id>SRC%d</adpt_source_id><note_summary>%s</note_summary>"
                      "<note_raised_date>2024-%02d-%02dT%02d:%02d:00</note_raised_date>"
                      "<note_severity>%d</note_severity><note_count>%d</note_count>",
                      i % 5 ? "post" : "new", i, i % 13, i % 2 ? "DuskMere" : "R/Vista", i % 29,
                      Summaries[i % 7], 1 + i % 12, 1 + i % 28, i % 24, i % 60, severity, i % 9);
        xml += text;
        xml += "<note_severity_str>" + SeverityStrings[size_t(severity - 1)] + "</note_severity_str>";
        if (i % 11) xml += "<note_pvo_node>node" + std::to_string(i % 17) + "</note_pvo_node>";
        if (i % 3)
            xml += "<note_last_raised_date>2025-01-" + std::to_string(10 + i % 19) +
                   "T10:00:" + std::to_string(10 + i % 50) + "</note_last_raised_date>";
        if (i % 8 == 0) xml += "<ack_date>2025-02-01T00:00:00</ack_date>";
        xml += "</Notice>";
    }
    return xml + "</NoticeList></NoticeMessage>";
}

// The slots a message changed, as the store announces them to ordered views.
class TChangedRows : public INoticeRowObserver {
public:
    void RowInserted(int32_t Slot) override { Changed.push_back(Slot); }
    void RowUpdated(int32_t Slot) override { Changed.push_back(Slot); }
    void RowDeleted(int32_t Slot) override { Deleted.push_back(Slot); }
    void RowsReset() override {}
    void Clear() {
        Changed.clear();
        Deleted.clear();
    }
    std::vector<int32_t> Changed, Deleted;
};

class TFuzzBoard {
public:
    TFuzzBoard() {
        NBConfig = std::make_unique<TNBConfig>(FFolder.Path());
        NBConfig->LogFileName = FFolder / "znb.log";
    }
    ~TFuzzBoard() {
        Drop();
        NBConfig.reset();
    }

    TNoticeBoard& Board() { return *FBoard; }
    TNoticeGridView& View() { return *FView; }
    TChangedRows& Changes() { return FChanges; }
    bool WalkAll() const { return FInputs % WalkEvery == 0; }

    // A fresh board every ResetEvery inputs.
    void Prepare() {
        if (FBoard && ++FInputs % ResetEvery != 0) return;
        Drop();
        std::remove(NBConfig->LogFileName.c_str()); // the log holds every failed message: keep it small
        FBoard = std::make_unique<TNoticeBoard>();
        SetNoticeBoard(FBoard.get());
        for (int first = 0; first < SeedRows; first += 500)
            FBoard->Process_XML_Notice(SeedMessage(first, 500));
        TNoticeStore& store = FBoard->cdsNoticeBd();
        store.SetFilterText(FilterText);
        store.SetFiltered(true);
        FView = std::make_unique<TNoticeGridView>(store);
        FView->SetOrder({}, {{nf_note_pvo_node, false}, {nf_note_last_raised_date, true}});
        store.AddRowObserver(&FChanges);
        FUZZ_CHECK(FView->RowCount() > SeedRows / 2 && FView->RowCount() < SeedRows, "seed filter");
    }

private:
    void Drop() {
        if (FBoard) FBoard->cdsNoticeBd().RemoveRowObserver(&FChanges);
        SetNoticeBoard(nullptr);
        FView.reset(); // the view observes the store: it goes first
        FBoard.reset();
    }

    TFuzzFolder FFolder;
    std::unique_ptr<TNoticeBoard> FBoard;
    std::unique_ptr<TNoticeGridView> FView;
    TChangedRows FChanges;
    int FInputs = 0;
};

// The row at Position must be found again by position and by key, and sort strictly between its
// neighbours.
void CheckPosition(const TNoticeGridView& View, int32_t Position, const std::vector<TSortColumn>& Order) {
    const TNoticeRecord* row = View.RowAt(Position);
    FUZZ_CHECK(row != nullptr, "no row at position " + std::to_string(Position));
    const int32_t key = row->AsInteger(nf_nb_internal_key);
    FUZZ_CHECK(View.KeyAt(Position) == key, "KeyAt differs from RowAt");
    FUZZ_CHECK(View.PositionOf(key) == Position,
               "PositionOf(" + std::to_string(key) + ") is not " + std::to_string(Position));
    if (const TNoticeRecord* before = View.RowAt(Position - 1))
        FUZZ_CHECK(CompareNoticeRows(*before, *row, Order) < 0,
                   "row out of order at " + std::to_string(Position));
    if (const TNoticeRecord* after = View.RowAt(Position + 1))
        FUZZ_CHECK(CompareNoticeRows(*row, *after, Order) < 0,
                   "row out of order at " + std::to_string(Position + 1));
}

// Every row in order: strictly ordered, held by the store, passing the filter, as many as the store counts.
void CheckAllRows(const TNoticeStore& Store, const TNoticeGridView& View,
                  const std::vector<TSortColumn>& Order) {
    const IRowFilter* filter = Store.ActiveFilter();
    const TNoticeRecord* previous = nullptr;
    int32_t walked = 0;
    View.WalkNodes([&](const TGridNode& node) {
        FUZZ_CHECK(!node.IsGroup && node.Position == walked, "walk out of step at " + std::to_string(walked));
        const TNoticeRecord* row = node.Row;
        const int32_t slot = Store.SlotOfKey(row->AsInteger(nf_nb_internal_key));
        FUZZ_CHECK(slot >= 0 && &Store.RowBySlot(slot) == row, "view shows a row the store does not hold");
        FUZZ_CHECK(filter->Accept(*row), "view shows a row the filter refuses");
        if (previous)
            FUZZ_CHECK(CompareNoticeRows(*previous, *row, Order) < 0,
                       "rows out of order at position " + std::to_string(walked));
        previous = row;
        ++walked;
        return true;
    });
    FUZZ_CHECK(walked == View.RowCount(), "the walk and RowCount differ");
    constexpr int32_t Stride = 61;
    for (int32_t i = 0; i < walked; i += Stride)
        CheckPosition(View, i, Order);
}

// The view against the store after a message: the rows the message changed are where they belong (or
// gone), the counts agree, and every WalkEvery inputs all rows are checked. A misplaced row is thus
// caught by the message that misplaced it, and anything else within WalkEvery messages.
void CheckBoard(TNoticeBoard& Board, const TNoticeGridView& View, const TChangedRows& Changes, bool WalkAll) {
    TNoticeStore& store = Board.cdsNoticeBd();
    FUZZ_CHECK(!Board.Busy(), "board left busy");
    FUZZ_CHECK(store.State() == TDataSetState::dsBrowse, "store left inserting or editing");
    FUZZ_CHECK(!store.ControlsDisabled(), "views left detached");
    FUZZ_CHECK(store.Filtered(), "filter not restored");
    FUZZ_CHECK(store.IndexName() == TNoticeStore::PrimaryIndexName, "index not set back");
    const IRowFilter* filter = store.ActiveFilter();
    FUZZ_CHECK(filter != nullptr, "filter lost");

    const int32_t count = View.RowCount();
    FUZZ_CHECK(count == store.RecordCount(), "view and store count different rows");
    FUZZ_CHECK(View.RowAt(count) == nullptr && View.RowAt(-1) == nullptr, "a row outside the view");
    std::vector<TSortColumn> order = View.GroupColumns();
    order.insert(order.end(), View.SortColumns().begin(), View.SortColumns().end());
    if (WalkAll) CheckAllRows(store, View, order);

    for (const int32_t slot : Changes.Changed) {
        if (!store.SlotLive(slot)) continue; // inserted or updated, then deleted by the same message
        const TNoticeRecord& row = store.RowBySlot(slot);
        const int32_t key = row.AsInteger(nf_nb_internal_key);
        FUZZ_CHECK(store.SlotPasses(slot) == filter->Accept(row),
                   "row " + std::to_string(key) + " filter mark");
        const int32_t position = View.PositionOf(key);
        FUZZ_CHECK((position >= 0) == store.SlotPasses(slot),
                   "changed row " + std::to_string(key) + " misplaced");
        if (position >= 0) CheckPosition(View, position, order);
    }
    for (const int32_t slot : Changes.Deleted)
        FUZZ_CHECK(View.PositionOf(slot + 1) == -1, "deleted row still in the view");

    // Originator keys of changed rows find their rows (the unique index follows inserts and updates).
    store.SetIndexName(TNoticeStore::OrigKeyIndexName);
    for (const int32_t slot : Changes.Changed) {
        if (!store.SlotLive(slot) || !store.SlotPasses(slot)) continue;
        const TNoticeRecord& row = store.RowBySlot(slot);
        if (row.IsNull(nf_adpt_orig_key)) continue;
        const std::string origKey(row.AsString(nf_adpt_orig_key));
        FUZZ_CHECK(store.FindKey(origKey), "key '" + origKey + "' not found");
        FUZZ_CHECK(store.ActiveRecord().AsInteger(nf_nb_internal_key) == row.AsInteger(nf_nb_internal_key),
                   "key '" + origKey + "' finds another row");
    }
    store.SetIndexName(TNoticeStore::PrimaryIndexName);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* Data, size_t Size) {
    static TFuzzBoard fixture;
    fixture.Prepare();
    fixture.Changes().Clear();
    const std::string message(
        InputText(Data, Size)); // the callback reads up to the first NUL, as adapters send
    const char* text = message.c_str();
    const int32_t result = NoticeCallback(0, &text, 0);
    FUZZ_CHECK(result == 0 || result == ZNB_NOTICE_FAILED, "callback result " + std::to_string(result));
    CheckBoard(fixture.Board(), fixture.View(), fixture.Changes(), fixture.WalkAll());
    return 0;
}
