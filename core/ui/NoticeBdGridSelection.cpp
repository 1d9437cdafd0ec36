// The notice grid's selection, kept by key (TKeySelection) instead of in Qt's selection model, with Qt's
// extended-selection rules: a click selects one row, Ctrl+click toggles a row, Shift+click and
// Shift+arrows extend from the anchor row, dragging sweeps a range, Ctrl+A selects every row shown.
// Ranges go top to bottom or bottom to top as the user swept them, and are reported in that order.
#include "core/ui/NoticeBdGridPrivate.h"

#include <QKeyEvent>
#include <QMouseEvent>

using S = QItemSelectionModel;

namespace {

bool IsHeadingId(quintptr Id) {
    return Id >= TGridDisplayRows::HeadingIdBase;
}

} // namespace

QItemSelectionModel::SelectionFlags TNoticeBdGrid::selectionCommand(const QModelIndex& Index,
                                                                    const QEvent* Event) const {
    // Without an event (the current row set by code, or following the store) the selection stays.
    if (!Event) return S::NoUpdate;
    const bool dataRow = Index.isValid() && !IsHeadingId(Index.internalId());
    const bool selected = dataRow && d->Selection.Contains(int32_t(Index.internalId()));
    switch (Event->type()) {
    case QEvent::MouseButtonPress: {
        const auto* mouse = static_cast<const QMouseEvent*>(Event);
        const Qt::KeyboardModifiers mods = mouse->modifiers();
        if (!Index.isValid()) return S::NoUpdate;
        if (mouse->button() == Qt::RightButton)
            return mods == Qt::NoModifier && !selected ? S::ClearAndSelect | S::Rows : S::NoUpdate;
        if (mods & Qt::ShiftModifier) return S::Select | S::Current | S::Rows;
        if (mods & Qt::ControlModifier) {
            // Qt would toggle against its own (empty) selection model: decide here, against the keys,
            // and sweep a Ctrl+drag the same way.
            d->CtrlDragFlag = selected ? S::Deselect : S::Select;
            return d->CtrlDragFlag | S::Rows;
        }
        return S::ClearAndSelect | S::Rows;
    }
    case QEvent::MouseMove: {
        const Qt::KeyboardModifiers mods = static_cast<const QMouseEvent*>(Event)->modifiers();
        if (mods & Qt::ControlModifier) return d->CtrlDragFlag | S::Current | S::Rows;
        if (mods & Qt::ShiftModifier) return S::Select | S::Current | S::Rows;
        return S::Clear | S::Select | S::Current | S::Rows;
    }
    default:
        // Key presses are handled in keyPressEvent; releases and the rest change nothing.
        return S::NoUpdate;
    }
}

void TNoticeBdGrid::setSelection(const QRect& Rect, QItemSelectionModel::SelectionFlags Command) {
    if (Command == S::NoUpdate) return;
    int from, to;
    if (Command & S::Current) {
        // A sweep: from the anchor to the row under the mouse (Qt's rectangle may be stale by a refresh).
        to = d->RowAtY(d->MouseY);
        from = d->Model->RowOfId(d->AnchorId);
        if (from < 0) {
            from = to;
            d->AnchorId = d->Model->IdOf(from);
        }
    } else {
        from = to = d->RowAtY(Rect.top());
        d->AnchorId = d->Model->IdOf(from);
    }
    d->ApplyRange(from, to, Command);
}

int TNoticeBdGrid::TPrivate::RowAtY(int Y) const {
    const int count = Model->rowCount();
    const int row = Q.rowAt(Y);
    if (row >= 0) return std::min(row, count - 1); // below the last row: the row header's spare rows
    if (count == 0) return -1;
    return Y < Q.rowViewportPosition(0) ? 0 : count - 1;
}

bool TNoticeBdGrid::TPrivate::ApplyRange(int From, int To, QItemSelectionModel::SelectionFlags Command) {
    bool changed = false;
    if (Command & S::Current)
        changed |= Selection.Revert();
    else
        Selection.Commit();
    Selection.RecordChanges(Command & S::Current);
    if (Command & S::Clear) changed |= Selection.Clear();
    if ((Command & (S::Select | S::Deselect | S::Toggle)) && From >= 0 && To >= 0) {
        const int step = To >= From ? 1 : -1;
        for (int row = From;; row += step) {
            const int32_t key = Model->KeyOf(row);
            if (key > 0) {
                if (Command & S::Select)
                    changed |= Selection.Add(key);
                else if (Command & S::Deselect)
                    changed |= Selection.Remove(key);
                else
                    changed |= Selection.Contains(key) ? Selection.Remove(key) : Selection.Add(key);
            }
            if (row == To) break;
        }
    }
    Selection.RecordChanges(false);
    SelectionDirty |= changed;
    EmitSelectionChanged();
    return changed;
}

void TNoticeBdGrid::TPrivate::MoveCurrent(const QModelIndex& Index, Qt::KeyboardModifiers Modifiers) {
    if (!Index.isValid()) return;
    if (Modifiers & Qt::ShiftModifier) {
        int from = Model->RowOfId(AnchorId);
        if (from < 0) {
            from = Q.currentIndex().isValid() ? Q.currentIndex().row() : Index.row();
            AnchorId = Model->IdOf(from);
        }
        ApplyRange(from, Index.row(), S::Select | S::Current);
    } else if (!(Modifiers & Qt::ControlModifier)) {
        ApplyRange(Index.row(), Index.row(), S::ClearAndSelect);
        AnchorId = Model->IdOf(Index.row());
    }
    Q.selectionModel()->setCurrentIndex(Index, S::NoUpdate);
}

