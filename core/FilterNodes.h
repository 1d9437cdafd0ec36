// The compiled form of a filter: a tree of typed nodes. Boolean nodes answer true, false or unknown (SQL's
// three values); number nodes (numbers and date-times) and text nodes answer a value or null. Constants are
// converted when the tree is built, so asking a row never parses or throws. A node owns its children;
// text nodes keep scratch buffers, so one tree serves one thread at a time.
#pragma once

#include "core/TNoticeRecord.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace FilterLanguage {

enum class TTri : uint8_t { False, True, Unknown };
inline TTri ToTri(bool b) {
    return b ? TTri::True : TTri::False;
}

class TBoolNode {
public:
    virtual ~TBoolNode() = default;
    virtual TTri Eval(const TNoticeRecord& row) const = 0;
    // Rough price of one Eval: AND and OR ask their cheapest terms first (no term has side effects, and
    // the three-valued AND and OR do not depend on order).
    virtual int Cost() const { return 6; }
};

class TNumNode {
public:
    virtual ~TNumNode() = default;
    // False for null.
    virtual bool Eval(const TNoticeRecord& row, double& value) const = 0;
};

class TStrNode {
public:
    virtual ~TStrNode() = default;
    // False for null. The view lives until this node is asked again.
    virtual bool Eval(const TNoticeRecord& row, std::string_view& value) const = 0;
};

using TBoolPtr = std::unique_ptr<TBoolNode>;
using TNumPtr = std::unique_ptr<TNumNode>;
using TStrPtr = std::unique_ptr<TStrNode>;

enum class TCmpOp { Eq, Ne, Lt, Gt, Le, Ge };
// The operator that gives the same answer with its operands swapped ("<" for ">").
TCmpOp SwapCmpOp(TCmpOp op);

// Leaves.
TNumPtr MakeIntField(TNoticeField field);  // integer and auto-increment fields
TNumPtr MakeDateField(TNoticeField field); // date-time fields
TStrPtr MakeStrField(TNoticeField field);
TNumPtr MakeNumConst(double value);
TStrPtr MakeStrConst(std::string value);
TBoolPtr MakeBoolConst(TTri value);

// Logic.
TBoolPtr MakeAnd(std::vector<TBoolPtr> children);
TBoolPtr MakeOr(std::vector<TBoolPtr> children);
TBoolPtr MakeNot(TBoolPtr child);

// Comparisons; the field forms are the fast paths for "field op constant".
TBoolPtr MakeCmpNum(TCmpOp op, TNumPtr left, TNumPtr right);
TBoolPtr MakeCmpStr(TCmpOp op, TStrPtr left, TStrPtr right);
TBoolPtr MakeCmpIntFieldConst(TCmpOp op, TNoticeField field, double value);
TBoolPtr MakeCmpDateFieldConst(TCmpOp op, TNoticeField field, double value);
TBoolPtr MakeCmpStrFieldConst(TCmpOp op, TNoticeField field, std::string value);
TBoolPtr MakeIsNullField(TNoticeField field, bool negated);
TBoolPtr MakeIsNullNum(TNumPtr operand, bool negated);
TBoolPtr MakeIsNullStr(TStrPtr operand, bool negated);
TBoolPtr MakeLike(TStrPtr value, TStrPtr pattern);
TBoolPtr MakeLikeConst(TStrPtr value, const std::string& pattern);
TBoolPtr MakeLikeFieldConst(TNoticeField field, const std::string& pattern);
TBoolPtr MakeInNum(TNumPtr value, std::vector<double> list);
TBoolPtr MakeInStr(TStrPtr value, std::vector<std::string> list);

// Arithmetic (op is '+', '-', '*' or '/'; division by zero gives null) and text joining.
TNumPtr MakeArith(char op, TNumPtr left, TNumPtr right);
TNumPtr MakeNegate(TNumPtr operand);
TStrPtr MakeConcat(TStrPtr left, TStrPtr right);

// Functions (FilterFunctions.cpp).
enum class TStrFunc { Upper, Lower, Trim, TrimLeft, TrimRight };
enum class TDatePart { Year, Month, Day, Hour, Minute, Second };
TStrPtr MakeStrFunc(TStrFunc func, TStrPtr operand);
TStrPtr MakeSubstring(TStrPtr text, TNumPtr from, TNumPtr length); // length may be null
TNumPtr MakeDatePart(TDatePart part, TNumPtr date);
TNumPtr MakeDateOnly(TNumPtr date);
TNumPtr MakeTimeOnly(TNumPtr date);
TNumPtr MakeGetDate();
// A number shown as text: a severity number as its severity text when asSeverity, a date-time in the short
// date and long time format when asDate, any other number in its shortest decimal form.
TStrPtr MakeNumToStr(TNumPtr operand, bool asSeverity, bool asDate);
std::string NumberText(double value);

} // namespace FilterLanguage
