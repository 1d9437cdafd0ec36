#include "core/TAlertWatcher.h"
#include "core/SlotRenumber.h"

#include <algorithm>

namespace {

constexpr uint8_t LiveBit = 0x80;
constexpr uint8_t UnackedBit = 0x08;
constexpr uint8_t SeverityMask = 0x07;

int32_t SeverityClass(uint8_t State) {
    return State & SeverityMask;
}

} // namespace

TAlertWatcher::TAlertWatcher(TNoticeStore& Store, TClock Clock) : FStore(Store), FClock(std::move(Clock)) {
    Recount();
    FStore.AddRowObserver(this);
}

TAlertWatcher::~TAlertWatcher() {
    FStore.RemoveRowObserver(this);
}

// Severity 1..4 as its class, anything else as 0; unacknowledged while there is no acknowledgement or the
// notice was raised again after it (the board's own test for the acknowledge button).
uint8_t TAlertWatcher::StateOf(const TNoticeRecord& Row) {
    const int32_t severity = Row.AsInteger(nf_note_severity);
    uint8_t state = LiveBit | static_cast<uint8_t>(severity >= 1 && severity <= 4 ? severity : 0);
    if (Row.IsNull(nf_ack_date) || Row.AsDateTime(nf_note_last_raised_date) > Row.AsDateTime(nf_ack_date))
        state |= UnackedBit;
    return state;
}

bool TAlertWatcher::IsTrouble(uint8_t State) const {
    const int32_t severity = SeverityClass(State);
    return (State & LiveBit) && (State & UnackedBit) && severity != 0 && severity >= FThreshold;
}

void TAlertWatcher::Enter(int32_t Slot, uint8_t State) {
    if (static_cast<size_t>(Slot) >= FState.size()) FState.resize(static_cast<size_t>(Slot) + 1, 0);
    FState[Slot] = State;
    if (IsTrouble(State)) ++FTrouble;
}

void TAlertWatcher::Leave(int32_t Slot) {
    if (Slot < 0 || static_cast<size_t>(Slot) >= FState.size()) return;
    const uint8_t state = FState[Slot];
    if (!(state & LiveBit)) return;
    if (IsTrouble(state)) --FTrouble;
    FState[Slot] = 0;
    if (FTrouble == 0) FNextReminder.reset();
}

void TAlertWatcher::Gather(const TNoticeRecord& Row, uint8_t State) {
    const bool first = FPending.Notices == 0;
    ++FPending.Notices;
    const int32_t severity = SeverityClass(State);
    if (first || severity > FPending.Severity) {
        FPending.Severity = severity;
        FPending.Key = Row.AsInteger(nf_nb_internal_key);
        FPending.Summary = Row.AsString(nf_note_summary);
        FPending.Server = Row.AsString(nf_adpt_orig_server);
    }
}

void TAlertWatcher::RowInserted(int32_t Slot) {
    const TNoticeRecord& row = FStore.RowBySlot(Slot);
    const uint8_t state = StateOf(row);
    Enter(Slot, state);
    if (IsTrouble(state)) Gather(row, state);
    Changed();
}

void TAlertWatcher::RowUpdated(int32_t Slot) {
    const bool was = static_cast<size_t>(Slot) < FState.size() && IsTrouble(FState[Slot]);
    Leave(Slot);
    const TNoticeRecord& row = FStore.RowBySlot(Slot);
    const uint8_t state = StateOf(row);
    Enter(Slot, state);
    if (!was && IsTrouble(state)) Gather(row, state);
    Changed();
}

void TAlertWatcher::RowDeleted(int32_t Slot) {
    Leave(Slot);
    Changed();
}

void TAlertWatcher::RowsReset() {
    // A new filter text resets the views too, but the rows stay: only an emptied store drops what was
    // gathered.
    Recount();
    if (FTrouble == 0) FPending = TAlertAnnouncement{};
    Changed();
}

