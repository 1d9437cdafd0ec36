// The notice grid: construction, the display's settings and options, the row geometry, and the current
// row, which is the store's current row both ways. Painting, refresh, selection, layout, group headings and
// the export side each have a file of their own (NoticeBdGrid*.cpp).
#include "core/ui/NoticeBdGridPrivate.h"

#include "core/ui/NbColors.h"
#include "views/Displayu.h"

#include <QScrollBar>

#include <chrono>

TNoticeBdGrid::TPrivate::TPrivate(TNoticeBdGrid& Grid, TNoticeStore& AStore)
    : Q(Grid), Store(AStore), Search(AStore), View(AStore) {
    Init();
}

TNoticeBdGrid::TPrivate::TPrivate(TNoticeBdGrid& Grid, TNoticeStore& AStore, const TNoticeGridView& RowsOf,
                                  const TGridLayout& Normalized)
    : Q(Grid), Store(AStore), Search(AStore),
      View(AStore, RowsOf, Normalized.GroupColumns(), Normalized.SortColumns()) {
    Init();
}

void TNoticeBdGrid::TPrivate::Init() {
    View.SetNarrowing(&Search); // narrows nothing until a text is typed
    Clock = [] {
        return int64_t(std::chrono::duration_cast<std::chrono::milliseconds>(
                           std::chrono::steady_clock::now().time_since_epoch())
                           .count());
    };
}

TNoticeBdGrid::TPrivate::~TPrivate() {
    Store.RemoveListener(this);
    Store.RemoveRowObserver(this);
}

TNoticeBdGrid::TNoticeBdGrid(TNoticeStore& Store, QWidget* Parent)
    : QTableView(Parent), d(std::make_unique<TPrivate>(*this, Store)) {
    Init(TGridLayout::Defaults(WidthUnit()));
}

TNoticeBdGrid::TNoticeBdGrid(TNoticeStore& Store, const TNoticeBdGrid& ViewOf, QWidget* Parent)
    : TNoticeBdGrid(Store, ViewOf, ViewOf.Layout(), Parent) {}

namespace {
TGridLayout Normalized(TGridLayout Layout) {
    Layout.Normalize();
    return Layout;
}
} // namespace

TNoticeBdGrid::TNoticeBdGrid(TNoticeStore& Store, const TNoticeBdGrid& ViewOf, const TGridLayout& Layout,
                             QWidget* Parent)
    : QTableView(Parent), d(std::make_unique<TPrivate>(*this, Store, ViewOf.View(), Normalized(Layout))) {
    // The view already holds its rows in Layout's order (taken from ViewOf's, or sorted at the first
    // read), so showing Layout sorts nothing more.
    Init(Layout);
}

