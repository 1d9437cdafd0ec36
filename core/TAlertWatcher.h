// Decides when the board announces trouble. It hears every row change of a notice store and keeps, per
// row, its severity and whether it is acknowledged. A notice is *trouble* while it is live, its severity
// is at or above the threshold and it is unacknowledged (no ack_date, or raised again after it). A notice
// that becomes trouble (posted so, or updated into it) is announced once; while any trouble stays, a
// reminder follows every RepeatMinutes after the last announcement. Muting (for a while or until the
// board closes) swallows announcements; the reminders' rhythm goes on underneath.
//
// The rows of one notice message arrive one by one; the watcher gathers them, and the owner takes them as
// one announcement once the message is through (TakeAnnouncement, typically from the next event-loop
// turn that the OnChange hook schedules). Time comes from an injected clock (milliseconds, steady), so
// tests never wait.
//
// Costs: one byte per store slot; every row change O(1); a threshold change or a reset O(slots).
// Owned by the window (or a test); registers itself with the store for its whole life, so the store must
// outlive it. The store's thread only. Nothing throws except std::bad_alloc.
#pragma once

#include "core/TNoticeStore.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

enum class TAlertKind {
    NewTrouble, // notices became trouble since the last announcement
    Reminder,   // trouble is still unacknowledged
};

struct TAlertAnnouncement {
    TAlertKind Kind = TAlertKind::NewTrouble;
    int32_t Severity = 0; // the worst severity among the notices announced (NewTrouble) or in trouble
    int32_t Notices = 0;  // how many became trouble (NewTrouble), or are trouble now (Reminder)
    // One notice of the worst severity: the first to become trouble (NewTrouble) or the newest (Reminder).
    int32_t Key = 0;
    std::string Summary;
    std::string Server;
};

class TAlertWatcher final : INoticeRowObserver {
public:
    using TClock = std::function<int64_t()>; // milliseconds of a steady clock

    // Reads the store's rows as they are now; none of them is announced.
    TAlertWatcher(TNoticeStore& Store, TClock Clock);
    ~TAlertWatcher() override;
    TAlertWatcher(const TAlertWatcher&) = delete;
    TAlertWatcher& operator=(const TAlertWatcher&) = delete;

    // Severity 1..4 at or above which a notice is trouble. Notices that are trouble only under the new
    // threshold are not announced; they count for reminders.
    void SetThreshold(int32_t MinSeverity);
    int32_t Threshold() const { return FThreshold; }
    // Minutes between reminders; 0 for none.
    void SetRepeatMinutes(int32_t Minutes);

    // Called after every change of the rows the watcher hears (from inside the store's operation, so it
    // must not change the store): the counts may have moved and an announcement may be gathering.
    void SetOnChange(std::function<void()> Hook) { FOnChange = std::move(Hook); }
    bool Pending() const { return FPending.Notices > 0; }
    // The gathered notices as one announcement, or nothing (none gathered, or muted: then they are
    // dropped). Starts the reminders' rhythm from now.
    std::optional<TAlertAnnouncement> TakeAnnouncement();
    // A reminder when one is due now (trouble stays, RepeatMinutes since the last announcement, not
    // muted). A due reminder swallowed by muting moves the next one on all the same.
    std::optional<TAlertAnnouncement> TakeReminder();
    // Milliseconds from now until the next reminder is due (0 when overdue), or nothing while no reminder
    // is to come.
    std::optional<int64_t> NextReminderIn() const;

    // Muting. MuteFor(0) or Unmute() ends it.
    void MuteFor(int64_t Milliseconds);
    void MuteUntilRestart();
    void Unmute();
    bool Muted() const;
    bool MutedUntilRestart() const { return FMuteForever; }
    // Milliseconds of muting left (0 when not muted, or muted until restart).
    int64_t MuteLeft() const;

    // How many live notices are trouble. (How many are live, per severity, is TSeverityCounts'.)
    int32_t TroubleCount() const { return FTrouble; }

private:
    void RowInserted(int32_t Slot) override;
    void RowUpdated(int32_t Slot) override;
    void RowDeleted(int32_t Slot) override;
    void RowsReset() override;
    // Compaction: the per-slot data moves with the rows; nothing is counted again.
    void SlotsRenumbered(std::span<const int32_t> NewSlotOf) override;

    static uint8_t StateOf(const TNoticeRecord& Row);
    bool IsTrouble(uint8_t State) const;
    void Enter(int32_t Slot, uint8_t State);
    void Leave(int32_t Slot);
    void Gather(const TNoticeRecord& Row, uint8_t State);
    void Recount();
    void Changed() {
        if (FOnChange) FOnChange();
    }
    TAlertAnnouncement ReminderNow() const;
    int64_t Now() const { return FClock(); }

    TNoticeStore& FStore;
    TClock FClock;
    std::function<void()> FOnChange;
    std::vector<uint8_t> FState; // per slot: 0 not live, else live | unacknowledged | severity class
    int32_t FTrouble = 0;
    int32_t FThreshold = 3;
    int64_t FRepeatMs = 0;
    TAlertAnnouncement FPending; // gathered, not yet taken
    std::optional<int64_t> FNextReminder;
    int64_t FMuteUntil = 0;
    bool FMuteForever = false;
};
