#include "core/TRowHighlights.h"
#include "core/SlotRenumber.h"

#include <algorithm>

namespace {

constexpr int64_t MsPerTick = 1000; // changes are remembered to the second; the fade steps as finely

} // namespace

TRowHighlights::TRowHighlights(TNoticeStore& Store, TClock Clock, int64_t DurationMs)
    : FStore(Store), FClock(std::move(Clock)), FDuration(std::max<int64_t>(1, DurationMs)) {
    FStore.AddRowObserver(this);
}

TRowHighlights::~TRowHighlights() {
    FStore.RemoveRowObserver(this);
}

void TRowHighlights::Touch(int32_t Slot) {
    if (Slot < 0) return;
    const int64_t now = Now();
    if (FChanged.empty()) FEpoch = now; // the first change since the start or since Clear
    if (static_cast<size_t>(Slot) >= FChanged.size()) FChanged.resize(static_cast<size_t>(Slot) + 1, 0);
    // Past the range of a 32-bit second count (136 years) the clock has gone wrong; keep the row plain.
    const int64_t tick = (now - FEpoch) / MsPerTick + 1;
    FChanged[Slot] = tick > 0 && tick <= UINT32_MAX ? static_cast<uint32_t>(tick) : 0;
    FLastChange = now;
    FAny = true;
}

void TRowHighlights::RowDeleted(int32_t Slot) {
    if (Slot >= 0 && static_cast<size_t>(Slot) < FChanged.size()) FChanged[Slot] = 0;
}

void TRowHighlights::RowsReset() {
    // Slots of an emptied store are used again from 0 by other notices.
    if (FStore.SlotCount() < static_cast<int32_t>(FChanged.size()) || FStore.TotalCount() == 0) Clear();
}

void TRowHighlights::Clear() {
    FChanged.clear();
    FAny = false;
}

double TRowHighlights::Emphasis(int32_t Key) const {
    if (!FAny) return 0;
    const int32_t slot = FStore.SlotOfKey(Key);
    if (slot < 0 || static_cast<size_t>(slot) >= FChanged.size() || FChanged[slot] == 0) return 0;
    const int64_t changed = FEpoch + (static_cast<int64_t>(FChanged[slot]) - 1) * MsPerTick;
    const int64_t age = Now() - changed;
    if (age >= FDuration) return 0;
    return age <= 0 ? 1.0 : 1.0 - static_cast<double>(age) / static_cast<double>(FDuration);
}

bool TRowHighlights::Active() const {
    return FAny && Now() - FLastChange < FDuration + MsPerTick;
}

void TRowHighlights::SlotsRenumbered(std::span<const int32_t> NewSlotOf) {
    RenumberSlots(FChanged, NewSlotOf);
}
