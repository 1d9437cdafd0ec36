// The board window with adapters that break the kit's rules, loaded as a host loads the package: one throws
// from every entry point, one answers with codes and states outside the contract, one goes on calling back
// from its thread during and after its disconnect, one posts messages of more than 10 MB, and one whose
// library file is deleted while it is loaded. The window stays up, logs, and closes cleanly.
#include "platform/DynLib.h"
#include "support/PackageHost.h"

#include <QLineEdit>
#include <QTableView>
#include <QtTest>

#include <chrono>
#include <filesystem>
#include <thread>

namespace {

std::string Adapter(const std::string& Name, const std::string& Library) {
    return "[Adapter_" + Name + "]\nDLL_Name=" + Library + "\nConfigured=1\nLoadable=1\nEnabled=1\n";
}

bool Has(const std::string& Text, const std::string& Part) {
    return Text.find(Part) != std::string::npos;
}

} // namespace

class MisbehavingAdaptersWindowTest : public QObject {
    Q_OBJECT

private slots:
    void WindowStaysUpLogsAndClosesCleanly() {
        TPackageHost host;
        QVERIFY2(host.Loaded(), qPrintable(host.ErrorText()));
        host.Owner.show();
        const std::string copy = (host.Folder() + "/ZNBA_Deleted.so").toStdString();
        std::filesystem::copy_file(std::string(NB_PLUGIN_DIR) + "/ZNBA_TestRecorder.so", copy);
        host.WriteRawIni("[Noticeboard]\nNBShutdownPrompt=0\n[AdapterConfig]\nAlwaysPrompt=0\n"
                         "[Adapters]\nCount=7\nAdapter_0=DuskMere\nAdapter_1=R/Vista\nAdapter_2=throws\n"
                         "Adapter_3=garbage\nAdapter_4=late\nAdapter_5=big\nAdapter_6=deleted\n"
                         "[Adapter_DuskMere]\nLoadable=0\nEnabled=0\n" +
                         Adapter("R/Vista", "ZNBA_TestRecorder") + Adapter("throws", "ZNBA_TestThrows") +
                         Adapter("garbage", "ZNBA_TestGarbage") + Adapter("late", "ZNBA_TestLateThread") +
                         Adapter("big", "ZNBA_TestBigMessages") + Adapter("deleted", copy));

        QMainWindow* board = host.ShowBoard(); // loads the libraries
        QVERIFY(board);
        std::filesystem::remove(copy);
        host.Tick(); // connects them
        auto* grid = board->findChild<QTableView*>(QStringLiteral("NoticeBdGrid"));
        QVERIFY(grid);
        // 40 000 notices and two of 10 MB from the big adapter's thread, besides the late adapter's.
        QVERIFY(QTest::qWaitFor([&] { return grid->model()->rowCount() > 40001; }, 120000));
        QCOMPARE(host.Send(BoardMessage({TBoardNotice("recorder/1")})), 0);
        for (int i = 0; i < 6; ++i)
            host.Tick(); // status polls: garbage states and codes, a throwing status
        QVERIFY(board->isVisible());
        const QString caption = board->findChild<QLineEdit*>(QStringLiteral("Edit1"))->text();
        QVERIFY2(caption == "All Adapters OK" || caption == "Adapter has failed" ||
                     caption == "All Adapters failed",
                 qPrintable(caption));

        TLibHandle late = PvLoadLib("ZNBA_TestLateThread"); // pinned: the instance the board loaded
        QVERIFY(late);
        const auto posted = reinterpret_cast<int32_t (*)(int32_t)>(GetProcAddress(late, "ZNBA_Test_Posted"));
        const auto stop = reinterpret_cast<void (*)()>(GetProcAddress(late, "ZNBA_Test_Stop"));
        QVERIFY(posted && stop);
        QVERIFY(host.CloseBoard()); // disconnects while the late adapter's thread posts
        const int32_t refused = posted(3);
        const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (posted(3) < refused + 10 && std::chrono::steady_clock::now() < until)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        stop();
        QVERIFY(posted(1) >= 5); // during the disconnect
        QVERIFY(posted(3) >= refused + 10);

        const std::string log = host.LogText();
        QVERIFY2(Has(log, "Adapter : throws : ZNA_Connect raised an exception"), log.c_str());
        QVERIFY(Has(log, "Adapter : throws : ZNA_Status raised an exception"));
        QVERIFY(Has(log, "Adapter : throws : ZNA_Disconnect raised an exception"));
        QVERIFY(Has(log, "Error   : -2147483648 "));
        QVERIFY(Has(log, "Status =Access violation: no notice board<Msg><NoticeList>"));

        // A second board in the same host: the deleted library is refused and the rest come up again.
        host.Owner.show();
        QMainWindow* again = host.ShowBoard();
        QVERIFY(again);
        host.Tick();
        QVERIFY(Has(host.LogText(), "Adapter : deleted failed to load"));
        QCOMPARE(host.Send(BoardMessage({TBoardNotice("recorder/2")})), 0);
        QVERIFY(host.CloseBoard());
        stop(); // the late adapter's thread, started again by the second board
        FreeLibrary(late);
    }
};

QTEST_MAIN(MisbehavingAdaptersWindowTest)
#include "MisbehavingAdaptersWindowTest.moc"
