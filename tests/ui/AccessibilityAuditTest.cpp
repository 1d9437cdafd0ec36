// Every form, walked the way a screen reader meets it: each control a keyboard user can reach must have a
// name (what Qt's accessibility layer reports for it: its accessible name, its text, or the label it is
// the buddy of), and each form a title. A "..." button or an unlabelled edit is a control a blind user
// cannot tell from its neighbours. Tab pages are each brought to the front, so hidden pages are walked too.
#include "adapters/ui/DisplayDialog.h"
#include "adapters/ui/UConfigDlg.h"
#include "reports/ui/Nb_xport2xls.h"
#include "reports/ui/Ufrmnbprint.h"
#include "support/ConfigDlgBench.h"
#include "support/FilterDialogBench.h"
#include "support/PackageHost.h"
#include "support/PrintExportBench.h"
#include "support/ui/Znb_summary.h"
#include "views/ui/FilterEditor.h"
#include "views/ui/FilterLineEditor.h"
#include "views/ui/NBViewEditor.h"
#include "views/ui/NewViewDlg.h"
#include "views/ui/NoticeBoardFilters.h"
#include "views/ui/NoticeBoardViews.h"

#include <QAbstractSpinBox>
#include <QAccessible>
#include <QComboBox>
#include <QMainWindow>
#include <QTabWidget>

#include <QtTest>

#include <initializer_list>
#include <set>

namespace {

QString NameOf(QWidget* W) {
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(W);
    return a ? a->text(QAccessible::Name).remove(QLatin1Char('&')).trimmed() : QString();
}

// A control's parts (a combo box's edit, a spin box's edit, a tab bar's scroll buttons) are named by the
// control itself.
bool IsPartOfAControl(const QWidget* W) {
    const QWidget* p = W->parentWidget();
    return W->objectName().startsWith(QLatin1String("qt_")) || qobject_cast<const QComboBox*>(p) ||
           qobject_cast<const QAbstractSpinBox*>(p) || qobject_cast<const QTabBar*>(p);
}

void Collect(QWidget* Form, std::set<QString>& Missing) {
    for (QWidget* w : Form->findChildren<QWidget*>()) {
        if (!w->isVisibleTo(Form) || w->focusPolicy() == Qt::NoFocus || !w->isEnabled() ||
            IsPartOfAControl(w))
            continue;
        const QString name = NameOf(w);
        if (name.isEmpty() || name == QLatin1String("..."))
            Missing.insert(QStringLiteral("%1: %2 (%3)")
                               .arg(Form->objectName(), w->objectName(), w->metaObject()->className()));
    }
}

// The unnamed controls of the forms walked, on every page of their tab widgets.
struct TAudit {
    std::set<QString> Missing;
    void Walk(QWidget* Form) {
        Form->show();
        if (NameOf(Form).isEmpty() && Form->windowTitle().isEmpty())
            Missing.insert(Form->objectName() + ": no title");
        Collect(Form, Missing);
        for (QTabWidget* tabs : Form->findChildren<QTabWidget*>())
            for (int i = 0; i < tabs->count(); ++i) {
                tabs->setCurrentIndex(i);
                Collect(Form, Missing);
            }
    }
    QString Report() const {
        return QStringLiteral("unnamed controls:\n") + QStringList(Missing.begin(), Missing.end()).join('\n');
    }
};

} // namespace

class AccessibilityAuditTest : public QObject {
    Q_OBJECT
private slots:
    void boardWindow() {
        TPackageHost host;
        QVERIFY2(host.Loaded(), qPrintable(host.ErrorText()));
        host.WriteIni();
        QMainWindow* board = host.ShowBoard();
        QVERIFY(board);
        TAudit audit;
        audit.Walk(board);
        QVERIFY2(audit.Missing.empty(), qPrintable(audit.Report()));
        QVERIFY(host.CloseBoard());
    }

    void filterDialogs() {
        TFilterDialogBench bench;
        TfrmNoticeBoardFilters list(bench.Notices);
        TfrmFilterEditor editor(bench.Notices);
        TFilterLineEditor line(editor);
        TAudit audit;
        for (QWidget* form : std::initializer_list<QWidget*>{&list, &editor, &line})
            audit.Walk(form);
        QVERIFY2(audit.Missing.empty(), qPrintable(audit.Report()));
    }

    void displayDialogs() {
        TFilterDialogBench bench; // the notice board folder and the notices
        TfrmNoticeBoardViews list(bench.Notices, nullptr);
        TNB_NewViewDlg newView;
        TfrmNBViewEditor editor(bench.Notices, nullptr);
        TAudit audit;
        for (QWidget* form : std::initializer_list<QWidget*>{&list, &newView, &editor})
            audit.Walk(form);
        QVERIFY2(audit.Missing.empty(), qPrintable(audit.Report()));
    }

    void configurationDialogs() {
        TConfigDlgBench bench;
        bench.Open();
        TDisplayDialog display;
        TAudit audit;
        for (QWidget* form : std::initializer_list<QWidget*>{bench.Dlg.data(), &display})
            audit.Walk(form);
        QVERIFY2(audit.Missing.empty(), qPrintable(audit.Report()));
    }

    void summaryPrintAndExport() {
        TFM_Summary summary;
        TFakeBoardGrid grid;
        TfrmNBPrint print(grid, grid);
        TfrmXLSExport exportDlg(grid);
        TAudit audit;
        for (QWidget* form : std::initializer_list<QWidget*>{&summary, &print, &exportDlg})
            audit.Walk(form);
        QVERIFY2(audit.Missing.empty(), qPrintable(audit.Report()));
    }
};

QTEST_MAIN(AccessibilityAuditTest)
#include "AccessibilityAuditTest.moc"
