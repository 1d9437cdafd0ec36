// Acknowledge and delete of selected notices: which adapter gets which codes, in which order, and that
// the store itself is left alone.
#include "adapters/ZNBA_Interface.h"
#include "adapters/ZNB_Cfg.h"
#include "core/TNoticeBoard.h"
#include "core/Znb_noteactions.h"
#include "support/StrUtils.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

struct TCursorLog : INoteActionCursor {
    void SetHourglass(bool on) override { Calls += on ? "+" : "-"; }
    std::string Calls;
};

class NoteActions : public ::testing::Test {
protected:
    void SetUp() override {
        static int serial = 0;
        Folder = fs::temp_directory_path() /
                 ("nb_actions_" + std::to_string(::getpid()) + "_" + std::to_string(++serial));
        fs::create_directories(Folder);
        NBConfig = std::make_unique<TNBConfig>(Folder.string() + "/");
        NBConfig->LogFileName = (Folder / "znb.log").string();
        // Two adapters in two libraries, each recording what it is handed.
        Adapters.Add_Adapter("DuskMere", "ZNBA_TestRecorder");
        Adapters.Add_Adapter("R/Vista", "ZNBA_TestBadConnect");
        for (int i = 0; i < 2; ++i) {
            TZNB_Adapter_Obj* adapter = Adapters.Objects(i);
            ASSERT_EQ(adapter->Load_DLL(adapter->DLL_Name), 0);
            // The runtime may keep a library in memory after its last release: start from a clean record.
            reinterpret_cast<void (*)()>(GetProcAddress(adapter->DLL_Handle, "ZNBA_Test_Reset"))();
        }
        // Rows 1..5: DuskMere with blanks, R/VISTA in capitals, no source type, an unknown type, DuskMere.
        std::string notices;
        const char* types[] = {"  DuskMere ", "R/VISTA", "", "Other", "duskmere"};
        for (int i = 1; i <= 5; ++i) {
            const std::string n = std::to_string(i);
            notices += "<Notice><Command>post</Command><adpt_id>ID" + n + "</adpt_id><adpt_orig_key>K" + n +
                       "</adpt_orig_key><adpt_source_type>" + types[i - 1] +
                       "</adpt_source_type><ack_code>A" + n + "</ack_code><del_code>D" + n +
                       "</del_code></Notice>";
        }
        Board.Process_XML_Notice("<M><NoticeList>" + notices + "</NoticeList></M>");
        ASSERT_EQ(Board.cdsNoticeBd().RecordCount(), 5);
    }
    void TearDown() override {
        NBConfig.reset();
        fs::remove_all(Folder);
    }
    std::string Calls(const char* adapter) {
        auto calls = reinterpret_cast<const char* (*)()>(
            GetProcAddress(Adapters.Get_Adapter(adapter)->DLL_Handle, "ZNBA_Test_Calls"));
        return calls();
    }
    std::string Log() const {
        std::string text;
        ReadWholeFile((Folder / "znb.log").string(), text);
        return text;
    }

    fs::path Folder;
    TNoticeBoard Board;
    TZNB_Adapter_List Adapters;
};

} // namespace

TEST(NoteActionsMapping, SourceTypesMapToAdapterNames) {
    EXPECT_EQ(AdapterNameForSourceType("  DuskMere "), "DuskMere");
    EXPECT_EQ(AdapterNameForSourceType("R/VISTA"), "R/Vista");
    EXPECT_EQ(AdapterNameForSourceType(" Demo"), "demo");
    EXPECT_EQ(AdapterNameForSourceType("   "), "");
}

TEST_F(NoteActions, AcknowledgeSendsEachRowsIdAndAckCodeInSelectionOrder) {
    TCursorLog cursor;
    btnAckNoteClick(Board.cdsNoticeBd(), {5, 2, 3, 1, 4}, &Adapters, &cursor);
    // Each size counts the NUL.
    EXPECT_EQ(Calls("DuskMere"), "Acknowledge_Note ID5/4 A5/3\nAcknowledge_Note ID1/4 A1/3\n");
    EXPECT_EQ(Calls("R/Vista"), "Acknowledge_Note ID2/4 A2/3\n");
    // The unknown type is logged under the delete handler's name; the empty one not at all.
    EXPECT_NE(Log().find("  Del Note Click : Could not find adapter other\n"), std::string::npos);
    EXPECT_EQ(Log().find("Could not find adapter \n"), std::string::npos);
    EXPECT_EQ(cursor.Calls, "+-");
    EXPECT_EQ(Board.cdsNoticeBd().RecordCount(), 5);
    EXPECT_FALSE(Board.cdsNoticeBd().ControlsDisabled());
    EXPECT_EQ(Board.cdsNoticeBd().GetBookmark(), 4); // the last selected row
}

