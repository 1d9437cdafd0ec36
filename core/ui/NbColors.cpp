#include "core/ui/NbColors.h"

#include <QApplication>
#include <QPalette>

namespace {

// The palette role that plays each desktop system colour, by its index.
QColor SystemColor(int index) {
    const QPalette p = QApplication::palette();
    switch (index) {
    case 0:  // scroll bar
    case 15: // button face
    case 4:  // menu
    case 30: // menu bar
        return p.color(QPalette::Button);
    case 1:  // desktop
    case 12: // application workspace
        return p.color(QPalette::Dark);
    case 2:  // active caption
    case 13: // highlight
    case 26: // hot light
    case 27: // gradient active caption
    case 29: // menu highlight
        return p.color(QPalette::Highlight);
    case 3:  // inactive caption
    case 28: // gradient inactive caption
        return p.color(QPalette::Inactive, QPalette::Highlight);
    case 7: // menu text
    case 8: // window text
        return p.color(QPalette::WindowText);
    case 9:  // caption text
    case 14: // highlight text
        return p.color(QPalette::HighlightedText);
    case 6:  // window frame
    case 21: // 3D dark shadow
        return p.color(QPalette::Shadow);
    case 10: // active border
    case 11: // inactive border
    case 22: // 3D light
        return p.color(QPalette::Midlight);
    case 16: // button shadow
        return p.color(QPalette::Mid);
    case 17: // grey text
        return p.color(QPalette::Disabled, QPalette::Text);
    case 18: // button text
        return p.color(QPalette::ButtonText);
    case 19: // inactive caption text
        return p.color(QPalette::Inactive, QPalette::HighlightedText);
    case 20: // button highlight
        return p.color(QPalette::Light);
    case 23: // tool-tip text
        return p.color(QPalette::ToolTipText);
    case 24: // tool-tip background
        return p.color(QPalette::ToolTipBase);
    case 5: // window background
    default:
        return p.color(QPalette::Base);
    }
}

} // namespace

QColor ToQColor(TColor Color) {
    if (IsSystemColor(Color)) return SystemColor(SystemColorIndex(Color));
    return QColor(RedOf(Color), GreenOf(Color), BlueOf(Color));
}

TColor FromQColor(const QColor& Color) {
    return RGBColor(Color.red(), Color.green(), Color.blue());
}

QColor SeverityColor(int Severity) {
    switch (Severity) {
    case 1:
        return QColor(0x2e, 0x8b, 0x57);
    case 2:
        return QColor(0xc8, 0x8a, 0x00);
    case 3:
        return QColor(0xd9, 0x5f, 0x0e);
    case 4:
        return QColor(0xc0, 0x1c, 0x28);
    default:
        return QColor(0x70, 0x70, 0x70);
    }
}
