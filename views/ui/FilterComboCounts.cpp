#include "views/ui/FilterComboCounts.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QElapsedTimer>
#include <QEvent>
#include <QStylePainter>
#include <QStyledItemDelegate>
#include <QTimer>

namespace {

constexpr int SliceMs = 8; // the first count never keeps the window from its events for longer
constexpr int32_t StepRows = 4096;

// The list's entries with their counts.
class TCountDelegate final : public QStyledItemDelegate {
public:
    TCountDelegate(const TFilterComboCounts& Counts, QObject* Parent)
        : QStyledItemDelegate(Parent), FCounts(Counts) {}

protected:
    void initStyleOption(QStyleOptionViewItem* Option, const QModelIndex& Index) const override {
        QStyledItemDelegate::initStyleOption(Option, Index);
        Option->text = FCounts.DecoratedText(Index.row());
    }

private:
    const TFilterComboCounts& FCounts;
};

} // namespace

struct TFilterComboCounts::TListener final : INoticeStoreListener {
    explicit TListener(TFilterComboCounts& Owner) : Owner(Owner) {}
    TFilterComboCounts& Owner;
    void DataSetChanged() override { Owner.CountsMayHaveChanged(); }
    void RecordChanged(int32_t) override { Owner.CountsMayHaveChanged(); }
};

TFilterComboCounts::TFilterComboCounts(QComboBox* Combo, TNoticeStore& Store, const std::string& Folder)
    : QObject(Combo), FCombo(Combo), FStore(Store), FFolder(Folder), FCounts(Store),
      FListener(std::make_unique<TListener>(*this)), FTimer(new QTimer(this)) {
    setObjectName(QStringLiteral("FilterComboCounts"));
    FTimer->setObjectName(QStringLiteral("FilterCountTimer"));
    FTimer->setSingleShot(true);
    connect(FTimer, &QTimer::timeout, this, &TFilterComboCounts::CountSlice);
    FCombo->setItemDelegate(new TCountDelegate(*this, FCombo));
    FCombo->installEventFilter(this);
    FStore.AddListener(FListener.get());
    Reload();
}

TFilterComboCounts::~TFilterComboCounts() {
    FStore.RemoveListener(FListener.get());
    FCombo->removeEventFilter(this);
}

void TFilterComboCounts::SetFolder(const std::string& Folder) {
    FFolder = Folder;
    Reload();
}

void TFilterComboCounts::Reload() {
    std::vector<std::string> names;
    for (int i = 0; i < FCombo->count(); ++i)
        names.push_back(FCombo->itemText(i).toStdString());
    FCounts.SetFilterNames(names, FFolder);
    FTimer->start(0);
    CountsMayHaveChanged();
}

void TFilterComboCounts::CountNow() {
    FTimer->stop();
    FCounts.CountAll();
    CountsMayHaveChanged();
}

void TFilterComboCounts::CountSlice() {
    QElapsedTimer clock;
    clock.start();
    while (!FCounts.Step(StepRows))
        if (clock.elapsed() >= SliceMs) {
            FTimer->start(0);
            return;
        }
    CountsMayHaveChanged();
}

void TFilterComboCounts::CountsMayHaveChanged() {
    if (FCounts.Revision() == FShown) return;
    FShown = FCounts.Revision();
    FCombo->update();
    if (FCombo->view()->isVisible()) FCombo->view()->viewport()->update();
}

QString TFilterComboCounts::DecoratedText(int Index) const {
    const QString name = FCombo->itemText(Index);
    // The combo may hold entries added since the last Reload: only a name counted under it is decorated.
    const int32_t count = size_t(Index) < FCounts.Size() && FCounts.Name(size_t(Index)) == name.toStdString()
                              ? FCounts.Count(size_t(Index))
                              : -1;
    return count < 0 ? name : QStringLiteral("%1 (%2)").arg(name).arg(count);
}

bool TFilterComboCounts::eventFilter(QObject* Watched, QEvent* Event) {
    if (Watched == FCombo && Event->type() == QEvent::Paint && !FCombo->isEditable()) {
        PaintClosedCombo();
        return true;
    }
    return QObject::eventFilter(Watched, Event);
}

// As QComboBox paints itself, with the decorated text of the current entry.
void TFilterComboCounts::PaintClosedCombo() {
    QStylePainter painter(FCombo);
    QStyleOptionComboBox option;
    option.initFrom(FCombo);
    option.editable = false;
    option.frame = FCombo->hasFrame();
    option.iconSize = FCombo->iconSize();
    option.subControls = QStyle::SC_All;
    option.activeSubControls = QStyle::SC_None;
    if (FCombo->view()->isVisible()) option.state |= QStyle::State_On;
    const int current = FCombo->currentIndex();
    option.currentText = current >= 0 ? DecoratedText(current) : FCombo->placeholderText();
    option.currentIcon = FCombo->itemIcon(current);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}
