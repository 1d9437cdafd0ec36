#include "core/TNoticeRecord.h"

#include <cstring>

TNoticeRecord::TNoticeRecord(const TNoticeRecord& other) : FNullMask(other.FNullMask) {
    std::memcpy(FInts, other.FInts, sizeof(FInts));
    std::memcpy(FDates, other.FDates, sizeof(FDates));
    std::memcpy(FEnds, other.FEnds, sizeof(FEnds));
    const uint32_t n = other.TextBytes();
    if (other.FText && n > 0) {
        FText = std::make_unique<char[]>(n);
        std::memcpy(FText.get(), other.FText.get(), n);
    }
}

TNoticeRecord& TNoticeRecord::operator=(const TNoticeRecord& other) {
    if (this != &other) {
        TNoticeRecord copy(other);
        *this = std::move(copy);
    }
    return *this;
}

void TNoticeRecord::SetNull(TNoticeField f) {
    if (StringSlot(f) >= 0)
        SetString(f, {});
    else if (NoticeFieldType(f) == TFieldType::ftDateTime)
        FDates[DateSlot(f)] = 0;
    else
        FInts[IntSlot(f)] = 0;
    FNullMask |= 1u << f;
}

void TNoticeRecord::SetString(TNoticeField f, std::string_view value) {
    const int slot = StringSlot(f);
    if (slot < 0) return;
    const uint32_t begin = slot == 0 ? 0 : FEnds[slot - 1];
    const uint32_t oldLen = FEnds[slot] - begin;
    const uint32_t total = TextBytes();
    const uint32_t newLen = static_cast<uint32_t>(value.size());
    FNullMask &= ~(1u << f);
    if (newLen == oldLen) {
        if (newLen) std::memcpy(FText.get() + begin, value.data(), newLen);
        return;
    }
    const uint32_t newTotal = total - oldLen + newLen;
    std::unique_ptr<char[]> text = newTotal ? std::make_unique<char[]>(newTotal) : nullptr;
    if (text) {
        if (begin) std::memcpy(text.get(), FText.get(), begin);
        if (newLen) std::memcpy(text.get() + begin, value.data(), newLen);
        const uint32_t tail = total - FEnds[slot];
        if (tail) std::memcpy(text.get() + begin + newLen, FText.get() + FEnds[slot], tail);
    }
    FText = std::move(text);
    const int32_t delta = static_cast<int32_t>(newLen) - static_cast<int32_t>(oldLen);
    for (int i = slot; i < StringFieldCount; ++i)
        FEnds[i] = static_cast<uint32_t>(FEnds[i] + delta);
}

void TNoticeRecord::SetStrings(const std::string_view* Values, uint32_t FieldMask) {
    uint32_t ends[StringFieldCount];
    uint32_t total = 0;
    for (int f = 0; f < NoticeFieldCount; ++f) {
        const int slot = StringSlots[f];
        if (slot < 0) continue;
        const uint32_t begin = slot == 0 ? 0 : FEnds[slot - 1];
        const bool set = (FieldMask & (1u << f)) != 0;
        total += set ? static_cast<uint32_t>(Values[f].size()) : FEnds[slot] - begin;
        ends[slot] = total;
    }
    std::unique_ptr<char[]> text = total ? std::make_unique<char[]>(total) : nullptr;
    for (int f = 0; f < NoticeFieldCount; ++f) {
        const int slot = StringSlots[f];
        if (slot < 0) continue;
        const uint32_t newBegin = slot == 0 ? 0 : ends[slot - 1];
        if (FieldMask & (1u << f)) {
            if (!Values[f].empty()) std::memcpy(text.get() + newBegin, Values[f].data(), Values[f].size());
            FNullMask &= ~(1u << f);
        } else {
            const uint32_t begin = slot == 0 ? 0 : FEnds[slot - 1];
            if (FEnds[slot] > begin)
                std::memcpy(text.get() + newBegin, FText.get() + begin, FEnds[slot] - begin);
        }
    }
    FText = std::move(text);
    std::memcpy(FEnds, ends, sizeof(FEnds));
}
