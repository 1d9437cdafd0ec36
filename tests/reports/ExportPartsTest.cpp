// The pieces under the export: cell text cleaning, date formats, and the workbook's container.
#include "ExportReadBack.h"

#include "reports/ExportDateFormat.h"
#include "reports/ExportText.h"
#include "reports/XlsCompoundFile.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

namespace {

TEST(CellText, IsCutAtTheUnitLimitWithoutSplittingACharacter) {
    std::string buffer;
    const std::string emoji = "\xF0\x9F\x98\x80"; // two UTF-16 units
    const struct {
        std::string In;
        size_t Max;
        std::string Out;
    } cases[] = {
        {"abc", 3, "abc"},
        {"abcd", 3, "abc"},
        {"ab" + emoji, 4, "ab" + emoji},
        {"abc" + emoji, 4, "abc"},
        {"a\xC3\xA9"
         "b",
         2, "a\xC3\xA9"},
        {"a\x02"
         "b",
         2, "a\xEF\xBF\xBD"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CleanCellText(c.In, buffer, c.Max), c.Out) << c.In;

    std::u16string units;
    EXPECT_TRUE(CellTextToUtf16("ab" + emoji, units, 3)); // what is kept fits 8 bits
    EXPECT_EQ(units, u"ab");
    EXPECT_FALSE(CellTextToUtf16("ab" + emoji, units, 4));
    EXPECT_EQ(units, u"ab\xD83D\xDE00");
    EXPECT_TRUE(CellTextToUtf16("\xC3\xBF", units, 10)); // U+00FF still fits 8-bit storage
}

TEST(CellText, CleanTextComesBackWithoutACopy) {
    std::string buffer;
    const std::string text = "Gr\xC3\xBC\xC3\x9F"
                             "e \xEF\xBF\xBD tab\tline\r\n";
    const std::string_view clean = CleanCellText(text, buffer);
    EXPECT_EQ(clean.data(), text.data());
    EXPECT_EQ(CellTextChars(clean), 18u);
    EXPECT_EQ(CleanCellText("\xEF\xBF\xBE", buffer), "\xEF\xBF\xBD"); // U+FFFE, which XML cannot hold
}

TEST(SpreadsheetDateFormat, ShowsDatesAsTheGridDoes) {
    TFormatSettings fs;
    fs.ShortDateFormat = "dd/mm/yyyy";
    fs.LongDateFormat = "dddd d mmmm yyyy";
    fs.ShortTimeFormat = "hh:nn";
    fs.LongTimeFormat = "hh:nn:ss";
    const struct {
        const char* Board;
        char DateSep, TimeSep;
        const char* Sheet;
    } cases[] = {
        {"dd/mm/yyyy hh:nn:ss", '/', ':', "dd\\/mm\\/yyyy hh\\:mm\\:ss"},
        {"d/m/yy h:nn:ss AM/PM", '.', '.', "d.m.yy h.mm.ss AM/PM"},
        {"hh:mm", '/', ':', "hh\\:mm"}, // m right after an hour is the minute
        {"mm/dd hh:nn:ss.zzz", '-', ':', "mm-dd hh\\:mm\\:ss.000"},
        {"yyyy'\xE5\xB9\xB4'm'\xE6\x9C\x88'd", '/', ':', "yyyy\"\xE5\xB9\xB4\"m\"\xE6\x9C\x88\"d"},
        {"ddddd t", '/', ':', "dd\\/mm\\/yyyy hh\\:mm"},
        {"dddddd", '/', ':', "dddd d mmmm yyyy"},
        {"\"at\" hh", '/', ':', "\\a\\t hh"},
        {"", '/', ':', "yyyy-mm-dd hh:mm:ss"},
    };
    for (const auto& c : cases) {
        fs.DateSeparator = c.DateSep;
        fs.TimeSeparator = c.TimeSep;
        EXPECT_EQ(SpreadsheetDateFormat(c.Board, fs), c.Sheet) << c.Board;
    }
}

// A stream too large for the header's 109 table sectors needs the table's extension sectors.
TEST(XlsCompoundFile, ALargeStreamReadsBackWhole) {
    TTempFolder folder;
    const std::string file = folder / "big.cfb";
    std::string stream(9 * 1024 * 1024 + 77, '\0');
    for (size_t i = 0; i < stream.size(); ++i)
        stream[i] = static_cast<char>((i * 2654435761u) >> 13);
    {
        const int fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        ASSERT_GE(fd, 0);
        TExportOutput out(fd, file);
        TCompoundFileWriter container(out);
        container.Write(stream.data(), stream.size());
        container.Finish();
        ::close(fd);
    }
    std::string errors;
    const std::string copy = folder / "copy.bin";
    const std::string said = RunReadBack("stream " + file + " Workbook " + copy, folder / "out.txt", errors);
    ASSERT_FALSE(said.empty()) << errors;
    EXPECT_TRUE(ReadTextFile(copy) == stream);
}

} // namespace