void TNoticeBdGrid::keyPressEvent(QKeyEvent* Event) {
    if (Event->matches(QKeySequence::Copy)) {
        CopySelection();
        return Event->accept();
    }
    if (Event->matches(QKeySequence::SelectAll)) {
        selectAll();
        return Event->accept();
    }
    const QModelIndex current = currentIndex();
    const TGridRowInfo info = d->Model->Info(current.row());
    const Qt::KeyboardModifiers mods = Event->modifiers();
    const auto move = [&](CursorAction action, Qt::KeyboardModifiers extra = Qt::NoModifier) {
        d->MoveCurrent(moveCursor(action, mods | extra), mods);
        Event->accept();
    };
    switch (Event->key()) {
    case Qt::Key_Up:
        return move(MoveUp);
    case Qt::Key_Down:
        return move(MoveDown);
    case Qt::Key_PageUp:
        return move(MovePageUp);
    case Qt::Key_PageDown:
        return move(MovePageDown);
    case Qt::Key_Home: // rows, not columns: the first row and the last
        return move(MoveHome, Qt::ControlModifier);
    case Qt::Key_End:
        return move(MoveEnd, Qt::ControlModifier);
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Plus:
    case Qt::Key_Minus:
        if (info.Heading) {
            d->SetHeadingExpanded(current.row(),
                                  Event->key() == Qt::Key_Right || Event->key() == Qt::Key_Plus);
            return Event->accept();
        }
        if (Event->key() == Qt::Key_Left || Event->key() == Qt::Key_Right) {
            // Across the columns: the focus rectangle moves, the selection stays.
            const QModelIndex next = moveCursor(Event->key() == Qt::Key_Left ? MoveLeft : MoveRight, mods);
            if (next.isValid()) selectionModel()->setCurrentIndex(next, S::NoUpdate);
            return Event->accept();
        }
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (info.Heading) {
            d->ToggleHeading(current.row());
            return Event->accept();
        }
        break;
    case Qt::Key_Space:
        if (current.isValid() && !info.Heading) {
            const int row = current.row();
            d->ApplyRange(row, row, mods & Qt::ControlModifier ? S::Toggle : S::Select);
            d->AnchorId = d->Model->IdOf(row);
            return Event->accept();
        }
        break;
    default:
        break;
    }
    QTableView::keyPressEvent(Event);
}

void TNoticeBdGrid::keyboardSearch(const QString&) {}

void TNoticeBdGrid::keyReleaseEvent(QKeyEvent* Event) {
    QTableView::keyReleaseEvent(Event);
    emit KeyReleased();
}

void TNoticeBdGrid::mousePressEvent(QMouseEvent* Event) {
    d->MouseY = Event->position().toPoint().y();
    const int row = rowAt(d->MouseY);
    if (Event->button() == Qt::LeftButton && row >= 0 && d->Model->Info(row).Heading &&
        d->ArrowRect(row).contains(Event->position().toPoint())) {
        selectionModel()->setCurrentIndex(d->Model->index(row, std::max(0, currentIndex().column())),
                                          S::NoUpdate);
        d->ToggleHeading(row);
        return Event->accept();
    }
    QTableView::mousePressEvent(Event);
}

void TNoticeBdGrid::mouseMoveEvent(QMouseEvent* Event) {
    d->MouseY = Event->position().toPoint().y();
    QTableView::mouseMoveEvent(Event);
}

void TNoticeBdGrid::mouseReleaseEvent(QMouseEvent* Event) {
    QTableView::mouseReleaseEvent(Event);
    emit MouseReleased();
}

void TNoticeBdGrid::mouseDoubleClickEvent(QMouseEvent* Event) {
    const int row = rowAt(Event->position().toPoint().y());
    if (Event->button() == Qt::LeftButton && row >= 0 && d->Model->Info(row).Heading) {
        d->ToggleHeading(row);
        return Event->accept();
    }
    QTableView::mouseDoubleClickEvent(Event);
}

std::vector<int32_t> TNoticeBdGrid::SelectedKeys() const {
    return d->Selection.Keys();
}

void TNoticeBdGrid::SetSelectedKeys(const std::vector<int32_t>& Keys) {
    std::vector<int32_t> kept;
    kept.reserve(Keys.size());
    for (const int32_t key : Keys)
        if (key > 0 && d->View.PositionOf(key) >= 0) kept.push_back(key);
    const std::vector<int32_t> before = d->Selection.Keys();
    d->Selection.Assign(std::move(kept));
    d->SelectionDirty |= before != d->Selection.Keys();
    d->EmitSelectionChanged();
}

void TNoticeBdGrid::selectAll() {
    d->Selection.Assign(d->KeysInDisplayOrder(false));
    d->SelectionDirty = true;
    d->EmitSelectionChanged();
}

int TNoticeBdGrid::SelectedCount() const {
    return d->Selection.Count();
}

TBookmark TNoticeBdGrid::SelectedBookmark(int Index) const {
    const std::vector<int32_t>& keys = d->Selection.Keys();
    return Index >= 0 && size_t(Index) < keys.size() ? keys[size_t(Index)] : 0;
}
