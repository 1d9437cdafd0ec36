// Filter and display file names that must stay in the notice board folder, and the count of the notices a
// filter passes, taken a slice at a time.
#include "views/BoardFiles.h"
#include "views/FilterPassCount.h"

#include "adapters/TempFolder.h"
#include "core/FilterExpression.h"
#include "core/Nb_utils.h"
#include "core/TNoticeStore.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

class BoardFiles : public testing::Test {
protected:
    void SetUp() override {
        FOld = FilterFolder;
        FilterFolder = Board.Path();
    }
    void TearDown() override { FilterFolder = FOld; }

    TTempFolder Board;
    TTempFolder Outside;
    std::string FOld;
};

} // namespace

TEST_F(BoardFiles, OnlyPlainNamesOfTheFolderArePaths) {
    std::string path = "stale";
    EXPECT_TRUE(BoardFilePath("Severe errors", ".nbf", path)) << "taste is the name check's business";
    EXPECT_EQ(path, Board.Path() + "Severe errors.nbf");
    EXPECT_TRUE(BoardFilePath("...", ".nbf", path)) << "'....nbf' is a file of the folder";
    for (const std::string& name : std::initializer_list<std::string>{
             "", ".", "..", "../x", "a/b", "..\\x", "/etc/passwd", std::string("a\0b", 3)}) {
        EXPECT_FALSE(BoardFilePath(name, ".nbf", path)) << name;
        EXPECT_EQ(path, "") << name;
    }
}

TEST_F(BoardFiles, LinksOutOfTheFolderAreRefused) {
    namespace fs = std::filesystem;
    WriteTextFile(Outside / "target", "precious");
    fs::create_symlink(Outside / "target", Board / "out.nbf");
    fs::create_symlink(Outside / "missing", Board / "dangling.nbf");
    WriteTextFile(Board / "real.nbf", "0");
    fs::create_symlink(Board / "real.nbf", Board / "alias.nbf");
    std::string path;
    EXPECT_FALSE(BoardFilePath("out", ".nbf", path));
    EXPECT_FALSE(BoardFilePath("dangling", ".nbf", path));
    EXPECT_TRUE(BoardFilePath("alias", ".nbf", path)) << "a link to a file of the folder is harmless";
    EXPECT_TRUE(BoardFilePath("new", ".nbf", path));
}

TEST_F(BoardFiles, DeleteRemovesFilesAndLinksButNeverFolders) {
    namespace fs = std::filesystem;
    WriteTextFile(Board / "a.nbf", "0");
    WriteTextFile(Outside / "target", "precious");
    fs::create_symlink(Outside / "target", Board / "out.nbf");
    fs::create_directory(Board / "empty.nbf");
    EXPECT_TRUE(DeleteBoardFile(Board / "a.nbf"));
    EXPECT_FALSE(fs::exists(Board / "a.nbf"));
    EXPECT_TRUE(DeleteBoardFile(Board / "out.nbf"));
    EXPECT_EQ(ReadTextFile(Outside / "target"), "precious");
    EXPECT_FALSE(DeleteBoardFile(Board / "empty.nbf"));
    EXPECT_TRUE(fs::is_directory(Board / "empty.nbf"));
    EXPECT_FALSE(DeleteBoardFile(Board / "gone.nbf"));
}

TEST(FilterPassCount, CountsInStepsAndMatchesTheStoresOwnCount) {
    TNoticeStore store;
    store.SetFilterCompiler(CompileFilterExpression);
    for (int i = 0; i < 10000; ++i) {
        store.Append();
        store.Buffer().SetString(nf_adpt_orig_key, "k" + std::to_string(i));
        store.Buffer().SetInteger(nf_note_severity, 1 + i % 4);
        store.Post();
    }
    for (int key : {5, 500, 9999}) { // deleted rows leave slots that do not count
        store.SetIndexName("primaryIdx");
        ASSERT_TRUE(store.FindKey(std::to_string(key)));
        store.Delete();
    }
    store.SetFilterText("note_severity = 2"); // the store's own filter plays no part
    store.SetFiltered(true);

    TFilterPassCount count;
    EXPECT_FALSE(count.Done());
    count.Start(store, "note_severity >= 3");
    int steps = 1;
    while (!count.Step(1000))
        ++steps;
    EXPECT_EQ(steps, 10);
    EXPECT_TRUE(count.Done());
    EXPECT_FALSE(count.Running());
    EXPECT_EQ(count.Total(), 9997);
    store.SetFilterText("note_severity >= 3");
    EXPECT_EQ(count.Passed(), store.RecordCount());
    EXPECT_DOUBLE_EQ(count.Progress(), 1.0);

    EXPECT_THROW(count.Start(store, "note_severity >="), EFilterExpressionError);
    EXPECT_FALSE(count.Running());
    EXPECT_FALSE(count.Step(100)) << "nothing to count after a failed start";
    TNoticeStore empty;
    count.Start(empty, "");
    EXPECT_TRUE(count.Step(1));
    EXPECT_EQ(count.Passed(), 0);
}
