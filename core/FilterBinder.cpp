#include "core/FilterBinder.h"

#include "core/FilterLexer.h"
#include "support/DateUtils.h"
#include "support/StrUtils.h"

#include <charconv>
#include <cmath>

namespace FilterLanguage {

namespace {

const TNoticeRecord EmptyRow;

// Replaces a value whose inputs are all constant by its value, so rows never recompute it.
TTyped Fold(TTyped v, bool allConst) {
    if (!allConst) return v;
    if (v.N) {
        double d;
        if (v.N->Eval(EmptyRow, d) && std::isfinite(d)) {
            v.N = MakeNumConst(d);
            v.IsConst = true;
            v.Num = d;
        }
    } else if (v.S) {
        std::string_view s;
        if (v.S->Eval(EmptyRow, s)) {
            v.Str.assign(s);
            v.S = MakeStrConst(v.Str);
            v.IsConst = true;
        }
    }
    return v;
}

TTyped BindName(const TFilterAst& ast, const TTyped* comparedWith) {
    TNoticeField field;
    if (!FindNoticeField(ast.Text, field)) {
        // A bare severity text typed as the value of a note_severity line reads as its number.
        if (comparedWith && comparedWith->IsField && comparedWith->Field == nf_note_severity) {
            if (const int severity = SeverityNumber(ast.Text))
                return NumConst(severity, TVType::Number, ast.Line, ast.Column);
        }
        ThrowFilterError("Unknown field name '" + PrintableFilterText(ast.Text) + "'", ast.Line, ast.Column);
    }
    TTyped v;
    v.IsField = true;
    v.Field = field;
    v.Line = ast.Line;
    v.Column = ast.Column;
    switch (NoticeFieldType(field)) {
    case TFieldType::ftString:
    case TFieldType::ftMemo:
        v.Type = TVType::Text;
        v.S = MakeStrField(field);
        break;
    case TFieldType::ftDateTime:
        v.Type = TVType::DateTime;
        v.N = MakeDateField(field);
        break;
    default:
        v.Type = TVType::Number;
        v.N = MakeIntField(field);
        break;
    }
    return v;
}

TTyped BindArith(const TFilterAst& ast) {
    TTyped a = BindValue(*ast.Children[0]);
    TTyped b = BindValue(*ast.Children[1]);
    const char op = ast.Text[0];
    TTyped r;
    r.Line = ast.Line;
    r.Column = ast.Column;
    if (op == '+' && a.Type == TVType::Text && b.Type == TVType::Text) {
        const bool allConst = a.IsConst && b.IsConst;
        r.Type = TVType::Text;
        r.S = MakeConcat(std::move(a.S), std::move(b.S));
        return Fold(std::move(r), allConst);
    }
    // A date text next to a date-time is a date; any other text cannot take part in arithmetic.
    if (a.Type == TVType::DateTime && b.Type == TVType::Text) b = ToDateTime(std::move(b));
    if (b.Type == TVType::DateTime && a.Type == TVType::Text) a = ToDateTime(std::move(a));
    if (a.Type == TVType::Text || b.Type == TVType::Text || a.Type == TVType::Bool || b.Type == TVType::Bool)
        ThrowAt("Operator '" + ast.Text + "' cannot combine " + TypeName(a.Type) + " and " + TypeName(b.Type),
                r);
    const bool da = a.Type == TVType::DateTime, db = b.Type == TVType::DateTime;
    r.Type = (op == '+' && da != db) || (op == '-' && da && !db) ? TVType::DateTime : TVType::Number;
    const bool allConst = a.IsConst && b.IsConst;
    r.N = MakeArith(op, std::move(a.N), std::move(b.N));
    return Fold(std::move(r), allConst);
}

TTyped BindCall(const TFilterAst& ast) {
    const std::string name = UpperCase(ast.Text);
    const size_t argc = ast.Children.size();
    auto expect = [&](size_t lo, size_t hi) {
        if (argc >= lo && argc <= hi) return;
        const std::string count =
            lo == hi ? std::to_string(lo) : std::to_string(lo) + " or " + std::to_string(hi);
        ThrowFilterError("Function " + name + " takes " + count + (hi == 1 ? " argument" : " arguments") +
                             ", not " + std::to_string(argc),
                         ast.Line, ast.Column);
    };
    TTyped r;
    r.Line = ast.Line;
    r.Column = ast.Column;
    bool allConst = true;
    auto arg = [&](size_t i, TTyped (*convert)(TTyped)) {
        TTyped v = convert(BindValue(*ast.Children[i]));
        allConst = allConst && v.IsConst;
        return v;
    };
    static const std::pair<const char*, TStrFunc> StrFuncs[] = {{"UPPER", TStrFunc::Upper},
                                                                {"LOWER", TStrFunc::Lower},
                                                                {"TRIM", TStrFunc::Trim},
                                                                {"TRIMLEFT", TStrFunc::TrimLeft},
                                                                {"TRIMRIGHT", TStrFunc::TrimRight}};
    // The one-argument functions: check the count, convert the argument, build the node, fold constants.
    auto unary = [&](TVType type, TTyped (*convert)(TTyped), auto make) {
        expect(1, 1);
        r.Type = type;
        make(arg(0, convert));
        return Fold(std::move(r), allConst);
    };
    for (const auto& f : StrFuncs)
        if (name == f.first)
            return unary(TVType::Text, ToText,
                         [&](TTyped v) { r.S = MakeStrFunc(f.second, std::move(v.S)); });
    if (name == "SUBSTRING") {
        expect(2, 3);
        r.Type = TVType::Text;
        TStrPtr text = arg(0, ToText).S;
        TNumPtr from = arg(1, ToNumber).N;
        TNumPtr length = argc == 3 ? arg(2, ToNumber).N : nullptr;
        r.S = MakeSubstring(std::move(text), std::move(from), std::move(length));
        return Fold(std::move(r), allConst);
    }
    static const std::pair<const char*, TDatePart> Parts[] = {
        {"YEAR", TDatePart::Year}, {"MONTH", TDatePart::Month},   {"DAY", TDatePart::Day},
        {"HOUR", TDatePart::Hour}, {"MINUTE", TDatePart::Minute}, {"SECOND", TDatePart::Second}};
    for (const auto& p : Parts)
        if (name == p.first)
            return unary(TVType::Number, ToDateTime,
                         [&](TTyped v) { r.N = MakeDatePart(p.second, std::move(v.N)); });
    if (name == "DATE" || name == "TIME") {
        return unary(TVType::DateTime, ToDateTime, [&](TTyped v) {
            r.N = name == "DATE" ? MakeDateOnly(std::move(v.N)) : MakeTimeOnly(std::move(v.N));
        });
    }
    if (name == "GETDATE") {
        expect(0, 0);
        r.Type = TVType::DateTime;
        r.N = MakeGetDate();
        return r;
    }
    ThrowFilterError("Unknown function '" + PrintableFilterText(ast.Text) + "'", ast.Line, ast.Column);
}

} // namespace

std::string TypeName(TVType type) {
    switch (type) {
    case TVType::Bool:
        return "a condition";
    case TVType::Number:
        return "a number";
    case TVType::DateTime:
        return "a date-time";
    case TVType::Text:
        break;
    }
    return "text";
}

void ThrowAt(const std::string& what, const TTyped& at) {
    ThrowFilterError(what, at.Line, at.Column);
}

int SeverityNumber(std::string_view text) {
    for (size_t i = 0; i < SeverityStrings.size(); ++i) {
        if (SameText(text, SeverityStrings[i])) return static_cast<int>(i) + 1;
    }
    return 0;
}

TTyped NumConst(double value, TVType type, int line, int column) {
    TTyped v;
    v.Type = type;
    v.N = MakeNumConst(value);
    v.IsConst = true;
    v.Num = value;
    v.Line = line;
    v.Column = column;
    return v;
}

TTyped StrConst(std::string value, const TFilterAst& at) {
    TTyped v;
    v.Type = TVType::Text;
    v.S = MakeStrConst(value);
    v.IsConst = true;
    v.Str = std::move(value);
    v.Line = at.Line;
    v.Column = at.Column;
    return v;
}

TTyped BindValue(const TFilterAst& ast, const TTyped* comparedWith) {
    switch (ast.Kind) {
    case TFilterAstKind::Number: {
        double d = 0;
        const auto [end, ec] = std::from_chars(ast.Text.data(), ast.Text.data() + ast.Text.size(), d);
        if (ec != std::errc() || end != ast.Text.data() + ast.Text.size() || !std::isfinite(d))
            ThrowFilterError("Invalid number '" + PrintableFilterText(ast.Text) + "'", ast.Line, ast.Column);
        return NumConst(d, TVType::Number, ast.Line, ast.Column);
    }
    case TFilterAstKind::Text:
        return StrConst(ast.Text, ast);
    case TFilterAstKind::Name:
        return BindName(ast, comparedWith);
    case TFilterAstKind::Call:
        return BindCall(ast);
    case TFilterAstKind::Arith:
        return BindArith(ast);
    case TFilterAstKind::Negate: {
        TTyped v = BindValue(*ast.Children[0]);
        if (v.Type != TVType::Number)
            ThrowFilterError("A minus sign cannot stand before " + TypeName(v.Type), ast.Line, ast.Column);
        const bool isConst = v.IsConst;
        v.IsField = false;
        v.N = MakeNegate(std::move(v.N));
        return Fold(std::move(v), isConst);
    }
    default:
        return BindCondition(ast);
    }
}

TTyped ToText(TTyped v) {
    if (v.Type == TVType::Text) return v;
    if (v.Type == TVType::Bool) ThrowAt("Expected a value, not a condition", v);
    const bool isConst = v.IsConst;
    const bool severity = v.IsField && v.Field == nf_note_severity;
    v.S = MakeNumToStr(std::move(v.N), severity, v.Type == TVType::DateTime);
    v.Type = TVType::Text;
    v.IsField = false;
    v.IsConst = false;
    return Fold(std::move(v), isConst);
}

TTyped ToDateTime(TTyped v) {
    if (v.Type == TVType::Number || v.Type == TVType::DateTime) return v;
    if (v.Type == TVType::Text && v.IsConst) {
        double d;
        if (!ParseFilterDate(v.Str, d)) ThrowAt("Invalid date '" + PrintableFilterText(v.Str) + "'", v);
        return NumConst(d, TVType::DateTime, v.Line, v.Column);
    }
    ThrowAt("Expected a date-time, not " + TypeName(v.Type), v);
}

bool TryTextToNumber(const std::string& text, double& value) {
    const std::string t = Trim(text);
    const auto [end, ec] = std::from_chars(t.data(), t.data() + t.size(), value);
    return !t.empty() && ec == std::errc() && end == t.data() + t.size() && std::isfinite(value);
}

TTyped ToNumber(TTyped v) {
    if (v.Type == TVType::Number || v.Type == TVType::DateTime) return v;
    if (v.Type == TVType::Text && v.IsConst) {
        double d = 0;
        if (!TryTextToNumber(v.Str, d))
            ThrowAt("'" + PrintableFilterText(v.Str) + "' is not a valid number", v);
        TTyped r = std::move(v);
        r.Type = TVType::Number;
        r.S.reset();
        r.N = MakeNumConst(d);
        r.Num = d;
        return r;
    }
    ThrowAt("Expected a number, not " + TypeName(v.Type), v);
}

} // namespace FilterLanguage
