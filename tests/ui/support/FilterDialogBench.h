// The filter dialogs' test bench: a temporary notice board folder that both NBConfig's NBFolder and
// FilterFolder name, a scripted prompt that records the messages, and a notice store with five notices
// (severities 1, 2, 3, 4, 4; summaries "Disk full", "CPU high", "Disk slow", "Backup failed",
// "Disk gone"). GUI thread; one bench at a time (it owns NBConfig, FilterFolder and the prompt while it
// lives).
#pragma once

#include "adapters/ScriptedPrompt.h"
#include "adapters/TempFolder.h"
#include "core/TNoticeStore.h"

#include <initializer_list>
#include <string>

class TFilterDialogBench {
public:
    TFilterDialogBench();
    ~TFilterDialogBench();

    // One filter line: the six columns joined as a filter file holds them.
    static std::string Line(const std::string& BoolOp, const std::string& LeftPar, const std::string& Field,
                            const std::string& Op, const std::string& Value, const std::string& RightPar);
    // A filter's data: "0", then the lines.
    static std::string Data(std::initializer_list<std::string> Lines);

    std::string Path(const std::string& Name) const { return Board.Path() + Name + ".nbf"; }
    void WriteFilter(const std::string& Name, const std::string& Data) const;
    std::string ReadFilter(const std::string& Name) const;
    bool HasFilter(const std::string& Name) const;

    TTempFolder Board;
    TScriptedPrompt Prompt;
    TNoticeStore Notices;

private:
    std::string FOldFilterFolder;
};
