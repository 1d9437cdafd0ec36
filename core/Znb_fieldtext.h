// A notice field as text, the way people see it. The grid, the detail panel, the report and the
// spreadsheet export all show values through these, so a value reads the same everywhere.
// Board thread (dates are formatted with the process-wide format settings). Never throw except on memory
// exhaustion.
#pragma once

#include "core/TNoticeRecord.h"

#include <string>

// As the grid shows a cell: null gives ""; strings and memos as stored (line breaks kept: the grid puts a
// memo on one line itself); integers in decimal, except note_severity, which shows its severity text
// ("Fatal"; "" for a number outside 1 to 4); date-times in the user's short date and long time, always
// with the time ("21/11/2026 08:15:00").
std::string FieldDisplayText(const TNoticeRecord& Row, TNoticeField Field);

// As the notice store gives a field's string value: like FieldDisplayText, except that note_severity is
// its number and a date-time at midnight leaves the time out (the "c" format).
std::string FieldAsString(const TNoticeRecord& Row, TNoticeField Field);
