// A narrowing of an ordered view (the grid's quick search): a condition a view applies on top of the
// store's filter, so that it serves only the rows both pass. The view asks it about one row as rows
// change, and about many at once when it reads again; the generation tells the view that the condition
// itself changed, and whether the new one only narrows the old (then the view keeps its order and drops
// rows instead of sorting again).
// Owned by whoever installs it in a view; must outlive the installation. The store's thread only, except
// that Narrow may use worker threads of its own inside the call.
#pragma once

#include <cstdint>
#include <vector>

class IRowNarrowing {
public:
    virtual ~IRowNarrowing() = default;
    // False while the condition passes every row (then the view behaves as without a narrowing).
    virtual bool Narrows() const = 0;
    // Changes whenever the condition changes (not when rows change). Never 0.
    virtual uint64_t Generation() const = 0;
    // True when every row the condition passes now also passed it at generation Since. False when not
    // known (an old generation is forgotten).
    virtual bool Refines(uint64_t Since) const = 0;
    // Whether the live row at Slot passes, by its values now (called from the store's row feed, so it must
    // not rely on having heard of the change itself). Must not throw.
    virtual bool Matches(int32_t Slot) const = 0;
    // Keeps the slots that pass, in their order. May raise std::bad_alloc; Slots is then unchanged.
    virtual void Narrow(std::vector<int32_t>& Slots) = 0;
};
