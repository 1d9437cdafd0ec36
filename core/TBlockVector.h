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
    // Copies share the blocks.
    TBlockVector(const TBlockVector&) = default;
    TBlockVector& operator=(const TBlockVector&) = default;
    TBlockVector(TBlockVector&& other) noexcept
        : FBlocks(std::move(other.FBlocks)), FSize(std::exchange(other.FSize, 0)) {}
    TBlockVector& operator=(TBlockVector&& other) noexcept {
        FBlocks = std::move(other.FBlocks);
        FSize = std::exchange(other.FSize, 0);
        return *this;
    }

    int32_t Size() const { return FSize; }
    const T& operator[](int32_t i) const { return FBlocks[size_t(i >> Bits)][i & Mask]; }
    // The element for writing: its block is copied first when another vector shares it.
    T& Write(int32_t i) { return Own(size_t(i >> Bits))[i & Mask]; }
    // Copies every shared block from the one holding element First on, so that writing there no longer
    // allocates (a failure leaves the contents as they were).
    void OwnFrom(int32_t First) {
        for (size_t b = size_t(First >> Bits); b < FBlocks.size(); ++b)
            Own(b);
    }
    // Whether the block holding element i is shared with another vector.
    bool Shared(int32_t i) const { return FBlocks[size_t(i >> Bits)].use_count() > 1; }

    void PushBack(T&& value) {
        if ((FSize >> Bits) == static_cast<int32_t>(FBlocks.size()))
            FBlocks.push_back(std::make_shared<T[]>(size_t(BlockSize)));
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
        FBlocks.resize(keep);
        FSize = Count;
    }

    void Clear() {
        FBlocks.clear();
        FSize = 0;
    }

    // Memory accounting: the bytes of the blocks this vector holds alone.
    size_t OwnBytes() const {
        size_t n = 0;
        for (const auto& b : FBlocks)
            if (b.use_count() == 1) n += sizeof(T) * size_t(BlockSize);
        return n;
    }

private:
    static constexpr int32_t Mask = BlockSize - 1;

    T* Own(size_t b) {
        std::shared_ptr<T[]>& block = FBlocks[b];
        if (block.use_count() > 1) {
            std::shared_ptr<T[]> copy;
            if constexpr (std::is_trivially_copyable_v<T>) {
                copy = std::make_shared_for_overwrite<T[]>(size_t(BlockSize));
                std::memcpy(copy.get(), block.get(), sizeof(T) * size_t(BlockSize));
            } else {
                copy = std::make_shared<T[]>(size_t(BlockSize));
                std::copy(block.get(), block.get() + BlockSize, copy.get());
            }
            block = std::move(copy);
        }
        return block.get();
    }

    std::vector<std::shared_ptr<T[]>> FBlocks;
    int32_t FSize = 0;
};
