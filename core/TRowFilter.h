// The store's row filter: a compiled condition over one notice row. The filter language compiles a filter
// text into one of these once; the store then asks it about rows without re-parsing.
#pragma once

#include "core/TNoticeRecord.h"

#include <memory>
#include <string>

class IRowFilter {
public:
    virtual ~IRowFilter() = default;
    // True when the row passes. Never throws: a value that cannot be compared makes the row fail.
    virtual bool Accept(const TNoticeRecord& row) const = 0;
    // Whether Accept may read string fields. The store fetches the rows' text ahead while it recounts a
    // whole table for such a filter; for filters on numbers and dates that would only waste bandwidth.
    virtual bool ReadsText() const { return true; }
};

#include <functional>

// Turns a filter text into a compiled filter; raises an Exception whose message says what is wrong and
// where. The store holds one and calls it whenever its filter text is set.
using TRowFilterCompiler = std::function<std::unique_ptr<IRowFilter>(const std::string& text)>;
