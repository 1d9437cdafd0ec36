// The notice board package: the binary interface between the board and the host console that shows it.
//
// The package is the shared library "noticeboard" (noticeboard.so; noticeboard.dll on Windows). A host
// loads it at run time, looks its exports up by their plain names and calls them; nothing has to be linked
// against it. Every export has C linkage, so its symbol is its plain name; the types are C++ ones, because
// the board's windows join the host's Qt application and the host hands over a QWidget*: a host is a C++
// program built with Qt 6 Widgets and the same C++ runtime as the package (libstdc++'s C++11 string ABI
// here). Declarations sit in namespace noticeboard so that a host may also link the board's engine, whose
// C++ functions of the same names are different entities.
//
// Threads: every export is called on the host's GUI thread (the thread of its QApplication), except the
// date-time conversions, which any thread may call (ConvertDate and rvStrToDateTime read the process-wide
// date formats: GUI thread for those two).
//
// Errors: the date-time conversions raise an exception derived from std::exception whose what() is the
// board's message (for example "Error converting Unix String to DateTime. String = abc"). Nothing else
// raises: the board reports its own trouble in its window and in its log file.
//
// A host's life with the board:
//   load "noticeboard" -> Initialize() -> FilterFolder = "<notice board folder>/" -> DoShowNoticeBoard(main
//   window) ... the user closes the board (it may be opened again with DoShowNoticeBoard) ... -> Finalize()
//   -> unload. The board window must be closed before Finalize.
#ifndef NOTICEBOARD_PACKAGE_H
#define NOTICEBOARD_PACKAGE_H

#include <cstdint>
#include <string>

// The calling convention of DoShowNoticeBoard: stdcall on 32-bit Windows, the platform's own elsewhere.
#if defined(_WIN32) && !defined(_WIN64)
#define NB_CALL __stdcall
#else
#define NB_CALL
#endif

namespace noticeboard {

// One unit of the package: its name and what loading and unloading the package run for it (either may be
// null). Owned by the package; valid while it is loaded.
struct TPackageUnitInfo {
    const char* Name;
    void (*Initialization)();
    void (*Finalization)();
};

// The package's units in initialisation order. Owned by the package; valid while it is loaded.
struct TPackageInfoTable {
    int32_t UnitCount;
    const TPackageUnitInfo* Units;
};

extern "C" {

// The notice board folder, with a trailing separator, where the board's filter (".nbf") and display
// (".nbd") files live. The host assigns it before it shows the board; the board reads it and never assigns
// it. While it is empty the board's file names are relative to the current folder. Owned by the package.
extern std::string FilterFolder;

// Shows the board. Owner is the host's main window (a QWidget*), which owns the board window: the board is
// centred on it the first time and closes with it. The first call reads zpnbd.ini beside the host's
// executable, records whether the Duskmere console is installed, creates the board window (which loads
// and then starts the configured adapters), asks about installed but unconfigured adapters and saves the
// configuration. A call while the board is open raises its window instead. Returns when the window is
// shown; the board then runs on the host's event loop until the user closes it.
void NB_CALL DoShowNoticeBoard(void* Owner);

// Run every unit's initialisation in the table's order, respectively every unit's finalisation in the
// reverse order. Each runs its work once however often it is called; DoShowNoticeBoard initialises a
// package that was not initialised.
void Initialize();
void Finalize();

// The package's unit table. Never null.
const TPackageInfoTable* GetPackageInfoTable();

// 1 when the Duskmere operations console is installed with its connector program, else 0.
uint8_t FindDuskmere();
// Starts the Duskmere console's launcher; 1 when it was started. Shows "Failed to launch Duskmere" in a
// message box when it could not be.
uint8_t LaunchDuskmere();

// The message for an adapter status code ("Operation OK" for 0; the system's text for codes the board
// does not know).
std::string Get_ZNB_Error_Message(int32_t Code);

// Date-time conversions. Date-times are days since 30 December 1899 (the fraction is the time of day).
double ISO8601ToDate(const std::string& Text);                    // "2004-01-12T10:20:30Z"; "" gives 0
std::string DateToISO8601(double Value);                          // "2004-01-12T10:20:30"
std::string DateToISO8601Time(double Value);                      // "T10:20:30"
int32_t DateTimeToUnix(double Value);                             // seconds of the day's midnight
double UnixStrToDateTime(const std::string& Text);                // decimal Unix seconds
std::string DecodeMonth(int32_t Month);                           // 1 -> "Jan"; others ""
std::string ConvertDate(const std::string& Text);                 // a form the user's locale accepts
double rvStrToDateTime(const std::string& Text);                  // "12-jan-2004 10:20:30" or ctime form
int32_t rvTimeUnitToSeconds(int32_t Count, const std::string& Unit); // (2, "Minutes") -> 120
void rvSecondsToTimeUnit(int32_t Seconds, int32_t& Count, std::string& Unit); // 60 -> 1, "minute(s)"
int32_t Get_Time_Zone_Bias();                                     // seconds to add to local time for UTC

} // extern "C"

// The types of the exports, for hosts that look them up by name.
using DoShowNoticeBoard_Fn = void(NB_CALL*)(void* Owner);
using Initialize_Fn = void (*)();
using Finalize_Fn = void (*)();
using GetPackageInfoTable_Fn = const TPackageInfoTable* (*)();
using FindDuskmere_Fn = uint8_t (*)();
using LaunchDuskmere_Fn = uint8_t (*)();
using Get_ZNB_Error_Message_Fn = std::string (*)(int32_t Code);

} // namespace noticeboard

#endif
