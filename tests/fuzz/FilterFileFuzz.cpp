// A ".nbf" filter file with any content, loaded as the board loads one: TFilter::filterFromFile, then the
// expression the store is given (GetFilterString) compiled by the filter language, which may refuse it
// with EFilterExpressionError only. The loaded lines are also read and edited column by column as the
// filter editor does.
#include "FuzzSupport.h"

#include "core/FilterExpression.h"
#include "views/Ufilter.h"

#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* Data, size_t Size) {
    static const TFuzzFolder folder;
    static const std::string file = folder / "fuzz.nbf";
    WriteFuzzFile(file, InputText(Data, Size));

    TFilter filter;
    filter.filterFromFile(file);
    FUZZ_CHECK(filter.HeaderFlag == (Size > 0 && Data[0] == '1'), "header flag not the file's first byte");
    FUZZ_CHECK(filter.GetAsData().size() <= Size + 1, "the filter holds more than its file");
    try {
        CompileFilterExpression(filter.GetFilterString());
    } catch (const EFilterExpressionError&) {
    }
    filter.GetListBoxItems();

    // The editor's column access on every line: each column reads what the line holds there, and a value
    // set where the tokenizer can write reads back without touching the other columns.
    for (int row = 0; row < filter.GetRowCount(); ++row) {
        filter.SetRow(row);
        for (int col = 0; col < filter.GetFieldCount(); ++col) {
            const std::string name = filter.GetFieldName(col);
            FUZZ_CHECK(filter.GetFieldByName(name) == filter.GetData(row, col), "column " + name);
            std::string before[6];
            for (int c = 0; c < 6; ++c)
                before[c] = filter.GetData(row, c);
            filter.SetFieldByName(name, "'x'");
            const std::string after = filter.GetData(row, col);
            FUZZ_CHECK(after == "'x'" || after == before[col], "column " + name + " took another value");
            for (int c = 0; c < 6; ++c)
                FUZZ_CHECK(c == col || filter.GetData(row, c) == before[c],
                           "setting " + name + " changed column " + filter.GetFieldName(c));
        }
    }
    return 0;
}
