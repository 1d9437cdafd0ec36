// A growable array kept in fixed blocks of 4096 elements: growing never moves what is stored (no pause to
// copy a million elements, no doubled capacity lying idle), and indexing stays O(1). The notice store keeps
// its rows and its position counts in these. Not thread-safe; owned by its container.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

template <class T> class TBlockVector {
public:
    static constexpr int32_t BlockBits = 12;
    static constexpr int32_t BlockSize = 1 << BlockBits;

    TBlockVector() = default;
    TBlockVector(const TBlockVector& other) { *this = other; }
    TBlockVector& operator=(const TBlockVector& other) {
        if (this == &other) return *this;
        Clear();
        for (int32_t i = 0; i < other.Size(); ++i)
            PushBack(T(other[i]));
        return *this;
    }
    TBlockVector(TBlockVector&&) noexcept = default;
    TBlockVector& operator=(TBlockVector&&) noexcept = default;

    int32_t Size() const { return FSize; }
    T& operator[](int32_t i) { return FBlocks[i >> BlockBits][i & (BlockSize - 1)]; }
    const T& operator[](int32_t i) const { return FBlocks[i >> BlockBits][i & (BlockSize - 1)]; }

    void PushBack(T&& value) {
        if ((FSize >> BlockBits) == static_cast<int32_t>(FBlocks.size()))
            FBlocks.push_back(std::make_unique<T[]>(BlockSize));
        (*this)[FSize++] = std::move(value);
    }

    void Clear() {
        FBlocks.clear();
        FSize = 0;
    }

private:
    std::vector<std::unique_ptr<T[]>> FBlocks;
    int32_t FSize = 0;
};
