#include "core/TNoticeRecord.h"

#include <cstring>
#include <new>

TRowText TRowText::Allocate(uint32_t Size) {
    TRowText text;
    void* raw = ::operator new(sizeof(THeader) + Size);
    text.FBlock = new (raw) THeader{};
    text.FBlock->Refs.store(1, std::memory_order_relaxed);
    return text;
}

void TRowText::Release() noexcept {
    if (FBlock && FBlock->Refs.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        FBlock->~THeader();
        ::operator delete(FBlock);
    }
    FBlock = nullptr;
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
    if (newLen == oldLen && (newLen == 0 || FText.Unique())) {
        if (newLen) std::memmove(FText.Bytes() + begin, value.data(), newLen);
        return;
    }
    const uint32_t newTotal = total - oldLen + newLen;
    TRowText text = newTotal ? TRowText::Allocate(newTotal) : TRowText();
    if (text) {
        if (begin) std::memcpy(text.Bytes(), FText.get(), begin);
        if (newLen) std::memcpy(text.Bytes() + begin, value.data(), newLen);
        const uint32_t tail = total - FEnds[slot];
        if (tail) std::memcpy(text.Bytes() + begin + newLen, FText.get() + FEnds[slot], tail);
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
    TRowText text = total ? TRowText::Allocate(total) : TRowText();
    for (int f = 0; f < NoticeFieldCount; ++f) {
        const int slot = StringSlots[f];
        if (slot < 0) continue;
        const uint32_t newBegin = slot == 0 ? 0 : ends[slot - 1];
        if (FieldMask & (1u << f)) {
            if (!Values[f].empty()) std::memcpy(text.Bytes() + newBegin, Values[f].data(), Values[f].size());
            FNullMask &= ~(1u << f);
        } else {
            const uint32_t begin = slot == 0 ? 0 : FEnds[slot - 1];
            if (FEnds[slot] > begin)
                std::memcpy(text.Bytes() + newBegin, FText.get() + begin, FEnds[slot] - begin);
        }
    }
    FText = std::move(text);
    std::memcpy(FEnds, ends, sizeof(FEnds));
}
