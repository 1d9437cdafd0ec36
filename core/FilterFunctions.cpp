// Arithmetic, text joining and the functions of the filter language.
#include "core/FilterNodes.h"

#include "core/Znb_const.h"
#include "support/DateUtils.h"
#include "support/StrUtils.h"

#include <chrono>
#include <cmath>
#include <cstdio>

namespace FilterLanguage {

namespace {

// This many days from 1899-12-30 is past the year 9999 (or before year 1): there is no calendar date.
constexpr double DateTimeLimit = 2958466.0;

class TArith final : public TNumNode {
public:
    TArith(char op, TNumPtr l, TNumPtr r) : Op(op), L(std::move(l)), R(std::move(r)) {}
    bool Eval(const TNoticeRecord& row, double& v) const override {
        double a, b;
        if (!L->Eval(row, a) || !R->Eval(row, b)) return false;
        switch (Op) {
        case '+':
            v = a + b;
            return true;
        case '-':
            v = a - b;
            return true;
        case '*':
            v = a * b;
            return true;
        default:
            break;
        }
        if (b == 0) return false; // no error can leave a row: a division by zero is null
        v = a / b;
        return true;
    }
    char Op;
    TNumPtr L, R;
};

class TNegate final : public TNumNode {
public:
    explicit TNegate(TNumPtr c) : C(std::move(c)) {}
    bool Eval(const TNoticeRecord& row, double& v) const override {
        if (!C->Eval(row, v)) return false;
        v = -v;
        return true;
    }
    TNumPtr C;
};

class TConcat final : public TStrNode {
public:
    TConcat(TStrPtr l, TStrPtr r) : L(std::move(l)), R(std::move(r)) {}
    bool Eval(const TNoticeRecord& row, std::string_view& v) const override {
        std::string_view a, b;
        if (!L->Eval(row, a) || !R->Eval(row, b)) return false;
        Buf.assign(a);
        Buf.append(b);
        v = Buf;
        return true;
    }
    TStrPtr L, R;
    mutable std::string Buf;
};

class TStrFuncNode final : public TStrNode {
public:
    TStrFuncNode(TStrFunc f, TStrPtr c) : F(f), C(std::move(c)) {}
    bool Eval(const TNoticeRecord& row, std::string_view& v) const override {
        std::string_view s;
        if (!C->Eval(row, s)) return false;
        switch (F) {
        case TStrFunc::Upper:
            Buf = UpperCase(s);
            break;
        case TStrFunc::Lower:
            Buf = LowerCase(s);
            break;
        case TStrFunc::Trim:
            Buf = Trim(s);
            break;
        case TStrFunc::TrimLeft:
            Buf = TrimLeft(s);
            break;
        case TStrFunc::TrimRight:
            Buf = TrimRight(s);
            break;
        }
        v = Buf;
        return true;
    }
    TStrFunc F;
    TStrPtr C;
    mutable std::string Buf;
};

class TSubstring final : public TStrNode {
public:
    TSubstring(TStrPtr s, TNumPtr f, TNumPtr l) : S(std::move(s)), From(std::move(f)), Len(std::move(l)) {}
    bool Eval(const TNoticeRecord& row, std::string_view& v) const override {
        std::string_view s;
        double from, len = 0;
        if (!S->Eval(row, s) || !From->Eval(row, from) || (Len && !Len->Eval(row, len))) return false;
        // 1-based; a start before 1 eats into the length, as SQL's SUBSTRING does.
        double first = std::floor(from);
        double end = Len ? first + std::floor(len) : static_cast<double>(s.size()) + 1;
        if (first < 1) first = 1;
        if (end > static_cast<double>(s.size()) + 1) end = static_cast<double>(s.size()) + 1;
        v = end > first ? s.substr(static_cast<size_t>(first) - 1, static_cast<size_t>(end - first))
                        : std::string_view();
        return true;
    }
    TStrPtr S;
    TNumPtr From, Len;
};

class TDatePartNode final : public TNumNode {
public:
    TDatePartNode(TDatePart p, TNumPtr c) : P(p), C(std::move(c)) {}
    bool Eval(const TNoticeRecord& row, double& v) const override {
        double d;
        if (!C->Eval(row, d) || !std::isfinite(d) || std::fabs(d) > DateTimeLimit) return false;
        int y, mo, da, h, mi, s, ms;
        DecodeDateTime(d, y, mo, da, h, mi, s, ms);
        const int parts[] = {y, mo, da, h, mi, s};
        v = parts[static_cast<int>(P)];
        return true;
    }
    TDatePart P;
    TNumPtr C;
};

class TDateOnly final : public TNumNode {
public:
    TDateOnly(TNumPtr c, bool timePart) : C(std::move(c)), TimePart(timePart) {}
    bool Eval(const TNoticeRecord& row, double& v) const override {
        double d;
        if (!C->Eval(row, d)) return false;
        const double whole = std::trunc(d);
        v = TimePart ? std::fabs(d - whole) : whole;
        return true;
    }
    TNumPtr C;
    bool TimePart;
};

// The clock is read at most once a second: a filter asked about a million rows must not pay for a
// calendar conversion per row.
class TGetDate final : public TNumNode {
public:
    bool Eval(const TNoticeRecord&, double& v) const override {
        const auto now = std::chrono::steady_clock::now();
        if (!Valid || now - Stamp >= std::chrono::seconds(1)) {
            Cached = Now();
            Stamp = now;
            Valid = true;
        }
        v = Cached;
        return true;
    }
    mutable bool Valid = false;
    mutable double Cached = 0;
    mutable std::chrono::steady_clock::time_point Stamp;
};

class TNumToStr final : public TStrNode {
public:
    TNumToStr(TNumPtr c, bool sev, bool date) : C(std::move(c)), AsSeverity(sev), AsDate(date) {}
    bool Eval(const TNoticeRecord& row, std::string_view& v) const override {
        double d;
        if (!C->Eval(row, d)) return false;
        if (AsSeverity && d >= 1 && d <= 4 && d == std::floor(d)) {
            v = SeverityStrings[static_cast<size_t>(d) - 1];
            return true;
        }
        Buf = AsDate && std::isfinite(d) && std::fabs(d) < DateTimeLimit ? FormatDateTime("c", d)
                                                                         : NumberText(d);
        v = Buf;
        return true;
    }
    TNumPtr C;
    bool AsSeverity, AsDate;
    mutable std::string Buf;
};

} // namespace

TNumPtr MakeArith(char op, TNumPtr l, TNumPtr r) {
    return std::make_unique<TArith>(op, std::move(l), std::move(r));
}
TNumPtr MakeNegate(TNumPtr c) {
    return std::make_unique<TNegate>(std::move(c));
}
TStrPtr MakeConcat(TStrPtr l, TStrPtr r) {
    return std::make_unique<TConcat>(std::move(l), std::move(r));
}
TStrPtr MakeStrFunc(TStrFunc f, TStrPtr c) {
    return std::make_unique<TStrFuncNode>(f, std::move(c));
}
TStrPtr MakeSubstring(TStrPtr s, TNumPtr f, TNumPtr l) {
    return std::make_unique<TSubstring>(std::move(s), std::move(f), std::move(l));
}
TNumPtr MakeDatePart(TDatePart p, TNumPtr c) {
    return std::make_unique<TDatePartNode>(p, std::move(c));
}
TNumPtr MakeDateOnly(TNumPtr c) {
    return std::make_unique<TDateOnly>(std::move(c), false);
}
TNumPtr MakeTimeOnly(TNumPtr c) {
    return std::make_unique<TDateOnly>(std::move(c), true);
}
TNumPtr MakeGetDate() {
    return std::make_unique<TGetDate>();
}
TStrPtr MakeNumToStr(TNumPtr c, bool asSeverity, bool asDate) {
    return std::make_unique<TNumToStr>(std::move(c), asSeverity, asDate);
}

std::string NumberText(double value) {
    if (std::isfinite(value) && value == std::floor(value) && std::fabs(value) < 1e15)
        return IntToStr(static_cast<int64_t>(value));
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.15g", value);
    return buf;
}

} // namespace FilterLanguage
