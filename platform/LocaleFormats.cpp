#include "platform/LocaleFormats.h"

#include <QLocale>
#include <QString>

#include <cctype>
#include <cstring>

namespace {

// Qt's pattern letters (d M y H h m s z AP) to the board's (d m y h n s z AM/PM).
std::string FromQtPattern(const QString& pattern) {
    std::string out;
    const std::string p = pattern.toStdString();
    for (size_t i = 0; i < p.size(); ++i) {
        const char c = p[i];
        switch (c) {
        case 'M':
            out += 'm';
            break;
        case 'm':
            out += 'n';
            break;
        case 'H':
        case 'h':
            out += 'h';
            break;
        case 'y':
        case 'd':
        case 's':
        case 'z':
            out += c;
            break;
        case 'A':
        case 'a':
            if (i + 1 < p.size() && (p[i + 1] == 'P' || p[i + 1] == 'p')) ++i;
            out += "AM/PM";
            break;
        case 't':
            break; // time-zone names are not part of the board's formats
        case '\'': {
            const size_t e = p.find('\'', i + 1);
            out += '"' + p.substr(i + 1, (e == std::string::npos ? p.size() : e) - i - 1) + '"';
            i = e == std::string::npos ? p.size() : e;
            break;
        }
        default:
            out += c;
        }
    }
    // Trim a trailing blank left where a zone name was removed.
    while (!out.empty() && out.back() == ' ')
        out.pop_back();
    return out;
}

std::string WidenYear(std::string format) {
    const size_t p = format.find('y');
    if (p == std::string::npos) return format;
    size_t e = p;
    while (e < format.size() && format[e] == 'y')
        ++e;
    format.replace(p, e - p, "yyyy");
    return format;
}

// The first separator of a format: ASCII punctuation outside quoted text. Format letters, blanks and
// the bytes of words such as the Japanese hour sign are not separators; without one, Fallback.
char FirstSeparator(const std::string& format, const char* letters, char fallback) {
    bool quoted = false;
    for (char c : format) {
        if (c == '"') {
            quoted = !quoted;
            continue;
        }
        const auto u = static_cast<unsigned char>(c);
        if (!quoted && u < 0x80 && std::ispunct(u) && !std::strchr(letters, c)) return c;
    }
    return fallback;
}

TLocaleFormats FormatsOf(const QLocale& locale) {
    TLocaleFormats f;
    // The C/POSIX locale has no user preferences; Qt would give a month-name date there, which the board's
    // numeric date parser cannot read back. Use the numeric day-first form instead.
    if (locale.language() == QLocale::C) {
        f.ShortDateFormat = "dd/mm/yyyy";
        f.LongTimeFormat = "hh:nn:ss";
        return f;
    }
    f.ShortDateFormat = WidenYear(FromQtPattern(locale.dateFormat(QLocale::ShortFormat)));
    f.LongTimeFormat = FromQtPattern(locale.timeFormat(QLocale::LongFormat));
    if (f.ShortDateFormat.empty()) f.ShortDateFormat = "dd/mm/yyyy";
    if (f.LongTimeFormat.empty()) f.LongTimeFormat = "hh:nn:ss";
    f.DateSeparator = FirstSeparator(f.ShortDateFormat, "dmy", '/');
    f.TimeSeparator = FirstSeparator(f.LongTimeFormat, "hnszAMP/", ':');
    return f;
}

} // namespace

TLocaleFormats UserLocaleFormats() {
    return FormatsOf(QLocale::system());
}

TLocaleFormats LocaleFormatsNamed(const std::string& name) {
    return FormatsOf(QLocale(QString::fromStdString(name)));
}
