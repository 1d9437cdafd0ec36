// The board's own icons: flat SVG images compiled into the window layer (resources/icons.qrc), drawn to
// read on light and dark themes from 16 pixels up. Every window and dialog takes its images from here, so
// one look runs through the board. GUI thread (a QIcon needs the application's icon engines).
#pragma once

#include <QIcon>
#include <QString>

enum class TNbIcon {
    Filters,        // funnel: the filters button
    Displays,       // grid: the displays button
    Print,          // printer: print or export
    Export,         // spreadsheet with an arrow: spreadsheet export
    Configure,      // gear: configure adapters
    Details,        // window with its detail panel: hide or show the detail panel
    Acknowledge,    // check mark
    Delete,         // waste bin
    AdapterFailed,  // red: failed or disabled (ImageList1 image 0)
    AdapterFailing, // amber: at least one adapter failing (image 1)
    AdapterOK,      // green: all adapters OK (image 2)
    Idle,           // the tool bar's steady dot (Image1)
    Busy,           // the tool bar's hourglass (Image2)
    BrowseFolder,   // folder: browse for a file or folder
    Refresh,        // two arrows in a circle: update, reload
    Close,          // cross: close a window
    Application,    // the board itself: window, tray and desktop entry
    SeverityNormal,
    SeverityWarning,
    SeverityFatal,
    SeverityCritical,
};
inline constexpr int NbIconCount = int(TNbIcon::SeverityCritical) + 1;

// The icon; scalable, so one QIcon serves every size. Never null for a listed value.
QIcon NbIcon(TNbIcon Icon);

// The resource path of the icon's SVG (":/icons/....svg"), for style sheets and QSvgRenderer.
QString NbIconPath(TNbIcon Icon);

// The mark of a severity number (1 Normal .. 4 Critical); a null icon for any other number.
QIcon NbSeverityIcon(int Severity);

// The adapter status image by its image-list index (0 failed or disabled, 1 failing, 2 all OK); a null
// icon for any other index.
QIcon NbAdapterStatusIcon(int ImageIndex);
