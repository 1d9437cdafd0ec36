// The store's rows by slot, kept in fixed blocks of 4096 so that growing never moves existing rows (no
// pause to copy a million rows, no doubled capacity lying idle). Owned by its store; not thread-safe.
#pragma once

#include "core/TNoticeRecord.h"

#include <cstdint>
#include <memory>
#include <vector>

class TNoticeRows {
public:
    static constexpr int32_t BlockBits = 12;
    static constexpr int32_t BlockSize = 1 << BlockBits;

    TNoticeRows() = default;
    TNoticeRows(const TNoticeRows&) = delete;
    TNoticeRows& operator=(const TNoticeRows& other) {
        if (this == &other) return *this;
        Clear();
        for (int32_t s = 0; s < other.Size(); ++s)
            PushBack(TNoticeRecord(other[s]));
        return *this;
    }

    int32_t Size() const { return FSize; }
    TNoticeRecord& operator[](int32_t slot) { return FBlocks[slot >> BlockBits][slot & (BlockSize - 1)]; }
    const TNoticeRecord& operator[](int32_t slot) const {
        return FBlocks[slot >> BlockBits][slot & (BlockSize - 1)];
    }

    void PushBack(TNoticeRecord&& row) {
        if ((FSize & (BlockSize - 1)) == 0 && (FSize >> BlockBits) == static_cast<int32_t>(FBlocks.size()))
            FBlocks.push_back(std::make_unique<TNoticeRecord[]>(BlockSize));
        (*this)[FSize++] = std::move(row);
    }

    void Clear() {
        FBlocks.clear();
        FSize = 0;
    }

private:
    std::vector<std::unique_ptr<TNoticeRecord[]>> FBlocks;
    int32_t FSize = 0;
};
