#include "support/PackageHost.h"

#include "noticeboard.h"
#include "platform/DynLib.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPointer>
#include <QSettings>
#include <QStatusBar>
#include <QTest>
#include <QTimer>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

template <class F> F Export(void* Library, const char* Name) {
    return reinterpret_cast<F>(GetProcAddress(Library, Name));
}

const char* SeverityText(int Severity) {
    static const char* const texts[] = {"", "Normal", "Warning", "Fatal", "Critical"};
    return Severity >= 1 && Severity <= 4 ? texts[Severity] : "";
}

} // namespace

TPackageHost::TPackageHost() {
    Owner.setObjectName(QStringLiteral("HostMainWindow"));
    Owner.resize(900, 600);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, FDir.path() + "/user");
    QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope, FDir.path() + "/system");
    qputenv("NOTICEBOARD_INI_FOLDER", FDir.path().toLocal8Bit());
    FPackage = PvLoadLib("noticeboard");
    FRecorder = PvLoadLib("ZNBA_TestRecorder");
    if (!FPackage || !FRecorder) {
        FError = QString::fromStdString(GetLastErrorText());
        return;
    }
    Export<noticeboard::Initialize_Fn>(FPackage, "Initialize")();
    ResetCalls();
    WriteIni();
}

TPackageHost::~TPackageHost() {
    CloseBoard();
    if (FRecorder) ResetCalls();
    // The libraries stay loaded: the package keeps Qt objects (its resources, its metatypes) registered.
}

void TPackageHost::WriteIni(const std::string& Library, const std::string& Extra) {
    WriteRawIni("[Noticeboard]\nNBShutdownPrompt=0\n[AdapterConfig]\nAlwaysPrompt=0\n"
                "[Adapters]\nCount=2\nAdapter_0=DuskMere\nAdapter_1=R/Vista\n"
                "[Adapter_DuskMere]\nLoadable=0\nEnabled=0\n"
                "[Adapter_R/Vista]\nDLL_Name=" +
                Library + "\nConfigured=1\nLoadable=1\nEnabled=1\n" + Extra);
}

void TPackageHost::WriteRawIni(const std::string& Text) {
    std::ofstream(FDir.filePath("zpnbd.ini").toStdString(), std::ios::binary | std::ios::trunc) << Text;
}

void TPackageHost::WriteBoardFile(const QString& Name, const std::string& Text) {
    QDir().mkpath(BoardFolder());
    std::ofstream((BoardFolder() + Name).toStdString(), std::ios::binary | std::ios::trunc) << Text;
}

void* TPackageHost::Symbol(const char* Name) const {
    return FPackage ? GetProcAddress(FPackage, Name) : nullptr;
}

QMainWindow* TPackageHost::ShowBoard() {
    return ShowBoard(BoardFolder().toStdString());
}

QMainWindow* TPackageHost::ShowBoard(const std::string& Folder) {
    if (!FPackage) return nullptr;
    *static_cast<std::string*>(GetProcAddress(FPackage, "FilterFolder")) = Folder;
    Export<noticeboard::DoShowNoticeBoard_Fn>(FPackage, "DoShowNoticeBoard")(&Owner);
    return Board();
}

QMainWindow* TPackageHost::Board() const {
    return Owner.findChild<QMainWindow*>(QStringLiteral("NoticeBdForm"), Qt::FindDirectChildrenOnly);
}

bool TPackageHost::CloseBoard() {
    QPointer<QMainWindow> board = Board();
    if (!board) return true;
    board->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return board.isNull();
}

void TPackageHost::Tick() {
    if (QMainWindow* board = Board())
        if (auto* timer = board->findChild<QTimer*>(QStringLiteral("Timer1")))
            QMetaObject::invokeMethod(timer, "timeout", Qt::DirectConnection);
}

int32_t TPackageHost::Send(const std::string& Xml) {
    using SendFn = int32_t (*)(const char*);
    return Export<SendFn>(FRecorder, "ZNBA_Test_Send")(Xml.c_str());
}

std::string TPackageHost::Calls() const {
    using CallsFn = const char* (*)();
    return Export<CallsFn>(FRecorder, "ZNBA_Test_Calls")();
}

void TPackageHost::ResetCalls() {
    using ResetFn = void (*)();
    Export<ResetFn>(FRecorder, "ZNBA_Test_Reset")();
}

QString TPackageHost::PanelText(int Index) const {
    QMainWindow* board = Board();
    auto* panel = board ? board->findChild<QLabel*>(QStringLiteral("Panel%1").arg(Index)) : nullptr;
    return panel ? panel->text() : QString();
}

std::string TPackageHost::LogText() const {
    std::ifstream in((BoardFolder() + "znb.log").toStdString(), std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string BoardMessage(const std::vector<TBoardNotice>& Notices, const std::string& Command) {
    std::string xml = "<NoticeMessage><NoticeList>";
    for (const TBoardNotice& n : Notices) {
        xml += "<Notice><Command>" + Command + "</Command><adpt_id>TEST</adpt_id><adpt_orig_key>" + n.Key +
               "</adpt_orig_key><adpt_source_type>" + n.SourceType +
               "</adpt_source_type><note_summary>Summary of " + n.Key + "</note_summary><note_severity>" +
               std::to_string(n.Severity) + "</note_severity><note_severity_str>" + SeverityText(n.Severity) +
               "</note_severity_str><note_pvo_node>" + n.Node + "</note_pvo_node><ack_code>ACK-" + n.Key +
               "</ack_code><del_code>DEL-" + n.Key + "</del_code>";
        if (!n.Raised.empty()) xml += "<note_raised_date>" + n.Raised + "</note_raised_date>";
        if (!n.LastRaised.empty())
            xml += "<note_last_raised_date>" + n.LastRaised + "</note_last_raised_date>";
        if (!n.AckDate.empty()) xml += "<ack_date>" + n.AckDate + "</ack_date>";
        xml += "</Notice>";
    }
    return xml + "</NoticeList></NoticeMessage>";
}
