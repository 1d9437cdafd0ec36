// The notice grid's refresh: store changes are coalesced into at most one layout change every 100 ms,
// in which the rows on screen, the current row and the selection follow their keys.
#include "core/ui/NoticeBdGridPrivate.h"

#include <QAccessible>
#include <QScrollBar>

#include <algorithm>

void TNoticeBdGrid::ScheduleRefresh() {
    d->Pending = true;
    if (d->Timer->isActive()) return;
    // The first change after a quiet spell shows at the next turn of the event loop, later ones wait for
    // the 100 ms since the last refresh to pass.
    const int64_t wait = d->LastRefresh + 100 - d->Now();
    d->Timer->start(int(std::clamp<int64_t>(wait, 0, 100)));
}

void TNoticeBdGrid::RefreshNow() {
    d->Timer->stop();
    d->Pending = false;
    d->LastRefresh = d->Now();
    ++d->Refreshes;
    if (d->View.Revision() != d->SeenRevision)
        d->Reload();
    else if (d->StoreMoved)
        d->FollowStore();
    d->EmitSelectionChanged();
}

uint64_t TNoticeBdGrid::RefreshCount() const {
    return d->Refreshes;
}

bool TNoticeBdGrid::RefreshPending() const {
    return d->Pending;
}

void TNoticeBdGrid::SetRefreshClock(std::function<int64_t()> NowMs) {
    d->Clock = std::move(NowMs);
}

void TNoticeBdGrid::TPrivate::DataSetChanged() {
    Q.ScheduleRefresh();
}

void TNoticeBdGrid::TPrivate::RecordChanged(int32_t) {
    Q.ScheduleRefresh();
}

void TNoticeBdGrid::TPrivate::RowsReset() {
    if (Store.TotalCount() != 0) return; // a new filter: the refresh drops what it hides
    SelectionDirty |= Selection.Clear();
    Selection.Commit();
    AnchorId = 0;
    TopIds.clear();
}

void TNoticeBdGrid::TPrivate::Reload(quintptr PinId, int PinRow) {
    Timer->stop();
    Pending = false;
    const uint64_t revision = View.Revision();
    const bool rowsChanged = revision != SeenRevision;
    SeenRevision = revision;

    Model->Refresh();
    RowHeaderModel->Fit(Model->rowCount());
    if (rowsChanged) PruneSelection();

    UpdateScrollRange(); // the view does not lay itself out on the model's layout change (see the
                         // constructor)
#if QT_CONFIG(accessibility)
    if (QAccessible::isActive()) {
        QAccessibleTableModelChangeEvent event(&Q, QAccessibleTableModelChangeEvent::ModelReset);
        QAccessible::updateAccessibility(&event);
    }
#endif
    // The rows the user last saw at the top of the screen: the first of them that is still there goes
    // back to the top.
    // Scrolling back to the rows the user saw: the whole viewport is repainted below, so the backing
    // store need not be shifted first (a blit of the whole grid; a widget with updates off skips it).
    int top = -1;
    const int pinned = PinId ? Model->RowOfId(PinId) : -1;
    if (pinned >= 0) {
        top = std::max(0, pinned - PinRow);
    } else {
        for (const quintptr id : TopIds)
            if ((top = id ? Model->RowOfId(id) : -1) >= 0) break;
    }
    if (top >= 0 && top != Q.verticalScrollBar()->value()) {
        Q.viewport()->setUpdatesEnabled(false);
        Q.verticalScrollBar()->setValue(top);
        Q.viewport()->setUpdatesEnabled(true);
    }
    NoteTopRows();
    if (StoreMoved || !Q.currentIndex().isValid() || Store.GetBookmark() != StoreKey) FollowStore();
    NoteCurrentKey();
    Q.viewport()->update();
    if (RowHeader->isVisible()) RowHeader->viewport()->update();
}

void TNoticeBdGrid::TPrivate::NoteTopRows() {
    TopIds.clear();
    const int first = Q.rowAt(0);
    if (first < 0) return;
    // A few rows are enough: the first of them still there goes back to the top.
    const int last = std::min(Model->rowCount() - 1, first + 7);
    for (int row = first; row <= last; ++row)
        TopIds.push_back(Model->IdOf(row));
}

void TNoticeBdGrid::TPrivate::PruneSelection() {
    if (Selection.Empty()) return;
    // The view holds exactly the rows the filter in effect passes: an O(1) test per key.
    const bool filtered = Store.ActiveFilter() != nullptr;
    const bool changed = Selection.RemoveIf([&](int32_t key) {
        const int32_t slot = Store.SlotOfKey(key);
        return slot < 0 || (filtered && !Store.SlotPasses(slot));
    });
    SelectionDirty |= changed;
}

void TNoticeBdGrid::TPrivate::EmitSelectionChanged() {
    if (!SelectionDirty) return;
    SelectionDirty = false;
    Q.viewport()->update();
    emit Q.SelectionChanged();
}