void TNoticeBdGrid::Init(const TGridLayout& Layout) {
    setObjectName(QStringLiteral("NoticeBdGrid"));
    d->Model = new TNoticeGridModel(d->View, this);
    d->Header = new TNoticeGridHeader(Qt::Horizontal, this);
    d->RowHeader = new TNoticeGridHeader(Qt::Vertical, this);
    // Every row has the same height, from the font, set before there are rows: changing it later tells
    // the table of every row (and makes it keep a list of them).
    d->RowHeader->setMinimumSectionSize(1);
    d->RowHeader->setDefaultSectionSize(fontMetrics().height() + 4);
    d->RowHeader->setFixedWidth(14);
    d->RowHeader->setVisible(false);
    setHorizontalHeader(d->Header);
    setVerticalHeader(d->RowHeader);
    setModel(d->Model);
    // The row header counts rows of its own (see NoticeGridHeader.h).
    d->RowHeaderModel = new TRowHeaderModel(this);
    d->RowHeader->setModel(d->RowHeaderModel);
    // A refresh is a layout change of the model, on which Qt's view would lay itself out again (headers,
    // margins, scroll bars: most of a refresh's cost). Only the row count changes, so the grid sets the
    // scroll range itself (TPrivate::Reload).
    disconnect(d->Model, &QAbstractItemModel::layoutChanged, this, nullptr);
    d->Delegate = new TNoticeGridDelegate(*d->Model, d->Selection, this);
    setItemDelegate(d->Delegate);

    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setShowGrid(false); // the delegate draws the lines, in the display's colour
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setTabKeyNavigation(false);
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);

    d->Timer = new QTimer(this);
    d->Timer->setObjectName(QStringLiteral("RefreshTimer"));
    d->Timer->setSingleShot(true);
    connect(d->Timer, &QTimer::timeout, this, [this] {
        if (!d->Pending) return;
        const int64_t since = d->Now() - d->LastRefresh;
        if (since < 100)
            d->Timer->start(int(100 - since));
        else
            RefreshNow();
    });
    connect(d->Header, &QHeaderView::sectionMoved, this, [this] { d->HeaderMoved(); });
    connect(d->Header, &QHeaderView::sectionResized, this,
            [this](int field, int, int size) { d->HeaderResized(field, size); });
    connect(d->Header, &TNoticeGridHeader::SectionClicked, this,
            [this](int field, Qt::KeyboardModifiers m) { d->HeaderClicked(field, m); });
    connect(d->Header, &TNoticeGridHeader::MenuRequested, this,
            [this](int field, const QPoint& at) { d->ShowColumnMenu(field, at); });
    connect(d->Header, &TNoticeGridHeader::ColumnVisibilityChosen, this,
            [this](int field, bool on) { d->SetColumnVisible(field, on); });
    connect(d->Header, &TNoticeGridHeader::GroupByChosen, this, [this](int field) { d->GroupBy(field); });
    connect(d->Header, &TNoticeGridHeader::UngroupAllChosen, this, [this] { d->UngroupAll(); });
    connect(d->Header, &TNoticeGridHeader::ExpandAllChosen, this, &TNoticeBdGrid::SetAllGroupsExpanded);

    SetGridColor(d->GridColor);
    SetOptions(goRowIndicator | goFocusRect);
    d->Layout = Layout;
    d->Layout.Normalize();
    d->ApplyLayoutToHeader();
    d->View.SetOrder(d->Layout.GroupColumns(), d->Layout.SortColumns());
    d->Store.AddListener(d.get());
    d->Store.AddRowObserver(d.get());
    // The first rows, now that both headers have their models (see TNoticeGridModel).
    d->Model->Refresh();
    d->RowHeaderModel->Fit(d->Model->rowCount());
    d->UpdateScrollRange();
    d->SeenRevision = d->View.Revision();
    d->FollowStore();
}

TNoticeBdGrid::~TNoticeBdGrid() {
    d->Timer->stop();
    // The model reads the view, which goes with d: let the view's parts forget it first.
    setModel(nullptr);
    delete d->Model;
}

TNoticeStore& TNoticeBdGrid::Store() const {
    return d->Store;
}

TNoticeGridView& TNoticeBdGrid::View() const {
    return d->View;
}

void TNoticeBdGrid::SetDisplay(const TDisplay* Display) {
    d->Display = Display;
    viewport()->update();
}

const TDisplay* TNoticeBdGrid::Display() const {
    return d->Display;
}

void TNoticeBdGrid::AssignColumnHeaders() {
    for (const NoticeBdColRec& entry : NoticeBdColumnArray)
        d->Model->SetCaption(entry.Field, QString::fromUtf8(entry.Caption));
}

QString TNoticeBdGrid::ColumnCaption(TNoticeField Field) const {
    return d->Model->Caption(Field);
}

void TNoticeBdGrid::SetGridColor(TColor Color) {
    d->GridColor = Color;
    // The area below the last row takes the grid colour too.
    QPalette palette = viewport()->palette();
    palette.setColor(QPalette::Base, ToQColor(Color));
    viewport()->setPalette(palette);
    viewport()->update();
}

void TNoticeBdGrid::SetGridLineColor(TColor Color) {
    d->GridLineColor = Color;
    viewport()->update();
}

void TNoticeBdGrid::SetShowGridLines(bool Show) {
    d->ShowGridLines = Show;
    viewport()->update();
}

void TNoticeBdGrid::SetShowGroupPanel(bool Show) {
    d->ShowGroupPanel = Show;
}

uint32_t TNoticeBdGrid::Options() const {
    return d->Options;
}

void TNoticeBdGrid::SetOptions(uint32_t Options) {
    const uint32_t changed = d->Options ^ Options;
    d->Options = Options;
    if (changed & goRowIndicator) d->RowHeader->setVisible(Options & goRowIndicator);
    if (changed & goAutoWidth) d->ApplyLayoutToHeader();
    viewport()->update();
}

void TNoticeBdGrid::RefreshGrid() {
    viewport()->update();
    d->Header->viewport()->update();
}

int32_t TNoticeBdGrid::WidthUnit() const {
    return std::max(1, fontMetrics().averageCharWidth());
}

void TNoticeBdGrid::updateGeometries() {
    QTableView::updateGeometries();
    d->UpdateScrollRange();
}

