// The filter model and its file format, byte for byte.
#include "views/Ufilter.h"

#include "core/FilterExpression.h"
#include "tests/adapters/ScriptedPrompt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

const std::string S2(1, '\x02');
const std::string S3(1, '\x03');

std::string Line(std::initializer_list<const char*> cols) {
    std::string out;
    bool first = true;
    for (const char* c : cols) {
        if (!first) out += S2;
        out += c;
        first = false;
    }
    return out;
}

std::string ReadAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

std::string TempPath(const char* name) {
    return (std::filesystem::temp_directory_path() / (std::string("nb_filter_") + name)).string();
}

} // namespace

TEST(Ufilter, NewFilterAndAppendedLines) {
    TFilter f;
    EXPECT_EQ(f.GetAsData(), "0");
    EXPECT_EQ(f.GetFilterString(), "");
    f.Append();
    EXPECT_EQ(f.GetAsData(), "0" + S2 + "(" + S2 + S2 + "=" + S2 + S2 + ")");
    EXPECT_EQ(f.GetFilterString(), "(  =  )");
    f.Append();
    EXPECT_EQ(f.GetCurrentRow(), 1);
    EXPECT_EQ(f.GetFieldByName("boolop"), "AND");
    EXPECT_EQ(f.GetListBoxItems()[0], " (  =  )") << "the empty boolop leaves a leading space";
    EXPECT_EQ(f.GetListBoxItems()[1], "AND (  =  )");
}

TEST(Ufilter, ColumnsByNameInAnyCase) {
    TFilter f;
    f.Append();
    f.SetFieldByName("fieldname", "note_summary");
    f.SetFieldByName("VALUE", "'abc'");
    f.SetFieldByName("leftpar", "((");
    EXPECT_EQ(f.GetFieldByName("LeftPar"), "((");
    EXPECT_EQ(f.GetColNum("rightpar"), 5);
    EXPECT_EQ(f.GetColNum("Left"), -1);
    EXPECT_EQ(f.GetFieldName(4), "value");
    EXPECT_EQ(f.GetFilterString(), "(( note_summary = 'abc' )");
    try {
        f.GetFieldByName("Left");
        FAIL();
    } catch (const EFilterError& e) {
        EXPECT_EQ(e.Message(), "Invalid Fieldname: Left");
    }
    EXPECT_THROW(f.SetFieldByName("x", "1"), EFilterError);
}

TEST(Ufilter, SetRowAndDeleteKeepCurrentRowRules) {
    TFilter f;
    for (int i = 0; i < 3; ++i)
        f.Append();
    f.SetRow(1);
    try {
        f.SetRow(f.GetRowCount());
        FAIL();
    } catch (const EFilterError& e) {
        EXPECT_EQ(e.Message(), "Tried to access non-existent row");
    }
    EXPECT_THROW(f.SetRow(-1), EFilterError);
    EXPECT_EQ(f.GetCurrentRow(), 1);
    f.SetRow(0);
    f.SetFieldByName("value", "first");
    f.SetRow(1);
    f.SetFieldByName("value", "second");
    f.SetRow(2);
    f.SetFieldByName("value", "third");
    f.SetRow(1);
    f.Delete(1);
    EXPECT_EQ(f.GetCurrentRow(), 1);
    EXPECT_EQ(f.GetFieldByName("value"), "third") << "the next line moved under the current row";
}

TEST(Ufilter, ChangingAColumnLeavesTheOthersByteForByte) {
    TFilter f;
    f.SetAsData("0" + Line({"", "(", "note_count", ">=", "3", ")"}));
    f.SetFieldByName("boolop", "NOT");
    f.SetFieldByName("operator", "<");
    EXPECT_EQ(f.GetAsData(), "0" + Line({"NOT", "(", "note_count", "<", "3", ")"}));
    f.SetFieldByName("RightPar", "");
    EXPECT_EQ(f.GetFilterString(), "NOT ( note_count < 3");
    f.SetFieldByName("RightPar", "))");
    EXPECT_EQ(f.GetFieldByName("RightPar"), "))") << "an emptied last column takes a value again";
    EXPECT_EQ(f.GetAsData(), "0" + Line({"NOT", "(", "note_count", "<", "3", "))"}));
}

