// What the start-up tests of real adapter libraries share: a status bar that records what the start-up
// shows, and a temporary folder holding zpnbd.ini and the board's folder "nb" with its log.
#pragma once

#include "adapters/TAdapterStartup.h"
#include "adapters/TempFolder.h"

#include <algorithm>
#include <string>
#include <vector>

// The window's status bar, icon and caption as the start-up leaves them; every panel text is recorded.
class TRecordedView : public IAdapterStatusView {
public:
    int PanelCount() const override { return static_cast<int>(Widths.size()); }
    int PanelWidth(int index) const override { return Widths.at(static_cast<size_t>(index)); }
    void AddPanel() override { Widths.push_back(50); }
    void SetPanelWidth(int index, int width) override { Widths.at(static_cast<size_t>(index)) = width; }
    void SetPanelText(int index, const std::string& text) override {
        Texts.push_back(std::to_string(index) + " " + text);
    }
    void SetStatusImage(int imageIndex) override { Image = imageIndex; }
    void SetStatusCaption(const std::string& text) override { Caption = text; }
    bool Shown(const std::string& panelText) const {
        return std::find(Texts.begin(), Texts.end(), panelText) != Texts.end();
    }

    std::vector<int> Widths{200, 500};
    std::vector<std::string> Texts;
    int Image = -1;
    std::string Caption = "No Adapters Loaded";
};

class TBoardFolder {
public:
    // The folder zpnbd.ini is in, with its trailing separator.
    const std::string& Path() const { return FFolder.Path(); }
    // Writes zpnbd.ini: the board's folder "nb", then Ini.
    void WriteIni(const std::string& Ini) const {
        WriteTextFile(FFolder / "zpnbd.ini", "[Noticeboard]\nNBFolder=" + FFolder.Path() + "nb\n" + Ini);
    }
    std::string Log() const { return ReadTextFile(FFolder / "nb/znb.log"); }
    bool Logged(const std::string& line) const { return Log().find("  " + line + "\n") != std::string::npos; }

private:
    TTempFolder FFolder;
};
