// A growable array kept in fixed blocks of 2^Bits elements: growing never moves what is stored (no pause to
// copy a million elements, no doubled capacity lying idle), and indexing stays O(1). A copy shares every
// block with the vector it was copied from until either side writes to that block; only then is the block
// copied (copy on write, one block at a time). So copying a vector costs one pointer per block, and reading
// never copies anything: reads go through the const operator[], writes through Write().
// The notice store keeps its rows, their keys and their marks in these; the grid's view its slot map.
//
// Ownership: each vector owns its share of its blocks; a block lives while any vector holds it. Not
// thread-safe: a vector and its copies are used on one thread (the block counts themselves are atomic, so
// copies may be destroyed elsewhere). Failures: Write and PushBack raise std::bad_alloc and leave the
// vector as it was.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

template <class T, int Bits = 12> class TBlockVector {
public:
    static constexpr int32_t BlockBits = Bits;
    static constexpr int32_t BlockSize = 1 << Bits;

    TBlockVector() = default;
    // Copies share the blocks; both sides mark them as perhaps shared.
    TBlockVector(const TBlockVector& other)
        : FData(other.FData), FOwners(other.FOwners), FMaybeShared(other.FOwners.size(), 1),
          FSize(other.FSize) {
        std::fill(other.FMaybeShared.begin(), other.FMaybeShared.end(), 1);
    }
    TBlockVector& operator=(const TBlockVector& other) {
        if (this != &other) *this = TBlockVector(other);
        return *this;
    }
    TBlockVector(TBlockVector&& other) noexcept
        : FData(std::move(other.FData)), FOwners(std::move(other.FOwners)),
          FMaybeShared(std::move(other.FMaybeShared)), FSize(std::exchange(other.FSize, 0)) {}
    TBlockVector& operator=(TBlockVector&& other) noexcept {
        FData = std::move(other.FData);
        FOwners = std::move(other.FOwners);
        FMaybeShared = std::move(other.FMaybeShared);
        FSize = std::exchange(other.FSize, 0);
        return *this;
    }

    int32_t Size() const { return FSize; }
    const T& operator[](int32_t i) const { return FData[size_t(i >> Bits)][i & Mask]; }
    // The element for writing: its block is copied first when another vector shares it.
    T& Write(int32_t i) { return Own(size_t(i >> Bits))[i & Mask]; }
    // Copies every shared block from the one holding element First on, so that writing there no longer
    // allocates (a failure leaves the contents as they were). Blocks never written stay unallocated.
    void OwnFrom(int32_t First) {
        for (size_t b = size_t(First >> Bits); b < FData.size(); ++b)
            if (FData[b] != ZeroBlock().get()) Own(b);
    }
    // Whether the block holding element i is shared with another vector.
    bool Shared(int32_t i) const { return FOwners[size_t(i >> Bits)].use_count() > 1; }

    void PushBack(T&& value) {
        if ((FSize >> Bits) == static_cast<int32_t>(FData.size())) AddBlock();
        Write(FSize) = std::move(value);
        ++FSize;
    }

    // Keeps the first Count elements. Blocks past them are let go; the rest of the last block is reset to
    // T() so that it holds nothing (a shared last block is copied for that first).
    void Truncate(int32_t Count) {
        if (Count >= FSize) return;
        const size_t keep = size_t((Count + BlockSize - 1) >> Bits);
        const int32_t inLast = FSize - int32_t((keep - 1) << Bits);
        if ((Count & Mask) != 0) {
            T* block = Own(keep - 1);
            std::fill(block + (Count & Mask), block + std::min(inLast, BlockSize), T());
        }
        FData.resize(keep);
        FOwners.resize(keep);
        FMaybeShared.resize(keep);
        FSize = Count;
    }

    // Grows the vector to Count elements of T() in blocks that are allocated when first written (until
    // then they all read from one shared block of T()), so a large table costs nothing until it fills.
    void GrowZeroed(int32_t Count) {
        const size_t blocks = size_t((Count + BlockSize - 1) >> Bits);
        while (FData.size() < blocks) {
            Reserve();
            FData.push_back(ZeroBlock().get());
            FOwners.push_back(ZeroBlock());
            FMaybeShared.push_back(1);
        }
        FSize = std::max(FSize, Count);
    }

    void Clear() { *this = TBlockVector(); }

    // Memory accounting: the bytes of the blocks this vector holds alone, and of its block tables.
    size_t OwnBytes() const {
        size_t n =
            FData.capacity() * sizeof(T*) + FOwners.capacity() * sizeof(FOwners[0]) + FMaybeShared.capacity();
        for (const auto& b : FOwners)
            if (b.use_count() == 1) n += sizeof(T) * size_t(BlockSize);
        return n;
    }

private:
    static constexpr int32_t Mask = BlockSize - 1;

    static const std::shared_ptr<T[]>& ZeroBlock() {
        static const std::shared_ptr<T[]> zero = std::make_shared<T[]>(size_t(BlockSize));
        return zero; // never written: it is always shared, so a write copies it first
    }
    void Reserve() { // the three tables grow together, or not at all
        if (FData.size() < FData.capacity()) return;
        FData.reserve(FData.size() + 1 + FData.size() / 2);
        FOwners.reserve(FData.capacity());
        FMaybeShared.reserve(FData.capacity());
    }
    void AddBlock() {
        Reserve();
        std::shared_ptr<T[]> block = std::make_shared<T[]>(size_t(BlockSize));
        FData.push_back(block.get());
        FOwners.push_back(std::move(block));
        FMaybeShared.push_back(0);
    }

    T* Own(size_t b) {
        // Only a copy marks blocks as perhaps shared; a block found unshared stays unmarked, so writes to
        // a store that was never copied do not read the block's count.
        if (FMaybeShared[b]) {
            std::shared_ptr<T[]>& block = FOwners[b];
            if (block.use_count() > 1) {
                std::shared_ptr<T[]> copy;
                if constexpr (std::is_trivially_copyable_v<T>) {
                    copy = std::make_shared_for_overwrite<T[]>(size_t(BlockSize));
                    std::memcpy(copy.get(), block.get(), sizeof(T) * size_t(BlockSize));
                } else {
                    copy = std::make_shared<T[]>(size_t(BlockSize));
                    std::copy(block.get(), block.get() + BlockSize, copy.get());
                }
                FData[b] = copy.get();
                block = std::move(copy);
            }
            FMaybeShared[b] = 0;
        }
        return FData[b];
    }

    std::vector<T*> FData;                     // each block's elements, for reading
    std::vector<std::shared_ptr<T[]>> FOwners; // each block's share
    mutable std::vector<uint8_t> FMaybeShared; // set by copying, cleared once a write found it unshared
    int32_t FSize = 0;
};
