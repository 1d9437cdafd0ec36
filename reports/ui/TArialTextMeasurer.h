// The report's text measurer on screen: widths in pixels of the font "Arial" at its default size of 8
// points on a 96 dpi screen (11 pixels), as the sum of each character's whole-pixel advance without
// kerning, the way the report widths have always been measured. On Linux "Arial" is Liberation Sans, which
// has the same metrics. Advances come from tables (ASCII filled at once, other characters as they come),
// so no text is laid out. Needs a QGuiApplication; the thread that owns it only.
#pragma once

#include "reports/Ugridtoxml.h"

#include <QFontMetrics>

#include <array>
#include <unordered_map>

class TArialTextMeasurer : public ITextMeasurer {
public:
    TArialTextMeasurer();
    int TextWidth(const std::string& Utf8Text) override;
    // The width of the text laid out by Qt as one run (fractional advances, rounded once at the end): within
    // a pixel or two of TextWidth, and what a plain QFontMetrics measure costs (a benchmark reference).
    int LaidOutWidth(const std::string& Utf8Text) const;

private:
    int CodePointWidth(const std::string& Utf8Text);

    QFontMetrics FMetrics;
    std::array<int, 128> FAsciiAdvance{};
    std::unordered_map<char32_t, int> FOtherAdvance;
};
