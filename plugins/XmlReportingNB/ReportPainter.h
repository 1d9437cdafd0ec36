// Paints a report on a printer (a real printer or a PDF file): on every page the title and print time,
// the column captions, the rows and group bands that fall on it, and "Page n of m" at the foot.
// The printFromXML caller's thread.
#pragma once

#include "ReportDocument.h"

#include <QDateTime>

class QPrinter;

// Whether the report's columns want a landscape page (they are wider than the portrait paper allows).
bool ReportWantsLandscape(const TReportDocument& Doc, const QPrinter& Printer);

// Paints every page. False when the printer could not be painted on (no file written, printer gone).
bool PaintReport(const TReportDocument& Doc, QPrinter& Printer, const QDateTime& PrintedAt);
