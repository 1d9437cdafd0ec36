// How many notices of a store a filter text passes, counted a slice at a time, so that a window can count
// a million rows between its other events without freezing. Owner's thread only.
#pragma once

#include "core/TRowFilter.h"

#include <cstdint>
#include <memory>
#include <string>

class TNoticeStore;

class TFilterPassCount {
public:
    // Compiles Text with the filter language and starts counting the live rows of Store (all of them,
    // whatever filter the store has). Store is not owned and must neither change nor go away while the
    // count runs. Raises EFilterExpressionError for a text that does not compile; the count is then idle.
    void Start(const TNoticeStore& Store, const std::string& Text);
    // Stops counting; Done() stays false.
    void Reset();

    // Examines up to Rows more row slots. True when the count is complete (also when there is none).
    bool Step(int32_t Rows);

    bool Running() const { return FStore != nullptr; }
    bool Done() const { return FDone; }
    int32_t Passed() const { return FPassed; } // so far, and the result once Done()
    int32_t Total() const { return FTotal; }   // live rows of the store when the count started
    // Share of the slots examined, 0 to 1.
    double Progress() const;

private:
    const TNoticeStore* FStore = nullptr;
    std::unique_ptr<IRowFilter> FFilter;
    int32_t FNext = 0;
    int32_t FPassed = 0;
    int32_t FTotal = 0;
    bool FDone = false;
};
