#include "reports/ui/TArialTextMeasurer.h"

#include <QList>
#include <QString>

namespace {

QFont Arial() {
    QFont font(QStringLiteral("Arial"));
    font.setPixelSize(11); // 8 points at 96 dpi, whatever the screen's own resolution
    font.setKerning(false);
    return font;
}

} // namespace

TArialTextMeasurer::TArialTextMeasurer() : FMetrics(Arial()) {
    for (int c = 0x20; c < 0x7f; ++c)
        FAsciiAdvance[size_t(c)] = FMetrics.horizontalAdvance(QChar(c));
}

int TArialTextMeasurer::TextWidth(const std::string& Utf8Text) {
    int width = 0;
    for (const char c : Utf8Text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte >= 0x7f) return CodePointWidth(Utf8Text);
        width += FAsciiAdvance[byte];
    }
    return width;
}

int TArialTextMeasurer::CodePointWidth(const std::string& Utf8Text) {
    int width = 0;
    for (const uint c32 : QString::fromUtf8(Utf8Text.data(), qsizetype(Utf8Text.size())).toUcs4()) {
        const char32_t c = c32;
        if (c < 0x7f && c >= 0x20) {
            width += FAsciiAdvance[c];
            continue;
        }
        auto found = FOtherAdvance.find(c);
        if (found == FOtherAdvance.end())
            found = FOtherAdvance.emplace(c, FMetrics.horizontalAdvance(QString::fromUcs4(&c, 1))).first;
        width += found->second;
    }
    return width;
}

int TArialTextMeasurer::LaidOutWidth(const std::string& Utf8Text) const {
    return FMetrics.horizontalAdvance(QString::fromUtf8(Utf8Text.data(), qsizetype(Utf8Text.size())));
}
