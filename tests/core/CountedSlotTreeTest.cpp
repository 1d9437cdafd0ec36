#include "core/TCountedSlotTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

namespace {

// Drives a tree with tiny nodes (so that every split, merge, loan and root change happens within a few
// hundred slots) against a sorted vector, ordering slots by a random priority. With order keys, the keys
// are coarse (many slots share one) and wander between their neighbours' while their slots stay put.
template <class Tree> class TTreeDriver {
public:
    TTreeDriver(int32_t slots, uint32_t seed, bool keyed)
        : FRng(seed), FPrio(size_t(slots)), FByPrio(size_t(slots)), FKey(size_t(slots)) {
        std::iota(FPrio.begin(), FPrio.end(), 0);
        std::shuffle(FPrio.begin(), FPrio.end(), FRng);
        for (int32_t s = 0; s < slots; ++s) {
            FByPrio[size_t(FPrio[size_t(s)])] = s;
            FKey[size_t(s)] = uint64_t(FPrio[size_t(s)] / 3);
        }
        if (keyed) FTree.SetOrderKey([this](int32_t s) { return FKey[size_t(s)]; });
        FKeyed = keyed;
    }

    void Insert(int32_t slot) {
        FTree.Insert(slot, [&](int32_t other) { return FPrio[size_t(other)] < FPrio[size_t(slot)]; });
        FModel.insert(std::lower_bound(FModel.begin(), FModel.end(), slot, Less()), slot);
    }
    void Erase(int32_t slot) {
        FTree.Erase(slot);
        FModel.erase(std::remove(FModel.begin(), FModel.end(), slot), FModel.end());
    }
    void Assign(std::vector<int32_t> slots) {
        std::sort(slots.begin(), slots.end(), Less());
        FTree.Assign(slots.data(), static_cast<int32_t>(slots.size()));
        FModel = slots;
    }
    // One random step: mostly insertions while small, mostly erasures while large.
    void Step(int32_t target) {
        const int32_t slot = static_cast<int32_t>(FRng() % FPrio.size());
        const bool grow = int32_t(FModel.size()) < target ? FRng() % 4 != 0 : FRng() % 4 == 0;
        if (FKeyed && FTree.Contains(slot) && FRng() % 3 == 0)
            MoveKey(slot);
        else if (FTree.Contains(slot) && !grow)
            Erase(slot);
        else if (!FTree.Contains(slot) && grow)
            Insert(slot);
    }
    // A new key for a present slot, between the keys of its neighbours in the whole order.
    void MoveKey(int32_t slot) {
        const int32_t p = FPrio[size_t(slot)];
        const uint64_t lo = p > 0 ? FKey[size_t(FByPrio[size_t(p - 1)])] : 0;
        const uint64_t hi = p + 1 < int32_t(FPrio.size()) ? FKey[size_t(FByPrio[size_t(p + 1)])] : lo + 5;
        FKey[size_t(slot)] = lo + FRng() % (hi - lo + 1);
        FTree.Refresh(slot);
    }

    void Check() const {
        ASSERT_TRUE(FTree.Validate());
        ASSERT_EQ(FTree.Size(), int32_t(FModel.size()));
        for (size_t i = 0; i < FModel.size(); ++i) {
            const int32_t s = FModel[i];
            ASSERT_EQ(FTree.At(int32_t(i)), s) << "position " << i;
            ASSERT_EQ(FTree.PositionOf(s), int32_t(i));
            ASSERT_EQ(FTree.Neighbour(s, -1), i == 0 ? -1 : FModel[i - 1]);
            ASSERT_EQ(FTree.Neighbour(s, +1), i + 1 == FModel.size() ? -1 : FModel[i + 1]);
        }
        EXPECT_EQ(FTree.At(-1), -1);
        EXPECT_EQ(FTree.At(int32_t(FModel.size())), -1);
        for (int32_t s = 0; s < int32_t(FPrio.size()); ++s) {
            if (!std::binary_search(FModel.begin(), FModel.end(), s, Less())) {
                ASSERT_EQ(FTree.PositionOf(s), -1);
            }
        }
        // Partition at every priority boundary, and a walk from a middle position.
        for (int32_t p = 0; p <= int32_t(FPrio.size()); p += 7) {
            const auto before = [&](int32_t s) { return FPrio[size_t(s)] < p; };
            const auto expect = std::count_if(FModel.begin(), FModel.end(), before);
            ASSERT_EQ(FTree.Partition(before), expect);
        }
        std::vector<int32_t> walked;
        const int32_t from = int32_t(FModel.size()) / 3;
        FTree.ForEachFrom(from, [&](int32_t s) {
            walked.push_back(s);
            return true;
        });
        ASSERT_TRUE(std::equal(walked.begin(), walked.end(), FModel.begin() + from, FModel.end()));
    }

    std::vector<int32_t> RandomSubset(size_t n) {
        std::vector<int32_t> all(FPrio.size());
        std::iota(all.begin(), all.end(), 0);
        std::shuffle(all.begin(), all.end(), FRng);
        all.resize(std::min(n, all.size()));
        return all;
    }
    size_t Size() const { return FModel.size(); }

private:
    auto Less() const {
        return [this](int32_t a, int32_t b) { return FPrio[size_t(a)] < FPrio[size_t(b)]; };
    }
    std::mt19937 FRng;
    std::vector<int32_t> FPrio;
    std::vector<int32_t> FByPrio;
    std::vector<uint64_t> FKey;
    bool FKeyed = false;
    Tree FTree;
    std::vector<int32_t> FModel;
};

template <class Tree> void GrowShrinkAndReload(uint32_t seed, bool keyed) {
    TTreeDriver<Tree> d(600, seed, keyed);
    // Grow to a few hundred, shrink to nothing (the root collapses level by level), grow again.
    for (int32_t target : {400, 0, 250}) {
        for (int i = 0; i < 3000; ++i) {
            d.Step(target);
            if (i % 97 == 0) {
                ASSERT_NO_FATAL_FAILURE(d.Check());
            }
        }
        ASSERT_NO_FATAL_FAILURE(d.Check());
    }
    // Bulk loads of every small size and a large one, each followed by changes; the last one reuses the
    // large one's leaves and slot map.
    for (size_t n : {size_t(0), size_t(1), size_t(3), size_t(4), size_t(17), size_t(500), size_t(5)}) {
        d.Assign(d.RandomSubset(n));
        ASSERT_NO_FATAL_FAILURE(d.Check());
        for (int i = 0; i < 400; ++i)
            d.Step(int32_t(n));
        ASSERT_NO_FATAL_FAILURE(d.Check());
    }
}

} // namespace

// Without order keys, and with order keys that follow the first slots they stand for.
TEST(TCountedSlotTree, TinyNodesFollowASortedVector) {
    GrowShrinkAndReload<TCountedSlotTree<4, 4>>(1, false);
    GrowShrinkAndReload<TCountedSlotTree<5, 5>>(2, false);
    GrowShrinkAndReload<TCountedSlotTree<8, 6>>(3, false);
    GrowShrinkAndReload<TCountedSlotTree<4, 4>>(4, true);
    GrowShrinkAndReload<TCountedSlotTree<6, 5>>(5, true);
}
