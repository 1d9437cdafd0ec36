// The report XML as the report library reads it (docs/report-xml.md): title, field definitions, the
// printed columns, the group fields and the rows. A plain value built once per printFromXML call; the
// caller's thread only.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

struct TReportField {
    QString Name;
    QString Caption;
    int Width = 0;        // pixels of the font "Arial" at 8 points on a 96 dpi screen, blanks included
    bool Numeric = false; // fieldDef="numeric": right-aligned
};

struct TReportDocument {
    QString Title;
    std::vector<TReportField> Columns; // printed columns, in order
    std::vector<TReportField> Groups;  // group fields, outermost first
    // One entry per row: the values of Columns followed by those of Groups ("" when a row lacks one).
    std::vector<QStringList> Rows;
};

// Reads Xml (UTF-8). Bytes that are not UTF-8 read as U+FFFD and control characters other than tab and
// line breaks as blanks, so one odd notice does not stop a report. Returns nothing, with Error set, when
// the text is not well-formed XML or its root element is not <report>.
std::optional<TReportDocument> ReadReportDocument(const char* Xml, QString& Error);
