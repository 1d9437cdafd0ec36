#include "reports/ExportDateFormat.h"

#include "support/StrUtils.h"

#include <algorithm>

namespace {

// Literal text, shown as it is: ASCII escaped one character at a time, other characters quoted.
void Literal(std::string& out, std::string_view text) {
    for (size_t i = 0; i < text.size();) {
        const char c = text[i];
        if (static_cast<unsigned char>(c) >= 0x80) {
            size_t n = 0;
            while (i + n < text.size() && static_cast<unsigned char>(text[i + n]) >= 0x80)
                ++n;
            out += '"';
            out.append(text.substr(i, n));
            out += '"';
            i += n;
            continue;
        }
        if (c != ' ' && c != '-' && c != '.' && c != ',') out += '\\';
        out += c;
        ++i;
    }
}

void Translate(std::string& out, std::string_view f, const TFormatSettings& fs, int depth) {
    if (depth > 3) return; // a format that names itself through t, c or ddddd
    // As in FormatDateTime, "m" right after an hour is the minute; literal text in between does not count.
    bool afterHour = false;
    size_t i = 0;
    auto run = [&](char c) {
        size_t n = 0;
        while (i + n < f.size() && (f[i + n] | 0x20) == c)
            ++n;
        i += n;
        return n;
    };
    while (i < f.size()) {
        const char c = f[i];
        const char lc = static_cast<char>(c | 0x20);
        const std::string_view rest = f.substr(i);
        if (c == '"' || c == '\'') {
            const size_t e = f.find(c, i + 1);
            const size_t end = e == std::string_view::npos ? f.size() : e;
            Literal(out, f.substr(i + 1, end - i - 1));
            i = end == f.size() ? end : end + 1;
            continue;
        }
        if (c == '/' || c == ':') {
            Literal(out, std::string_view(c == '/' ? &fs.DateSeparator : &fs.TimeSeparator, 1));
            ++i;
            continue;
        }
        if (StartsText("am/pm", rest) || StartsText("ampm", rest)) {
            out += c == 'A' ? "AM/PM" : "am/pm";
            i += StartsText("am/pm", rest) ? 5 : 4;
            continue;
        }
        if (StartsText("a/p", rest)) {
            out += c == 'A' ? "A/P" : "a/p";
            i += 3;
            continue;
        }
        bool hour = false;
        switch (lc) {
        case 'c':
            ++i;
            Translate(out, fs.ShortDateFormat, fs, depth + 1);
            out += ' ';
            Translate(out, fs.LongTimeFormat, fs, depth + 1);
            break;
        case 'y':
            out += run('y') <= 2 ? "yy" : "yyyy";
            break;
        case 'm': {
            const size_t n = run('m');
            out += afterHour && n <= 2 ? std::string(n, 'm') : std::string(std::min<size_t>(n, 4), 'm');
            break;
        }
        case 'd': {
            const size_t n = run('d');
            if (n <= 4)
                out += std::string(n, 'd');
            else
                Translate(out, n == 5 ? fs.ShortDateFormat : fs.LongDateFormat, fs, depth + 1);
            break;
        }
        case 'h':
            out += run('h') == 1 ? "h" : "hh";
            hour = true;
            break;
        case 'n':
            out += run('n') == 1 ? "m" : "mm";
            break;
        case 's':
            out += run('s') == 1 ? "s" : "ss";
            break;
        case 'z':
            run('z');
            out += "000";
            break;
        case 't':
            Translate(out, run('t') == 1 ? fs.ShortTimeFormat : fs.LongTimeFormat, fs, depth + 1);
            break;
        default:
            Literal(out, f.substr(i, 1));
            ++i;
            continue;
        }
        afterHour = hour;
    }
}

} // namespace

std::string SpreadsheetDateFormat(std::string_view BoardFormat, const TFormatSettings& Settings) {
    std::string out;
    Translate(out, BoardFormat, Settings, 0);
    return out.empty() ? "yyyy-mm-dd hh:mm:ss" : out;
}

std::string GridDateFormat(const TFormatSettings& Settings) {
    return Settings.ShortDateFormat + " " + Settings.LongTimeFormat;
}
