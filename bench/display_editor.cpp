// Opening the display editor (TfrmNBViewEditor) on a board of 1 000 000 typical notices (NoticeSamples.h)
// filled through the notice callback, the board's grid shown and sorted by summary, on the offscreen
// platform. Timed: constructing the editor (its copy of the store and the preview grid in the board grid's
// columns and order), what the display list does before showing it, and showing it with the preview's
// first screen painted:
//  - Properties: the current display loaded (a file holding the board grid's own layout), the field list
//    and the controls filled;
//  - AddFromDefault: the default view built on the preview, which orders by severity: the one sort the
//    display itself asks for;
//  - DeepReference: the same Properties steps over a deep copy of the store (StoreDeepCopy.h) with a
//    preview grid sorted for itself, which is what the editor cost before copies shared the store.
// Thread CPU time (the machine is shared); the heap in use (mallinfo2) added while the editor is open.
// Goal: opening the editor costs under 100 ms and under 20 MB. Most of a cold open is the kernel handing
// out fresh pages; run it also with GLIBC_TUNABLES=glibc.malloc.hugetlb=1, as the board's launchers do.
#include "SampleBoard.h"
#include "StoreDeepCopy.h"
#include "WidgetBench.h"

#include "adapters/ZNB_Cfg.h"
#include "core/TNoticeBoard.h"
#include "core/Znb_callback.h"
#include "core/ui/NoticeBdGrid.h"
#include "views/Displayu.h"
#include "views/ui/NBViewEditor.h"

#include <QApplication>
#include <QDialog>
#include <QWindow>

#include <benchmark/benchmark.h>

#include <ctime>
#include <filesystem>
#include <memory>

namespace {

constexpr int64_t Rows = 1000000;
const char* const CurrentName = "bench_current";

struct TBoard {
    TNoticeBoard Board;
    std::unique_ptr<TNoticeBdGrid> Grid;
    TDisplay Display;
};

// The board, its grid sorted by summary and shown, and its current display saved as a file. Freed before
// the application object goes.
std::unique_ptr<TBoard> board;

TBoard& Board() {
    if (!board) {
        const std::filesystem::path folder = std::filesystem::temp_directory_path() / "nb_display_editor";
        std::filesystem::create_directories(folder);
        NBConfig = std::make_unique<TNBConfig>(folder.string() + "/");
        NBConfig->NBFolder = folder.string() + "/";
        board = std::make_unique<TBoard>();
        SetNoticeBoard(&board->Board);
        FillBoard(Rows);
        board->Grid = std::make_unique<TNoticeBdGrid>(board->Board.cdsNoticeBd());
        board->Grid->resize(1000, 700);
        board->Grid->AssignColumnHeaders();
        board->Display.SetGrid(board->Grid.get());
        board->Grid->SetDisplay(&board->Display);
        CreateDefaultView(board->Display);
        TGridLayout layout = board->Grid->Layout();
        layout.Column(nf_note_severity).Sort = TSortDirection::sdNone;
        layout.Column(nf_note_summary).Sort = TSortDirection::sdAscending;
        board->Grid->SetLayout(layout);
        board->Display.SaveToFile(CurrentName);
        ShowExposed(*board->Grid);
    }
    return *board;
}

enum class TOpen { Properties, AddFromDefault, DeepReference };

// Cold (state.range(0) == 0): every open starts from memory given back to the system, the first open's
// case and the worst. Reopen (1): the memory the last editor freed is still the process's, as when the
// editor is opened again.
void Open(benchmark::State& state, TOpen how) {
    TBoard& b = Board();
    const bool cold = state.range(0) == 0;
    for (auto _ : state) {
        const size_t heap = HeapInUse(cold);
        const double t0 = ThreadSeconds();
        std::unique_ptr<TNoticeStore> deep;
        std::unique_ptr<TNoticeBdGrid> deepGrid;
        std::unique_ptr<TfrmNBViewEditor> editor;
        if (how == TOpen::DeepReference) {
            // Before: a deep copy of the board's store, and a preview grid that sorts for itself.
            deep = std::make_unique<TNoticeStore>();
            DeepCopyStore(b.Board.cdsNoticeBd(), *deep);
            deepGrid = std::make_unique<TNoticeBdGrid>(*deep);
            deepGrid->SetLayout(b.Grid->Layout());
            editor = std::make_unique<TfrmNBViewEditor>(*deep, deepGrid.get());
        } else {
            // As the display list opens it: a copy of the default display starts in the default's order.
            const TGridLayout defaults = DefaultViewLayout(b.Grid->WidthUnit());
            editor = std::make_unique<TfrmNBViewEditor>(b.Board.cdsNoticeBd(), b.Grid.get(),
                                                        how == TOpen::AddFromDefault ? &defaults : nullptr);
        }
        editor->Display().SetGrid(&editor->PreviewGrid());
        if (how == TOpen::AddFromDefault)
            CreateDefaultView(editor->Display());
        else
            editor->Display().LoadFromFile(CurrentName);
        editor->UpdateVisibleFieldEditor();
        editor->SynchControls();
        ShowExposed(*editor);
        editor->PreviewGrid().viewport()->repaint();
        state.SetIterationTime(ThreadSeconds() - t0);
        state.counters["heap_MB"] = (double(HeapInUse(false)) - double(heap)) / 1e6;
        state.counters["preview_rebuilds"] = double(editor->PreviewGrid().View().RebuildCount());
        state.counters["preview_rows"] = editor->PreviewGrid().model()->rowCount();
        editor.reset();
        deepGrid.reset();
        deep.reset();
    }
}

void BM_OpenDisplayEditor_Properties(benchmark::State& state) {
    Open(state, TOpen::Properties);
}
void BM_OpenDisplayEditor_AddFromDefault(benchmark::State& state) {
    Open(state, TOpen::AddFromDefault);
}
void BM_OpenDisplayEditor_DeepReference(benchmark::State& state) {
    Open(state, TOpen::DeepReference);
}

} // namespace

// Cold (a fresh editor's first open) and reopened, ten opens each.
static void ColdAndReopened(benchmark::internal::Benchmark* B) {
    B->UseManualTime()->Iterations(10)->ArgName("reopen")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_OpenDisplayEditor_Properties)->Apply(ColdAndReopened);
BENCHMARK(BM_OpenDisplayEditor_AddFromDefault)->Apply(ColdAndReopened);
BENCHMARK(BM_OpenDisplayEditor_DeepReference)
    ->UseManualTime()
    ->Iterations(1)
    ->Arg(0)
    ->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    return RunOffscreenBenchmarks(argc, argv, {}, [] { board.reset(); });
}
