#include "core/FilterParser.h"

#include "core/FilterExpression.h"
#include "core/FilterLexer.h"

#include <algorithm>

namespace FilterLanguage {

namespace {

using TAst = std::unique_ptr<TFilterAst>;

bool IsReservedWord(const TFilterToken& t) {
    for (const char* w : {"AND", "OR", "NOT", "IS", "NULL", "LIKE", "IN"}) {
        if (t.IsKeyword(w)) return true;
    }
    return false;
}

class TFilterParser {
public:
    explicit TFilterParser(std::string_view text) : FLexer(text) {
        FTok = FLexer.Next();
        FNext = FLexer.Next();
    }

    TAst ParseAll() {
        if (FTok.Kind == TFilterTokenKind::End) return nullptr;
        TAst root = ParseOr();
        if (FTok.Kind != TFilterTokenKind::End) Fail("Expected AND, OR or the end of the filter");
        return root;
    }

private:
    void Advance() {
        FTok = std::move(FNext);
        FNext = FTok.Kind == TFilterTokenKind::End ? FTok : FLexer.Next();
    }

    [[noreturn]] void Fail(const std::string& expected) {
        ThrowFilterError(expected + " but found " + DescribeFilterToken(FTok), FTok.Line, FTok.Column);
    }

    TAst Make(TFilterAstKind kind, const TFilterToken& at, std::string text = {}) {
        auto node = std::make_unique<TFilterAst>();
        node->Kind = kind;
        node->Text = std::move(text);
        node->Line = at.Line;
        node->Column = at.Column;
        return node;
    }

    // Adds a child, keeping the depth bound that lets later passes recurse safely.
    void Adopt(TFilterAst& parent, TAst child) {
        parent.Depth = std::max(parent.Depth, child->Depth + 1);
        if (parent.Depth > MaxFilterNesting) TooDeep(parent.Line, parent.Column);
        parent.Children.push_back(std::move(child));
    }

    [[noreturn]] static void TooDeep(int line, int column) {
        ThrowFilterError("Expression nested too deeply (more than " + std::to_string(MaxFilterNesting) +
                             " levels)",
                         line, column);
    }

    // Guards the recursion of nested parentheses, NOT and signs before the stack is at risk.
    struct TNest {
        TFilterParser& P;
        explicit TNest(TFilterParser& p) : P(p) {
            if (++P.FNesting > MaxFilterNesting) TooDeep(P.FTok.Line, P.FTok.Column);
        }
        ~TNest() { --P.FNesting; }
    };

    // A filter line whose boolean operator was left empty or set to NOT (the line editor offers both on
    // every line) starts a new condition right after the last one: it is read as joined by AND.
    bool StartsUnjoinedLine() const {
        return FTok.FirstOnLine && FTok.Kind != TFilterTokenKind::End && !FTok.IsKeyword("AND") &&
               !FTok.IsKeyword("OR") && !FTok.Is(")") && !FTok.Is(",");
    }

    bool AtJoin(const char* keyword) const {
        return FTok.IsKeyword(keyword) || (std::string_view(keyword) == "AND" && StartsUnjoinedLine());
    }

    TAst ParseChain(TFilterAstKind kind, const char* keyword, TAst (TFilterParser::*operand)()) {
        TAst first = (this->*operand)();
        if (!AtJoin(keyword)) return first;
        TAst chain = Make(kind, FTok, keyword);
        Adopt(*chain, std::move(first));
        while (AtJoin(keyword)) {
            if (FTok.IsKeyword(keyword)) Advance();
            Adopt(*chain, (this->*operand)());
        }
        return chain;
    }

    TAst ParseOr() { return ParseChain(TFilterAstKind::Or, "OR", &TFilterParser::ParseAnd); }
    TAst ParseAnd() { return ParseChain(TFilterAstKind::And, "AND", &TFilterParser::ParseNot); }

    TAst ParseNot() {
        if (!FTok.IsKeyword("NOT")) return ParsePredicate();
        TNest nest(*this);
        TAst node = Make(TFilterAstKind::Not, FTok, "NOT");
        Advance();
        Adopt(*node, ParseNot());
        return node;
    }