TEST(Ufilter, SetAsDataSplitsAtByte3WithTheTokenizersRules) {
    TFilter f;
    f.SetAsData("1a" + S3 + "b" + S3);
    EXPECT_TRUE(f.HeaderFlag);
    EXPECT_EQ(f.GetRowCount(), 2) << "a trailing separator adds no line";
    f.SetAsData("0a" + S3 + S3 + "b");
    EXPECT_FALSE(f.HeaderFlag);
    EXPECT_EQ(f.GetRowCount(), 3) << "two separators add an empty line";
    EXPECT_EQ(f.GetData(1, 0), "");
    f.SetAsData("0say \"hi" + S3 + "next\"" + S3 + "last");
    ASSERT_EQ(f.GetRowCount(), 2) << "an odd quote swallows the separator";
    EXPECT_EQ(f.GetData(0, 0), "say \"hi" + S3 + "next\"");
    f.SetAsData("x");
    EXPECT_EQ(f.GetAsData(), "0");
}

TEST(Ufilter, DataBeyond10000BytesIsCut) {
    TFilter f;
    const std::string longLine(12000, 'v');
    f.SetAsData("1" + longLine);
    ASSERT_EQ(f.GetRowCount(), 1);
    EXPECT_EQ(f.GetData(0, 0).size(), 9999u);
    EXPECT_EQ(f.GetAsData().size(), 10000u);
    f.SetAsData("0" + std::string(9998, 'a') + S3 + "lost");
    EXPECT_EQ(f.GetRowCount(), 1);
}

TEST(Ufilter, FileRoundTripIsTheDataByteForByte) {
    const std::string path = TempPath("roundtrip.nbf");
    TFilter f;
    f.SetAsData("1" + Line({"", "(", "note_summary", "LIKE", "'%disk%'", ")"}) + S3 +
                Line({"AND NOT", "(", "ack_date", "IS NULL", "", ")"}));
    f.filterToFile(path);
    EXPECT_EQ(ReadAll(path), f.GetAsData());
    TFilter g;
    g.filterFromFile(path);
    EXPECT_TRUE(g.HeaderFlag);
    EXPECT_EQ(g.GetAsData(), f.GetAsData());
    EXPECT_EQ(g.GetFilterString(), "( note_summary LIKE '%disk%' )\r\nAND NOT ( ack_date IS NULL  )");
    EXPECT_NO_THROW(CompileFilterExpression(g.GetFilterString()));
    std::filesystem::remove(path);
}

TEST(Ufilter, FileTroubleIsSilent) {
    TFilter f;
    f.Append();
    const std::string before = f.GetAsData();
    f.filterFromFile(TempPath("missing/none.nbf"));
    f.filterFromFile(std::filesystem::temp_directory_path().string());
    EXPECT_EQ(f.GetAsData(), before);
    f.filterToFile(TempPath("missing/none.nbf"));
    EXPECT_FALSE(std::filesystem::exists(TempPath("missing/none.nbf")));
}

TEST(Ufilter, StringFormsAreNotImplemented) {
    TScriptedPrompt prompt;
    TFilter f;
    f.Append();
    f.filterFromString("0");
    EXPECT_EQ(f.filterToString(), "");
    EXPECT_THAT(prompt.Messages, testing::ElementsAre("Not implemented", "Not implemented"));
    EXPECT_EQ(f.GetRowCount(), 1);
}

TEST(Ufilter, SampleFiltersCompile) {
    for (const auto& entry : std::filesystem::directory_iterator(NB_SOURCE_DIR "/examples/filters")) {
        TFilter f;
        f.filterFromFile(entry.path().string());
        EXPECT_GT(f.GetRowCount(), 0) << entry.path();
        EXPECT_NO_THROW(CompileFilterExpression(f.GetFilterString())) << entry.path();
    }
}
