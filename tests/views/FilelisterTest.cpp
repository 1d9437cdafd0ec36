// The file lister on a real temporary folder.
#include "views/Filelisteru.h"

#include "platform/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace {

class FileLister : public testing::Test {
protected:
    void SetUp() override {
        FFolder = std::filesystem::temp_directory_path() /
                  ("nb_lister_" + std::to_string(reinterpret_cast<uintptr_t>(this)));
        std::filesystem::create_directories(FFolder);
        for (const char* name : {"a.nbf", "b.NBF", ".hidden.nbf", "c.nbd", "notes.txt"})
            std::ofstream(FFolder / name) << "0";
        std::filesystem::create_directory(FFolder / "folder.nbf");
    }
    void TearDown() override { std::filesystem::remove_all(FFolder); }
    std::string Folder() const { return FFolder.string(); }

    std::filesystem::path FFolder;
};

} // namespace

TEST_F(FileLister, ListsMatchesAfterTheDefaultString) {
    TFIleLister lister;
    lister.SetFolderPath(Folder());
    EXPECT_TRUE(lister.Items.empty()) << "no pattern, no list";
    lister.SetDefaultString("<No Filter>");
    EXPECT_TRUE(lister.Items.empty()) << "not even the default string without a pattern";
    lister.SetFilePattern("*.nbf");
    ASSERT_EQ(lister.Items.size(), 5u);
    EXPECT_EQ(lister.GetItem(0), "<No Filter>");
    EXPECT_EQ(lister.GetFilename(0), "");
    const std::vector<std::string> found(lister.Items.begin() + 1, lister.Items.end());
    EXPECT_THAT(found, UnorderedElementsAre("a", "b", ".hidden", "folder"));
    for (int i = 1; i < 5; ++i)
        EXPECT_EQ(lister.GetFilename(i),
                  lister.GetFolderPath() + lister.GetItem(i) + (lister.GetItem(i) == "b" ? ".NBF" : ".nbf"));
    EXPECT_THROW(lister.GetItem(5), EListError);
}

TEST_F(FileLister, RefreshKeepsOldFileNamesInFront) {
    TFIleLister lister;
    lister.SetFolderPath(Folder());
    lister.SetFilePattern("*.nbd");
    ASSERT_THAT(lister.Items, ElementsAre("c"));
    lister.Refresh();
    EXPECT_THAT(lister.Items, ElementsAre("c"));
    EXPECT_EQ(lister.FileNames.size(), 2u);
}

TEST_F(FileLister, MissingFolderListsJustTheDefault) {
    TFIleLister lister;
    lister.SetDefaultString("<Default>");
    lister.SetFilePattern("*.nbd");
    lister.SetFolderPath(Folder() + "/absent");
    EXPECT_THAT(lister.Items, ElementsAre("<Default>"));
    EXPECT_EQ(lister.GetFolderPath(), Folder() + "/absent/");
}

TEST_F(FileLister, InitialSelection) {
    TFIleLister lister;
    lister.SetFolderPath(Folder());
    lister.SetDefaultString("<Default>");
    lister.SetFilePattern("*.nbd");
    EXPECT_EQ(lister.GetInitialDefaultItemIndex(), 0);
    lister.PreferredItem = "C";
    EXPECT_EQ(lister.GetInitialDefaultItemIndex(), 1) << "letter case is ignored";
    lister.PreferredItem = "gone";
    EXPECT_EQ(lister.GetInitialDefaultItemIndex(), 0);
    lister.FallbackItem = "c";
    EXPECT_EQ(lister.GetInitialDefaultItemIndex(), 1);
    lister.PreferDefault = false;
    lister.FallbackItem.clear();
    EXPECT_EQ(lister.GetInitialDefaultItemIndex(), 0);
    TFIleLister empty;
    EXPECT_EQ(empty.GetInitialDefaultItemIndex(), -1);
    EXPECT_EQ(empty.GetFolderPath(), ExecutableFolder());
}

TEST(FileMask, StarAndQuestionMarkIgnoringCase) {
    EXPECT_TRUE(MatchesFileMask("Errors.NBF", "*.nbf"));
    EXPECT_TRUE(MatchesFileMask("a.b.nbf", "*.nbf"));
    EXPECT_FALSE(MatchesFileMask("a.nbfx", "*.nbf"));
    EXPECT_TRUE(MatchesFileMask("x1.nbd", "x?.nbd"));
    EXPECT_FALSE(MatchesFileMask("x12.nbd", "x?.nbd"));
}
