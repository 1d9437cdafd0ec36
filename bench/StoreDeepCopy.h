// The reference for the benchmarks of store copies: a copy made the way the store copied before copies
// shared their storage. Every live row is copied with its own text into a store that builds its index and
// marks as it goes, with the filter language installed.
#pragma once

#include "core/FilterExpression.h"
#include "core/TNoticeStore.h"

#include <string_view>

inline void DeepCopyStore(const TNoticeStore& from, TNoticeStore& to) {
    to.SetFilterCompiler(CompileFilterExpression);
    to.DisableControls();
    for (int32_t s = 0; s < from.SlotCount(); ++s) {
        if (!from.SlotLive(s)) continue;
        const TNoticeRecord& row = from.RowBySlot(s);
        to.Append();
        TNoticeRecord& copy = to.Buffer();
        std::string_view values[NoticeFieldCount];
        uint32_t mask = 0;
        for (int f = 0; f < NoticeFieldCount; ++f) {
            const TNoticeField field = TNoticeField(f);
            if (row.IsNull(field)) continue;
            if (TNoticeRecord::StringSlot(field) >= 0) {
                values[f] = row.AsString(field);
                mask |= 1u << f;
            } else if (NoticeFieldType(field) == TFieldType::ftDateTime) {
                copy.SetDateTime(field, row.AsDateTime(field));
            } else {
                copy.SetInteger(field, row.AsInteger(field));
            }
        }
        copy.SetStrings(values, mask);
        to.Post();
    }
    to.EnableControls();
}