// The row header holds more rows than the grid: scroll over the grid's rows only.
void TNoticeBdGrid::TPrivate::UpdateScrollRange() {
    const int rows = Model->rowCount();
    const int perPage = std::max(1, Q.viewport()->height() / std::max(1, RowHeader->defaultSectionSize()));
    QScrollBar* bar = Q.verticalScrollBar();
    if (bar->maximum() != std::max(0, rows - perPage) || bar->minimum() != 0)
        bar->setRange(0, std::max(0, rows - perPage));
    if (bar->pageStep() != perPage) bar->setPageStep(perPage);
}

QModelIndex TNoticeBdGrid::moveCursor(CursorAction Action, Qt::KeyboardModifiers Modifiers) {
    const QModelIndex next = QTableView::moveCursor(Action, Modifiers);
    // Paging down past the last row lands in the row header's spare rows: take the last row instead.
    const int rows = d->Model->rowCount();
    if (!next.isValid() && rows > 0 && (Action == MovePageDown || Action == MoveDown || Action == MoveEnd)) {
        const QModelIndex current = currentIndex();
        return d->Model->index(rows - 1, current.isValid() ? current.column() : d->FirstShownColumn());
    }
    return next;
}

// ---- The current row, shared with the store ----

int TNoticeBdGrid::TPrivate::FirstShownColumn() const {
    for (int visual = 0; visual < NoticeFieldCount; ++visual)
        if (!Header->isSectionHidden(Header->logicalIndex(visual))) return Header->logicalIndex(visual);
    return 0;
}

int32_t TNoticeBdGrid::CurrentKey() const {
    const QModelIndex current = currentIndex();
    if (!current.isValid() || current.internalId() >= TGridDisplayRows::HeadingIdBase) return 0;
    return int32_t(current.internalId());
}

void TNoticeBdGrid::SetCurrentKey(int32_t Key) {
    int row = d->Model->RowOfKey(Key);
    if (row < 0) {
        // A row inside collapsed groups: open the way to it.
        const int32_t position = Key > 0 ? d->View.PositionOf(Key) : -1;
        if (position < 0) return;
        d->Model->Rows().ExpandTo(d->View, position);
        d->Reload();
        row = d->Model->RowOfKey(Key);
        if (row < 0) return;
    }
    const int column = currentIndex().isValid() ? currentIndex().column() : d->FirstShownColumn();
    selectionModel()->setCurrentIndex(d->Model->index(row, column), QItemSelectionModel::NoUpdate);
}

void TNoticeBdGrid::currentChanged(const QModelIndex& Current, const QModelIndex& Previous) {
    QTableView::currentChanged(Current, Previous);
    if (d->RowHeader->isVisible()) d->RowHeader->viewport()->update();
    if (!d->FollowingStore) d->MoveStoreTo(CurrentKey());
    d->NoteCurrentKey();
}

void TNoticeBdGrid::TPrivate::MoveStoreTo(int32_t Key) {
    if (Key <= 0 || Store.GetBookmark() == Key) return;
    MovingStore = true;
    try {
        Store.GotoBookmark(Key);
    } catch (const std::exception&) {
        // The row left the store since the grid last refreshed; the refresh moves the grid on.
    }
    MovingStore = false;
    StoreKey = Store.GetBookmark();
}

void TNoticeBdGrid::TPrivate::NoteCurrentKey() {
    const int32_t key = Q.CurrentKey();
    if (key == LastCurrentKey) return;
    LastCurrentKey = key;
    emit Q.CurrentKeyChanged(key);
}

void TNoticeBdGrid::TPrivate::CurrentChanged() {
    if (MovingStore) return;
    if (Pending)
        StoreMoved = true; // followed once the grid's rows are up to date
    else
        FollowStore();
}

void TNoticeBdGrid::TPrivate::FollowStore() {
    StoreMoved = false;
    StoreKey = Store.GetBookmark();
    if (StoreKey == Q.CurrentKey() && StoreKey != 0) return;
    const int row = Model->RowOfKey(StoreKey);
    if (row < 0) return; // not shown (a collapsed group): the grid stays where it is
    const QModelIndex current = Q.currentIndex();
    const int column = current.isValid() ? current.column() : FirstShownColumn();
    // The store moved on its own: the rows on screen stay where they are.
    FollowingStore = true;
    const bool scroll = Q.hasAutoScroll();
    Q.setAutoScroll(false);
    Q.selectionModel()->setCurrentIndex(Model->index(row, column), QItemSelectionModel::NoUpdate);
    Q.setAutoScroll(scroll);
    FollowingStore = false;
}
