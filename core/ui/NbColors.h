// Stored colours (support/TColor.h) on screen: plain colours as they are, system colours through the
// application's palette, so that a display saved on one desktop theme looks right on another.
// GUI thread (the palette is the application's).
#pragma once

#include "support/TColor.h"

#include <QColor>

// The colour to paint for a stored colour. System colours use the usual desktop indexes: 5 window
// background, 24 (0x18) tool-tip background, 15 button face, 13 selection, 8 window text and so on; an
// index with no counterpart gives the window background.
QColor ToQColor(TColor Color);

// The stored form of a chosen colour (always a plain colour).
TColor FromQColor(const QColor& Color);

// The strong colour of a severity (1 Normal green, 2 Warning amber, 3 Fatal orange, 4 Critical red; grey
// for any other value): the status bar's badges and the summary window's bars. Always readable under
// white text.
QColor SeverityColor(int Severity);
