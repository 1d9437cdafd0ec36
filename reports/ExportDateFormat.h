// The user's date-time format as a spreadsheet number format, so that exported dates read as the grid
// shows them (the short date and the long time). Pure; any thread.
#pragma once

#include "support/DateUtils.h"

#include <string>
#include <string_view>

// Translates the board's format letters (see FormatDateTime) into spreadsheet number-format codes:
// n becomes the minute code, z the thousandths, t and ddddd/dddddd the settings' time and date formats;
// the separators and other literal text are escaped, so they show as they are.
std::string SpreadsheetDateFormat(std::string_view BoardFormat, const TFormatSettings& Settings);

// The format the grid shows date-times in: short date, blank, long time.
std::string GridDateFormat(const TFormatSettings& Settings);
