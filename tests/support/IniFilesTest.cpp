#include "support/IniFiles.h"

#include "adapters/TempFolder.h"
#include "support/Exception.h"

#include <gtest/gtest.h>

#include <filesystem>

TEST(IniFile, KeysAndSectionsMatchInAnyCase) {
    TTempFolder folder;
    WriteTextFile(
        folder / "a.ini",
        "[Noticeboard]\nConnectDelay = 7\nNBFolder=/x/y\nQuoted = \"/with blanks/ \"\nHalfQuoted=\"/x\n");
    TIniFile ini(folder / "a.ini");
    EXPECT_EQ(ini.ReadInteger("NOTICEBOARD", "connectdelay", 0), 7);
    EXPECT_EQ(ini.ReadString("noticeboard", "NBFOLDER", ""), "/x/y");
    EXPECT_EQ(ini.ReadString("noticeboard", "missing", "def"), "def");
    EXPECT_EQ(ini.ReadString("noticeboard", "Quoted", ""), "/with blanks/ ");
    EXPECT_EQ(ini.ReadString("noticeboard", "HalfQuoted", ""), "\"/x");
    EXPECT_TRUE(ini.SectionExists("NoticeBoard"));
    EXPECT_FALSE(ini.SectionExists("Other"));
    ini.WriteString("NOTICEBOARD", "NBFOLDER", "/z");
    EXPECT_EQ(ini.ReadSection("Noticeboard"),
              (std::vector<std::string>{"ConnectDelay", "NBFolder", "Quoted", "HalfQuoted"}));
}

// Reading takes off the blanks around a value and a pair of quotes: a folder quoted by hand for its
// trailing blank lost the blank at the board's next save, and a quoted value lost a pair at every save.
TEST(IniFile, WhatIsWrittenReadsBackTheSame) {
    TTempFolder folder;
    const std::string file = folder / "a.ini";
    const std::vector<std::string> values = {"/with blank/ ", " lead",  "\tx",   "\"quoted\"",  "'single'",
                                             "\"\"",          "\"half", "plain", "it's \"so\"", ""};
    for (int round = 0; round < 2; ++round) {
        TIniFile ini(file);
        for (size_t i = 0; i < values.size(); ++i) {
            if (round == 0) ini.WriteString("s", "k" + std::to_string(i), values[i]);
            EXPECT_EQ(ini.ReadString("s", "k" + std::to_string(i), "?"), values[i]) << round;
        }
        ini.UpdateFile();
    }
    EXPECT_NE(ReadTextFile(file).find("k7=plain\n"), std::string::npos); // no quotes where none are needed
}

TEST(IniFile, NumbersAndBooleansFallBackToTheDefault) {
    TTempFolder folder;
    WriteTextFile(folder / "a.ini", "[s]\nn=abc\nm=-12\nh=0x1F\nd=$10\ne=\nb1=1\nb0=0\nb2=2\nbt=true\n");
    TIniFile ini(folder / "a.ini");
    EXPECT_EQ(ini.ReadInteger("s", "n", 15), 15);
    EXPECT_EQ(ini.ReadInteger("s", "m", 0), -12);
    EXPECT_EQ(ini.ReadInteger("s", "h", 0), 31);
    EXPECT_EQ(ini.ReadInteger("s", "d", 0), 16);
    EXPECT_EQ(ini.ReadInteger("s", "e", 9), 9);
    EXPECT_TRUE(ini.ReadBool("s", "b1", false));
    EXPECT_FALSE(ini.ReadBool("s", "b0", true));
    EXPECT_TRUE(ini.ReadBool("s", "b2", false));
    EXPECT_TRUE(ini.ReadBool("s", "bt", true)); // not a number: the default
    EXPECT_FALSE(ini.ReadBool("s", "bt", false));
}

TEST(IniFile, SaveKeepsCommentsAndOrderAndWritesIntegerBooleans) {
    TTempFolder folder;
    const std::string file = folder / "a.ini";
    WriteTextFile(file, "; top comment\n[B]\nk=1\n; about A\n[A]\nx=2\n");
    {
        TIniFile ini(file);
        ini.WriteBool("B", "flag", false);
        ini.WriteInteger("C", "n", -3);
        ini.UpdateFile();
    }
    const std::string text = ReadTextFile(file);
    for (const char* part : {"; top comment\n", "k=1\nflag=0\n", "; about A\n[A]\nx=2\n", "[C]\nn=-3\n"})
        EXPECT_NE(text.find(part), std::string::npos) << part << " in\n" << text;
    EXPECT_LT(text.find("[B]"), text.find("[A]"));
    {
        TIniFile again(file); // a second save changes nothing: layout does not drift
        again.UpdateFile();
    }
    EXPECT_EQ(ReadTextFile(file), text);
    TIniFile back(file);
    EXPECT_EQ(back.ReadSections(), (std::vector<std::string>{"B", "A", "C"}));
    back.EraseSection("b");
    EXPECT_FALSE(back.SectionExists("B"));
    EXPECT_TRUE(back.ReadSection("B").empty());
    EXPECT_EQ(back.ReadSectionValues("a"), (std::vector<std::pair<std::string, std::string>>{{"x", "2"}}));
    // Only the file itself is in the folder: the temporary file was renamed over it.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

TEST(IniFile, UnreadableFilesReadAsEmptyAndFailedSavesLeaveNoTrace) {
    TTempFolder folder;
    std::filesystem::create_directory(folder / "dir.ini");
    TIniFile dir(folder / "dir.ini");
    EXPECT_TRUE(dir.ReadSections().empty());
    dir.WriteString("s", "k", "v");
    EXPECT_THROW(dir.UpdateFile(), EInOutError);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);

    TIniFile missing(folder / "none/a.ini");
    EXPECT_EQ(missing.ReadString("s", "k", "d"), "d");
    EXPECT_THROW(missing.UpdateFile(), EInOutError);

    WriteTextFile(folder / "bin.ini", std::string("\0\xff[\n=\n\x01", 7));
    TIniFile garbage(folder / "bin.ini");
    EXPECT_EQ(garbage.ReadInteger("s", "k", 4), 4);
}

TEST(IniFile, ValueWithLineBreaksStaysInItsOwnKey) {
    TTempFolder folder;
    const std::string file = folder / "a.ini";
    {
        TIniFile ini(file);
        ini.WriteString("Noticeboard", "NBFolder", "/a\n[Adapters]\r\nCount=5");
        ini.UpdateFile();
    }
    TIniFile back(file);
    EXPECT_EQ(back.ReadString("Noticeboard", "NBFolder", ""), "/a [Adapters]  Count=5");
    EXPECT_FALSE(back.SectionExists("Adapters"));
}
