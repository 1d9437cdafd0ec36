// The grid's row order under real notice messages: the board switches the filter off and on and detaches
// the views around every message; the view must follow the rows without reading the store again.
#include "GridViewCheck.h"
#include "NoticeBoardFixture.h"

#include <random>
#include <string>

namespace {

class GridViewProtocolTest : public NoticeBoardTest {
protected:
    std::string RandomNotice() {
        static const char* const Commands[] = {"post", "post", "post", "update", "delete", "new"};
        static const char* const Summaries[] = {
            "Disk full",     "disk FULL", "Tablespace TS_7 is 91% full", "\u00c9chec de sauvegarde",
            "Listener down", ""};
        const std::string command = Commands[FRng() % std::size(Commands)];
        // Keys come from a small pool, so posts update and deletes find rows; "new" of a known key fails
        // and drops the rest of its message.
        std::string elements = El("adpt_orig_key", "key" + std::to_string(FRng() % 60));
        if (FRng() % 4 != 0) elements += El("note_severity", std::to_string(1 + FRng() % 4));
        if (FRng() % 3 != 0) elements += El("note_summary", Summaries[FRng() % std::size(Summaries)]);
        if (FRng() % 3 != 0) elements += El("note_pvo_node", "NODE" + std::to_string(FRng() % 3));
        if (FRng() % 5 == 0) elements += El("note_text", "details " + std::to_string(FRng()));
        return Notice(command, elements);
    }
    std::mt19937 FRng{2024};
};

} // namespace

TEST_F(GridViewProtocolTest, MessagesWithAFilterKeepTheViewInStepWithoutRebuilding) {
    Store().SetFilterText("note_severity >= 2 OR note_severity IS NULL");
    Store().SetFiltered(true);
    TNoticeGridView view(Store());
    view.SetOrder({{nf_note_pvo_node, false}}, {{nf_note_severity, true}, {nf_note_summary, false}});
    ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(view));
    const uint64_t rebuilds = view.RebuildCount();
    for (int message = 0; message < 150; ++message) {
        std::string notices;
        for (int n = 1 + int(FRng() % 10); n > 0; --n)
            notices += RandomNotice();
        Send(Message(notices));
        ASSERT_TRUE(Store().Filtered());
        ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(view)) << "after message " << message;
    }
    EXPECT_GT(Store().TotalCount(), Store().RecordCount()); // some rows were hidden by the filter
    EXPECT_EQ(view.RebuildCount(), rebuilds);
}
