// One row of the notice store, kept compact: the integer and date fields inline, the twelve string fields
// packed one after another in a single heap block (a row of ~400 bytes of text costs about 100 bytes more),
// and a bit per field for null. Values are read as views into the row; a view lives until the next change
// of a string field of the same row. A copied row shares the text block with its original until either of
// them changes a string field, so copying rows (an edit buffer, a copied store) costs no text.
// Not thread-safe; the store's thread only (the text block's count of sharers is atomic, so a copy may be
// destroyed on another thread).
#pragma once

#include "core/Znb_const.h"
#include "support/DateUtils.h"

#include <atomic>
#include <cstdint>
#include <string_view>
#include <utility>

// The packed text of a row, shared by the copies of the row. Its bytes are written only while one row
// holds it.
class TRowText {
public:
    TRowText() = default;
    // A block of Size bytes (not initialised) held by one row; raises std::bad_alloc.
    static TRowText Allocate(uint32_t Size);
    TRowText(const TRowText& other) noexcept : FBlock(other.FBlock) {
        if (FBlock) FBlock->Refs.fetch_add(1, std::memory_order_relaxed);
    }
    TRowText(TRowText&& other) noexcept : FBlock(std::exchange(other.FBlock, nullptr)) {}
    TRowText& operator=(TRowText other) noexcept {
        std::swap(FBlock, other.FBlock);
        return *this;
    }
    ~TRowText() { Release(); }

    explicit operator bool() const { return FBlock != nullptr; }
    const char* get() const { return FBlock ? reinterpret_cast<const char*>(FBlock + 1) : nullptr; }
    char* Bytes() { return reinterpret_cast<char*>(FBlock + 1); } // only while Unique()
    bool Unique() const { return FBlock && FBlock->Refs.load(std::memory_order_acquire) == 1; }

private:
    struct THeader {
        std::atomic<uint32_t> Refs;
    };
    void Release() noexcept;
    THeader* FBlock = nullptr; // the bytes follow the header
};

class TNoticeRecord {
public:
    TNoticeRecord() = default; // every field null
    TNoticeRecord(const TNoticeRecord&) = default;
    TNoticeRecord& operator=(const TNoticeRecord&) = default;
    TNoticeRecord(TNoticeRecord&&) noexcept = default;
    TNoticeRecord& operator=(TNoticeRecord&&) noexcept = default;

    bool IsNull(TNoticeField f) const { return (FNullMask & (1u << f)) != 0; }
    void SetNull(TNoticeField f);

    // String and memo fields. A null field reads as the empty string.
    std::string_view AsString(TNoticeField f) const {
        const int slot = StringSlot(f);
        const uint32_t begin = slot == 0 ? 0 : FEnds[slot - 1];
        return FText ? std::string_view(FText.get() + begin, FEnds[slot] - begin) : std::string_view();
    }
    void SetString(TNoticeField f, std::string_view value);
    // Sets every string field whose bit (1 << field) is in FieldMask to Values[field], with one allocation
    // for the whole row; other fields keep their values. Values is indexed by TNoticeField.
    void SetStrings(const std::string_view* Values, uint32_t FieldMask);

    // Integer and auto-increment fields. A null field reads as 0.
    int32_t AsInteger(TNoticeField f) const { return FInts[IntSlot(f)]; }
    void SetInteger(TNoticeField f, int32_t value) {
        FInts[IntSlot(f)] = value;
        FNullMask &= ~(1u << f);
    }

    // Date-time fields. A null field reads as 0.
    TDateTime AsDateTime(TNoticeField f) const { return FDates[DateSlot(f)]; }
    void SetDateTime(TNoticeField f, TDateTime value) {
        FDates[DateSlot(f)] = value;
        FNullMask &= ~(1u << f);
    }

    // The packed text of the string fields (null when they are all empty); for prefetching while scanning.
    const char* TextData() const { return FText.get(); }

    // Bytes of the packed text.
    size_t TextBytes() const { return FEnds[StringFieldCount - 1]; }
    // Whether another row (a copy) shares the packed text; for memory accounting.
    bool TextShared() const { return FText && !FText.Unique(); }

    static constexpr int StringFieldCount = 12;
    // Slot of a string field in the packed text, or -1 for a non-string field.
    static constexpr int StringSlot(TNoticeField f) { return StringSlots[f]; }
    static constexpr int IntSlot(TNoticeField f) {
        return f == nf_nb_internal_key ? 0 : f == nf_note_count ? 1 : 2;
    }
    static constexpr int DateSlot(TNoticeField f) {
        return f == nf_note_raised_date ? 0 : f == nf_note_last_raised_date ? 1 : 2;
    }

private:
    static constexpr int StringSlots[NoticeFieldCount] = {-1, 0,  1,  2, 3, 4,  5, 6,  -1,
                                                          -1, -1, -1, 7, 8, -1, 9, 10, 11};
    uint32_t FNullMask = (1u << NoticeFieldCount) - 1;
    int32_t FInts[3] = {0, 0, 0};
    TDateTime FDates[3] = {0, 0, 0};
    uint32_t FEnds[StringFieldCount] = {};
    TRowText FText;
};
