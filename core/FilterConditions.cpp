// The condition half of the filter binder: comparisons, IS NULL, LIKE, IN and the logic around them.
#include "core/FilterBinder.h"

#include "core/FilterLexer.h"
#include "support/StrUtils.h"

namespace FilterLanguage {

namespace {

TCmpOp CmpOpOf(const std::string& s) {
    if (s == "=") return TCmpOp::Eq;
    if (s == "<>") return TCmpOp::Ne;
    if (s == "<") return TCmpOp::Lt;
    if (s == ">") return TCmpOp::Gt;
    if (s == "<=") return TCmpOp::Le;
    return TCmpOp::Ge;
}

TTyped BoolResult(TBoolPtr node, const TFilterAst& at) {
    TTyped r;
    r.Type = TVType::Bool;
    r.B = std::move(node);
    r.Line = at.Line;
    r.Column = at.Column;
    return r;
}

bool IsUnresolvedName(const TFilterAst& ast) {
    TNoticeField f;
    return ast.Kind == TFilterAstKind::Name && !FindNoticeField(ast.Text, f);
}

// Binds both operands of a comparison; an operand that is a bare word is bound after the other, so that
// "note_severity = Fatal" can read Fatal as a severity.
void BindPair(const TFilterAst& left, const TFilterAst& right, TTyped& a, TTyped& b) {
    if (IsUnresolvedName(left) && !IsUnresolvedName(right)) {
        b = BindValue(right);
        a = BindValue(left, &b);
    } else {
        a = BindValue(left);
        b = BindValue(right, &a);
    }
}

// Converts a constant text compared with a number or date-time into that type: a severity text against
// note_severity, a date against a date-time, a number otherwise.
TTyped ConvertTextFor(TTyped text, const TTyped& other, const TFilterAst& op) {
    if (!text.IsConst)
        ThrowFilterError("Cannot compare text with " + TypeName(other.Type), op.Line, op.Column);
    if (other.Type == TVType::DateTime) return ToDateTime(std::move(text));
    if (other.IsField && other.Field == nf_note_severity) {
        if (const int severity = SeverityNumber(Trim(text.Str)))
            return NumConst(severity, TVType::Number, op.Line, op.Column);
        double number;
        if (!TryTextToNumber(text.Str, number))
            ThrowAt("'" + PrintableFilterText(text.Str) +
                        "' is not a severity (Normal, Warning, Fatal or Critical)",
                    text);
    }
    return ToNumber(std::move(text));
}

// Brings both operands to one kind: both text, or both numeric (numbers and date-times). Returns true for
// text.
bool Unify(TTyped& a, TTyped& b, const TFilterAst& op) {
    if (a.Type == TVType::Bool || b.Type == TVType::Bool)
        ThrowFilterError("A condition cannot be compared with '" + op.Text + "'", op.Line, op.Column);
    if (a.Type == TVType::Text && b.Type == TVType::Text) return true;
    // A date typed bare in the line editor (21/11/2026) is arithmetic on numbers; refusing the mix says so
    // instead of comparing with a number of days near zero.
    if ((a.Type == TVType::DateTime && b.Type == TVType::Number) ||
        (a.Type == TVType::Number && b.Type == TVType::DateTime))
        ThrowFilterError("Cannot compare a date-time with a number (write a date in quotes, as '2026-11-21')",
                         op.Line, op.Column);
    if (a.Type == TVType::Text)
        a = ConvertTextFor(std::move(a), b, op);
    else if (b.Type == TVType::Text)
        b = ConvertTextFor(std::move(b), a, op);
    return false;
}

TTyped BindCompare(TCmpOp op, const TFilterAst& left, const TFilterAst& right, const TFilterAst& at) {
    TTyped a, b;
    BindPair(left, right, a, b);
    const bool text = Unify(a, b, at);
    if (a.IsConst && !b.IsConst) {
        std::swap(a, b);
        op = SwapCmpOp(op);
    }
    if (a.IsConst && b.IsConst) {
        const bool result = text ? (op == TCmpOp::Eq   ? a.Str == b.Str
                                    : op == TCmpOp::Ne ? a.Str != b.Str
                                    : op == TCmpOp::Lt ? a.Str < b.Str
                                    : op == TCmpOp::Gt ? a.Str > b.Str
                                    : op == TCmpOp::Le ? a.Str <= b.Str
                                                       : a.Str >= b.Str)
                                 : (op == TCmpOp::Eq   ? a.Num == b.Num
                                    : op == TCmpOp::Ne ? a.Num != b.Num
                                    : op == TCmpOp::Lt ? a.Num < b.Num
                                    : op == TCmpOp::Gt ? a.Num > b.Num
                                    : op == TCmpOp::Le ? a.Num <= b.Num
                                                       : a.Num >= b.Num);
        return BoolResult(MakeBoolConst(result ? TTri::True : TTri::False), at);
    }
    if (a.IsField && b.IsConst) {
        if (text) return BoolResult(MakeCmpStrFieldConst(op, a.Field, b.Str), at);
        if (a.Type == TVType::DateTime) return BoolResult(MakeCmpDateFieldConst(op, a.Field, b.Num), at);
        return BoolResult(MakeCmpIntFieldConst(op, a.Field, b.Num), at);
    }
    if (text) return BoolResult(MakeCmpStr(op, std::move(a.S), std::move(b.S)), at);
    return BoolResult(MakeCmpNum(op, std::move(a.N), std::move(b.N)), at);
}

TTyped BindIsNull(const TFilterAst& ast) {
    TTyped v = BindValue(*ast.Children[0]);
    if (v.Type == TVType::Bool) ThrowAt("IS NULL needs a value, not a condition", v);
    if (v.IsField) return BoolResult(MakeIsNullField(v.Field, ast.Negated), ast);
    if (v.IsConst) return BoolResult(MakeBoolConst(ast.Negated ? TTri::True : TTri::False), ast);
    if (v.N) return BoolResult(MakeIsNullNum(std::move(v.N), ast.Negated), ast);
    return BoolResult(MakeIsNullStr(std::move(v.S), ast.Negated), ast);
}

TTyped BindLike(const TFilterAst& ast) {
    TTyped raw = BindValue(*ast.Children[0]);
    const TFilterAst& patternAst = *ast.Children[1];
    TTyped p;
    if (IsUnresolvedName(patternAst) && raw.IsField && raw.Field == nf_note_severity) {
        // "note_severity LIKE Fatal": the bare severity text as the pattern, matched against the shown text.
        const TTyped severity = BindValue(patternAst, &raw);
        p = StrConst(SeverityStrings[static_cast<size_t>(severity.Num) - 1], patternAst);
    } else {
        p = ToText(BindValue(patternAst));
    }
    TTyped v = ToText(std::move(raw));
    TBoolPtr node;
    if (p.IsConst && v.IsField)
        node = MakeLikeFieldConst(v.Field, p.Str);
    else if (p.IsConst)
        node = MakeLikeConst(std::move(v.S), p.Str);
    else
        node = MakeLike(std::move(v.S), std::move(p.S));
    return BoolResult(ast.Negated ? MakeNot(std::move(node)) : std::move(node), ast);
}

// "x IN (a, b)" is "x = a OR x = b"; a list of constants is checked in one step.
TTyped BindIn(const TFilterAst& ast) {
    const TFilterAst& valueAst = *ast.Children[0];
    TBoolPtr node;
    if (!IsUnresolvedName(valueAst)) {
        TTyped value = BindValue(valueAst);
        std::vector<double> numbers;
        std::vector<std::string> texts;
        bool allConst = !value.IsConst;
        bool text = false;
        for (size_t i = 1; allConst && i < ast.Children.size(); ++i) {
            TTyped item = BindValue(*ast.Children[i], &value);
            text = Unify(value, item, ast);
            allConst = item.IsConst;
            if (text)
                texts.push_back(item.Str);
            else
                numbers.push_back(item.Num);
        }
        if (allConst) {
            node = text ? MakeInStr(std::move(value.S), std::move(texts))
                        : MakeInNum(std::move(value.N), std::move(numbers));
        }
    }
    if (!node) {
        std::vector<TBoolPtr> terms;
        for (size_t i = 1; i < ast.Children.size(); ++i)
            terms.push_back(BindCompare(TCmpOp::Eq, valueAst, *ast.Children[i], ast).B);
        node = terms.size() == 1 ? std::move(terms[0]) : MakeOr(std::move(terms));
    }
    return BoolResult(ast.Negated ? MakeNot(std::move(node)) : std::move(node), ast);
}

TBoolPtr RequireCondition(const TFilterAst& ast, const char* where) {
    TTyped v = BindValue(ast);
    if (v.Type != TVType::Bool)
        ThrowAt(std::string(where) + " needs a condition (a comparison, IS NULL, LIKE or IN), not " +
                    TypeName(v.Type),
                v);
    return std::move(v.B);
}

} // namespace

TTyped BindCondition(const TFilterAst& ast) {
    switch (ast.Kind) {
    case TFilterAstKind::Compare:
        return BindCompare(CmpOpOf(ast.Text), *ast.Children[0], *ast.Children[1], ast);
    case TFilterAstKind::IsNull:
        return BindIsNull(ast);
    case TFilterAstKind::Like:
        return BindLike(ast);
    case TFilterAstKind::In:
        return BindIn(ast);
    case TFilterAstKind::Not:
        return BoolResult(MakeNot(RequireCondition(*ast.Children[0], "NOT")), ast);
    case TFilterAstKind::And:
    case TFilterAstKind::Or: {
        std::vector<TBoolPtr> terms;
        const char* word = ast.Kind == TFilterAstKind::And ? "AND" : "OR";
        for (const auto& child : ast.Children)
            terms.push_back(RequireCondition(*child, word));
        return BoolResult(
            ast.Kind == TFilterAstKind::And ? MakeAnd(std::move(terms)) : MakeOr(std::move(terms)), ast);
    }
    default:
        return BindValue(ast);
    }
}

TBoolPtr BindFilterCondition(const TFilterAst& root) {
    return RequireCondition(root, "A filter");
}

} // namespace FilterLanguage