    TAst ParsePredicate() {
        TAst left = ParseAdditive();
        if (FTok.Kind == TFilterTokenKind::Symbol &&
            (FTok.Text == "=" || FTok.Text == "<>" || FTok.Text == "<" || FTok.Text == ">" ||
             FTok.Text == "<=" || FTok.Text == ">=")) {
            TAst node = Make(TFilterAstKind::Compare, FTok, FTok.Text);
            Advance();
            Adopt(*node, std::move(left));
            Adopt(*node, ParseAdditive());
            return node;
        }
        if (FTok.IsKeyword("IS")) {
            TAst node = Make(TFilterAstKind::IsNull, FTok, "IS");
            Advance();
            if (FTok.IsKeyword("NOT")) {
                node->Negated = true;
                Advance();
            }
            if (!FTok.IsKeyword("NULL"))
                Fail(node->Negated ? "Expected NULL after IS NOT" : "Expected NULL after IS");
            Advance();
            // The line editor stores an emptied value box of a text field as '', so a text field's
            // "IS NULL" line may carry one; it means nothing.
            if (FTok.Kind == TFilterTokenKind::Text && FTok.Text.empty() && !FTok.FirstOnLine) Advance();
            Adopt(*node, std::move(left));
            return node;
        }
        bool negated = false;
        if (FTok.IsKeyword("NOT") && (FNext.IsKeyword("LIKE") || FNext.IsKeyword("IN"))) {
            negated = true;
            Advance();
        }
        if (FTok.IsKeyword("LIKE")) {
            TAst node = Make(TFilterAstKind::Like, FTok, "LIKE");
            node->Negated = negated;
            Advance();
            Adopt(*node, std::move(left));
            Adopt(*node, ParseAdditive());
            return node;
        }
        if (FTok.IsKeyword("IN")) {
            TAst node = Make(TFilterAstKind::In, FTok, "IN");
            node->Negated = negated;
            Advance();
            Adopt(*node, std::move(left));
            ParseInList(*node);
            return node;
        }
        return left;
    }

    // "IN (a, b)"; the parentheses may be left out, as a value typed in the line editor often is.
    void ParseInList(TFilterAst& node) {
        const bool parens = FTok.Is("(");
        if (parens) Advance();
        for (;;) {
            Adopt(node, ParseAdditive());
            if (!FTok.Is(",")) break;
            Advance();
        }
        if (parens) {
            if (!FTok.Is(")")) Fail("Expected ',' or ')' in the IN list");
            Advance();
        }
    }

    TAst ParseBinary(const char* ops, TAst (TFilterParser::*operand)()) {
        TAst left = (this->*operand)();
        while (FTok.Kind == TFilterTokenKind::Symbol && FTok.Text.size() == 1 &&
               std::string_view(ops).find(FTok.Text[0]) != std::string_view::npos) {
            TAst node = Make(TFilterAstKind::Arith, FTok, FTok.Text);
            Advance();
            Adopt(*node, std::move(left));
            Adopt(*node, (this->*operand)());
            left = std::move(node);
        }
        return left;
    }

    TAst ParseAdditive() { return ParseBinary("+-", &TFilterParser::ParseMultiplicative); }
    TAst ParseMultiplicative() { return ParseBinary("*/", &TFilterParser::ParseUnary); }

    TAst ParseUnary() {
        if (FTok.Is("-") || FTok.Is("+")) {
            TNest nest(*this);
            const bool minus = FTok.Is("-");
            TAst node = Make(TFilterAstKind::Negate, FTok, "-");
            Advance();
            TAst operand = ParseUnary();
            if (!minus) return operand;
            Adopt(*node, std::move(operand));
            return node;
        }
        return ParsePrimary();
    }

    TAst ParsePrimary() {
        switch (FTok.Kind) {
        case TFilterTokenKind::Number:
        case TFilterTokenKind::Text:
        case TFilterTokenKind::BracketName: {
            const TFilterAstKind kind = FTok.Kind == TFilterTokenKind::Number ? TFilterAstKind::Number
                                        : FTok.Kind == TFilterTokenKind::Text ? TFilterAstKind::Text
                                                                              : TFilterAstKind::Name;
            TAst node = Make(kind, FTok, FTok.Text);
            Advance();
            return node;
        }
        case TFilterTokenKind::Name: {
            if (IsReservedWord(FTok)) Fail("Expected a field name or a value");
            TAst node = Make(FNext.Is("(") ? TFilterAstKind::Call : TFilterAstKind::Name, FTok, FTok.Text);
            Advance();
            if (node->Kind == TFilterAstKind::Call) ParseArguments(*node);
            return node;
        }
        default:
            break;
        }
        if (!FTok.Is("(")) Fail("Expected a field name or a value");
        TNest nest(*this);
        Advance();
        TAst inner = ParseOr();
        if (!FTok.Is(")")) Fail("Expected ')'");
        Advance();
        return inner;
    }

    void ParseArguments(TFilterAst& call) {
        Advance(); // "("
        if (FTok.Is(")")) {
            Advance();
            return;
        }
        TNest nest(*this);
        for (;;) {
            Adopt(call, ParseAdditive());
            if (!FTok.Is(",")) break;
            Advance();
        }
        if (!FTok.Is(")")) Fail("Expected ',' or ')' after a function argument");
        Advance();
    }

    TFilterLexer FLexer;
    TFilterToken FTok;
    TFilterToken FNext;
    int FNesting = 0;
};

} // namespace

std::unique_ptr<TFilterAst> ParseFilterText(std::string_view text) {
    return TFilterParser(text).ParseAll();
}

} // namespace FilterLanguage