void TAlertWatcher::Recount() {
    FState.assign(static_cast<size_t>(FStore.SlotCount()), 0);
    FTrouble = 0;
    for (int32_t slot = 0; slot < FStore.SlotCount(); ++slot)
        if (FStore.SlotLive(slot)) Enter(slot, StateOf(FStore.RowBySlot(slot)));
    if (FTrouble == 0) FNextReminder.reset();
}

void TAlertWatcher::SetThreshold(int32_t MinSeverity) {
    MinSeverity = std::clamp(MinSeverity, 1, 4);
    if (MinSeverity == FThreshold) return;
    FThreshold = MinSeverity;
    FTrouble = 0;
    for (const uint8_t state : FState)
        if (IsTrouble(state)) ++FTrouble;
    if (FTrouble == 0)
        FNextReminder.reset();
    else if (!FNextReminder && FRepeatMs > 0)
        FNextReminder = Now() + FRepeatMs;
}

void TAlertWatcher::SetRepeatMinutes(int32_t Minutes) {
    const int64_t ms = std::max<int64_t>(0, Minutes) * 60000;
    if (ms == FRepeatMs) return;
    FRepeatMs = ms;
    // A changed rhythm starts from now.
    FNextReminder.reset();
    if (FRepeatMs > 0 && FTrouble > 0) FNextReminder = Now() + FRepeatMs;
}

std::optional<TAlertAnnouncement> TAlertWatcher::TakeAnnouncement() {
    if (FPending.Notices == 0) return std::nullopt;
    TAlertAnnouncement taken = std::move(FPending);
    FPending = TAlertAnnouncement{};
    if (FRepeatMs > 0 && FTrouble > 0) FNextReminder = Now() + FRepeatMs;
    if (Muted()) return std::nullopt;
    return taken;
}

std::optional<TAlertAnnouncement> TAlertWatcher::TakeReminder() {
    if (!FNextReminder || FTrouble == 0 || FRepeatMs == 0) return std::nullopt;
    const int64_t now = Now();
    if (now < *FNextReminder) return std::nullopt;
    FNextReminder = now + FRepeatMs;
    if (Muted()) return std::nullopt;
    return ReminderNow();
}

std::optional<int64_t> TAlertWatcher::NextReminderIn() const {
    if (!FNextReminder || FTrouble == 0 || FRepeatMs == 0) return std::nullopt;
    return std::max<int64_t>(0, *FNextReminder - Now());
}

// The worst trouble and its newest notice: one pass over the slots from the newest, every few minutes.
TAlertAnnouncement TAlertWatcher::ReminderNow() const {
    TAlertAnnouncement a;
    a.Kind = TAlertKind::Reminder;
    a.Notices = FTrouble;
    int32_t found = -1;
    for (int32_t slot = static_cast<int32_t>(FState.size()) - 1; slot >= 0; --slot) {
        const uint8_t state = FState[slot];
        if (!IsTrouble(state) || SeverityClass(state) <= a.Severity) continue;
        a.Severity = SeverityClass(state);
        found = slot;
        if (a.Severity == 4) break;
    }
    if (found >= 0) {
        const TNoticeRecord& row = FStore.RowBySlot(found);
        a.Key = row.AsInteger(nf_nb_internal_key);
        a.Summary = row.AsString(nf_note_summary);
        a.Server = row.AsString(nf_adpt_orig_server);
    }
    return a;
}

void TAlertWatcher::MuteFor(int64_t Milliseconds) {
    FMuteForever = false;
    FMuteUntil = Milliseconds > 0 ? Now() + Milliseconds : 0;
}

void TAlertWatcher::MuteUntilRestart() {
    FMuteForever = true;
}

void TAlertWatcher::Unmute() {
    FMuteForever = false;
    FMuteUntil = 0;
}

bool TAlertWatcher::Muted() const {
    return FMuteForever || (FMuteUntil != 0 && Now() < FMuteUntil);
}

int64_t TAlertWatcher::MuteLeft() const {
    return !FMuteForever && FMuteUntil != 0 ? std::max<int64_t>(0, FMuteUntil - Now()) : 0;
}

void TAlertWatcher::SlotsRenumbered(std::span<const int32_t> NewSlotOf) {
    RenumberSlots(FState, NewSlotOf);
}
