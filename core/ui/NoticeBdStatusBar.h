// The board window's status bar as the adapters' start-up sees it: panels in order (the first shows the
// notice totals, the second is the progress panel), each a QLabel of the status bar with a fixed width,
// plus the tool bar's status icon and caption. Panels are named "Panel0", "Panel1", ...
//
// Owned by the board window; the status bar, icon and caption are the window's and outlive it.
// Board (GUI) thread only. Nothing throws.
#pragma once

#include "adapters/TAdapterStartup.h"

#include <QString>
#include <vector>

class QLabel;
class QLineEdit;
class QStatusBar;

class TNoticeBdStatusBar final : public IAdapterStatusView {
public:
    // Creates the two panels, 200 and 500 pixels wide.
    TNoticeBdStatusBar(QStatusBar& Bar, QLabel& StatusImage, QLineEdit& StatusCaption);

    // The width of a panel added by AddPanel.
    static constexpr int DefaultPanelWidth = 50;

    QLabel* Panel(int index) const;
    // The image ImageList1 shows on the status icon (0 failed or disabled, 1 failing, 2 all OK).
    int StatusImage() const { return FImageIndex; }

    int PanelCount() const override { return static_cast<int>(FPanels.size()); }
    int PanelWidth(int index) const override;
    void AddPanel() override;
    void SetPanelWidth(int index, int width) override;
    void SetPanelText(int index, const std::string& text) override;
    void SetStatusImage(int imageIndex) override;
    void SetStatusCaption(const std::string& text) override;

private:
    QLabel* NewPanel(int width);

    QStatusBar& FBar;
    QLabel& FImage;
    QLineEdit& FCaption;
    std::vector<QLabel*> FPanels;
    int FImageIndex = -1;
};
