// The "Adapters" page of the configuration dialog against the test adapters: what "Configure Source"
// hands an adapter and records, and what "Update Status" shows and logs, for well-behaved and faulty
// adapters alike.
#include "adapters/ZNB_Cfg.h"
#include "support/ConfigDlgBench.h"

#include <QMainWindow>
#include <QPlainTextEdit>
#include <QTest>

namespace {

bool Contains(const std::string& text, const QString& part) {
    return text.find(part.toStdString()) != std::string::npos;
}

} // namespace

class ConfigDlgAdaptersTest : public QObject {
    Q_OBJECT
private slots:
    void init() { B = std::make_unique<TConfigDlgBench>(); }
    void cleanup() { B.reset(); }
    void configureSourceCallsTheAdapter_data();
    void configureSourceCallsTheAdapter();
    void statusMemo_data();
    void statusMemo();

private:
    std::unique_ptr<TConfigDlgBench> B;
};

void ConfigDlgAdaptersTest::configureSourceCallsTheAdapter_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("logged");
    QTest::addColumn<bool>("configured");
    QTest::newRow("accepted") << "Recorder"
                              << "" << true;
    QTest::newRow("error result, still marked") << "BadConfig"
                                                << "Adapter Config :  Result = 40008" << true;
    QTest::newRow("no entry point") << "Bare"
                                    << "" << false;
    QTest::newRow("library not loaded") << "Missing"
                                        << "" << false;
    QTest::newRow("exception")
        << "Throws"
        << "btnConfigSourceClick : Exception occurred : Adapter : Throws : ZNA_Set_Config "
           "raised an exception : ZNA_Set_Config failed on purpose"
        << false;
    QTest::newRow("no adapter object") << "Unlisted"
                                       << "Adapter Config : Could not find adapter specified" << false;
}

void ConfigDlgAdaptersTest::configureSourceCallsTheAdapter() {
    QFETCH(QString, name);
    QFETCH(QString, logged);
    QFETCH(bool, configured);
    QMainWindow console;
    console.show();
    B->Open(&console);
    TConfigDlgBench::Select(B->Dlg.get(), name);
    QVERIFY(ClickButton(B->Dlg.get(), "btnConfigSource"));

    QCOMPARE(NBConfig->IsAdapterConfigured(name.toStdString()), configured);
    const std::string log = B->Log();
    QVERIFY2(logged.isEmpty() ? !Contains(log, "Adapter Config") : Contains(log, logged), log.c_str());
    // The console's window, the name, the folder and an empty text, each size counting its NUL.
    if (name == "Recorder")
        QVERIFY2(Contains(B->RecorderCalls(),
                          QString::fromStdString("Set_Config " + std::to_string(console.winId()) +
                                                 " Recorder/0 " + B->Folder() + "/" +
                                                 std::to_string(B->Folder().size() + 1) + " /1\n")),
                 B->RecorderCalls().c_str());
}

void ConfigDlgAdaptersTest::statusMemo_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("state"); // set before "Update Status" is pressed; -1: the selection's own status
    QTest::addColumn<QString>("memoStart");
    QTest::addColumn<QString>("logged");
    const QString info = "\n \nAdapter Info : \nTest adapter: state ";
    const QString loaded = QString::fromStdString(
        "\n\nLibrary : " + TConfigDlgBench::LibraryPath("ZNBA_TestRecorder") +
        "\nAdapter Loaded from DLL : " + TConfigDlgBench::LibraryPath("ZNBA_TestRecorder") +
        "\nAdapter Get Info Function Found.\n");
    QTest::newRow("state 0") << "Recorder" << 0
                             << "Status : All Connections have failed" + info + "0" + loaded << "";
    QTest::newRow("state 1") << "Recorder" << 1
                             << "Status : One or more Connections have failed" + info + "1" + loaded << "";
    QTest::newRow("state 2") << "Recorder" << 2 << "Status : All Connections are OK" + info + "2" + loaded
                             << "";
    QTest::newRow("other state") << "Recorder" << 7 << "Status : " + info + "7" + loaded << "";
    QTest::newRow("error result") << "Garbage" << -1
                                  << "Adapter Status function returned : 12345\n\nLibrary : "
                                  << "";
    QString letters;
    for (int i = 0; i < 4096; ++i)
        letters += QChar('A' + i % 26);
    // Every byte used, no NUL, and a size claimed twice the buffer's: the text stops at the buffer's end.
    QTest::newRow("no NUL, oversized")
        << "Overflow" << -1
        << "Status : All Connections are OK\n \nAdapter Info : \n" + letters + "\n\nLibrary : "
        << "";
    QTest::newRow("no status entry point")
        << "Bare" << -1
        << QString::fromStdString("Library : " + TConfigDlgBench::LibraryPath("ZNBA_TestNoConfigNoStatus") +
                                  "\n")
        << "Adapter Status : Adapter Status function not found.";
    QTest::newRow("library not loaded")
        << "Missing" << -1
        << QString::fromStdString("Library : " + TConfigDlgBench::LibraryPath("ZNBA_NoSuchAdapter") +
                                  " (not loaded)\nLoad Library Error Msg  : ")
        << "Adapter Status : Adapter Status function not found.";
    QTest::newRow("exception")
        << "Throws" << -1
        << "Adapter : Throws : ZNA_Status raised an exception : ZNA_Status failed on purpose\n"
        << "BB_Adapter_StatusClick : Exception occurred : Adapter : Throws : ZNA_Status";
    QTest::newRow("no adapter object") << "Unlisted" << -1 << ""
                                       << "Adapter Status : Could not find adapter specified";
}

void ConfigDlgAdaptersTest::statusMemo() {
    QFETCH(QString, name);
    QFETCH(int, state);
    QFETCH(QString, memoStart);
    QFETCH(QString, logged);
    B->Open();
    TConfigDlgBench::Select(B->Dlg.get(), name); // selecting a line shows its status
    if (state >= 0) {
        B->Export<void (*)(int32_t)>("Recorder", "ZNBA_Test_SetState")(state);
        QVERIFY(ClickButton(B->Dlg.get(), "BB_Adapter_Status"));
        QVERIFY(Contains(B->RecorderCalls(), "Status buffer/4096\nStatus buffer/4096\n"));
    }
    const QString memo = B->W<QPlainTextEdit>("M_Adapter_Status")->toPlainText();
    QVERIFY2(memoStart.isEmpty() ? memo.isEmpty() : memo.startsWith(memoStart), qPrintable(memo));
    QVERIFY(Contains(B->Log(), logged));
}

QTEST_MAIN(ConfigDlgAdaptersTest)
#include "ConfigDlgAdaptersTest.moc"
