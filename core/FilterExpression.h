// The notice store's filter language: the boolean condition a filter text states over the 18 notice fields
// (comparisons, AND/OR/NOT, IS [NOT] NULL, LIKE, IN, arithmetic, text and date functions), compiled once into
// a tree of typed nodes that the store asks about each row. Compile on the board's thread (dates in the
// locale's form are read with the process-wide format settings); a compiled filter may be used from one
// thread at a time (it keeps scratch buffers).
#pragma once

#include "core/TRowFilter.h"
#include "support/Exception.h"

#include <memory>
#include <string>

// A filter text that is not a valid condition. The message says what is wrong and where:
// "Unknown field name 'note_sumary' at line 2, column 7".
class EFilterExpressionError : public Exception {
public:
    using Exception::Exception;
    const char* ClassName() const noexcept override { return "EFilterExpressionError"; }
};

// Compiles a filter text. Lines may be separated by any line break; a line that starts a new condition
// without AND or OR (a filter line whose boolean operator is empty or NOT) is joined by AND. A text of only
// blanks accepts every row. Raises EFilterExpressionError for a bad text; never anything else for any input.
// The result owns its whole tree and never throws when asked about a row; a row passes only when the
// condition is true (a comparison with a null value is neither true nor false).
std::unique_ptr<IRowFilter> CompileFilterExpression(const std::string& text);

// Deepest nesting of parentheses, NOT and operators a filter text may have.
constexpr int MaxFilterNesting = 256;
