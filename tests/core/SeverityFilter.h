// A stand-in row filter for store and protocol tests: passes rows whose note_severity equals a number.
#pragma once

#include "core/TRowFilter.h"

class TSeverityFilter : public IRowFilter {
public:
    explicit TSeverityFilter(int32_t s) : FSeverity(s) {}
    bool Accept(const TNoticeRecord& row) const override {
        return row.AsInteger(nf_note_severity) == FSeverity;
    }

private:
    int32_t FSeverity;
};
