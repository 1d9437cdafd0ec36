// Plain-text dumps of the board's state for nbtool and scripts: the notice store as tab-separated text and
// the per-node counters one per line. Pure formatting; the caller's thread (the board's thread while the
// board is live). Never throw except on memory exhaustion.
#pragma once

#include "core/TNoticeStore.h"
#include "support/Zs_stat1.h"

#include <string>

// One field as the dump writes it: strings with backslash, tab, CR and LF as \\ \t \r \n; integers in
// decimal; date-times as "yyyy-mm-dd hh:nn:ss" (".zzz" added only when there are milliseconds); null as \N.
std::string StoreFieldText(const TNoticeRecord& Row, TNoticeField Field);

// A header line of the 18 field names in column-table order, then one line per row the filter passes, in
// nb_internal_key order. Every line ends in "\n".
std::string StoreAsText(const TNoticeStore& Store);

// One line per counter: row name, tab, column name, tab, count; rows and columns in their list order.
std::string CountersAsText(const TStats_Obj& Stats);