TEST_F(NoteActions, DeleteSendsDelCodesAndMovesToTheFirstRowWithoutDeleting) {
    Board.cdsNoticeBd().Last();
    btnDelNoteClick(Board.cdsNoticeBd(), {2, 1}, &Adapters);
    EXPECT_EQ(Calls("R/Vista"), "Delete_Note ID2/4 D2/3\n");
    EXPECT_EQ(Calls("DuskMere"), "Delete_Note ID1/4 D1/3\n");
    EXPECT_EQ(Board.cdsNoticeBd().RecNo(), 1);
    EXPECT_EQ(Board.cdsNoticeBd().RecordCount(), 5);
}

TEST_F(NoteActions, NoSelectionOrNoAdapterListSendsNothing) {
    TCursorLog cursor;
    btnAckNoteClick(Board.cdsNoticeBd(), {}, &Adapters, &cursor);
    EXPECT_EQ(cursor.Calls, "");
    btnDelNoteClick(Board.cdsNoticeBd(), {1}, nullptr);
    EXPECT_EQ(Calls("DuskMere"), "");
    EXPECT_NE(Log().find("Del Note Click : Could not find adapter DuskMere"), std::string::npos);
}

TEST_F(NoteActions, AdapterExceptionEndsTheActionAndRestoresTheViews) {
    TZNB_Adapter_Obj* rvista = Adapters.Get_Adapter("R/Vista");
    rvista->UnLoad_DLL();
    ASSERT_EQ(rvista->Load_DLL("ZNBA_TestThrows"), 0);
    reinterpret_cast<void (*)()>(GetProcAddress(rvista->DLL_Handle, "ZNBA_Test_Reset"))();
    TCursorLog cursor;
    EXPECT_THROW(btnAckNoteClick(Board.cdsNoticeBd(), {2, 1}, &Adapters, &cursor), EAdapterError);
    EXPECT_EQ(Calls("DuskMere"), ""); // row 1 came after the failing one
    EXPECT_EQ(cursor.Calls, "+-");
    EXPECT_FALSE(Board.cdsNoticeBd().ControlsDisabled());
}

namespace {
// Records the progress calls and cancels after a given number of notices.
struct TProgressLog : INoteActionProgress {
    void Start(size_t Total) override { Calls += "start " + std::to_string(Total) + ";"; }
    bool Step(size_t Done) override {
        Calls += std::to_string(Done) + ";";
        return Done != CancelAfter;
    }
    void Finish() override { Calls += "finish"; }
    size_t CancelAfter = 0;
    std::string Calls;
};
} // namespace

TEST_F(NoteActions, ProgressHearsEveryNoticeAndCancelStopsTheRest) {
    TProgressLog all;
    btnAckNoteClick(Board.cdsNoticeBd(), {1, 2, 3}, &Adapters, nullptr, &all);
    EXPECT_EQ(all.Calls, "start 3;1;2;3;finish");

    reinterpret_cast<void (*)()>(
        GetProcAddress(Adapters.Get_Adapter("DuskMere")->DLL_Handle, "ZNBA_Test_Reset"))();
    TProgressLog cancelled;
    cancelled.CancelAfter = 1;
    TCursorLog cursor;
    btnDelNoteClick(Board.cdsNoticeBd(), {5, 1}, &Adapters, &cursor, &cancelled);
    EXPECT_EQ(cancelled.Calls, "start 2;1;finish");
    EXPECT_EQ(Calls("DuskMere"), "Delete_Note ID5/4 D5/3\n"); // row 1 was never sent
    EXPECT_EQ(cursor.Calls, "+-");
}

TEST_F(NoteActions, ProgressIsFinishedWhenAnAdapterThrows) {
    TZNB_Adapter_Obj* rvista = Adapters.Get_Adapter("R/Vista");
    rvista->UnLoad_DLL();
    ASSERT_EQ(rvista->Load_DLL("ZNBA_TestThrows"), 0);
    TProgressLog progress;
    EXPECT_THROW(btnAckNoteClick(Board.cdsNoticeBd(), {1, 2, 5}, &Adapters, nullptr, &progress),
                 EAdapterError);
    EXPECT_EQ(progress.Calls, "start 3;1;finish");
}
