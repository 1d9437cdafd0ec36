#include "core/FilterExpression.h"

#include "core/FilterBinder.h"
#include "core/FilterParser.h"
#include "support/DateUtils.h"
#include "support/StrUtils.h"

#include <new>

using namespace FilterLanguage;

namespace {

class TCompiledFilter final : public IRowFilter {
public:
    TCompiledFilter(TBoolPtr root, bool readsText) : FRoot(std::move(root)), FReadsText(readsText) {}
    bool Accept(const TNoticeRecord& row) const override { return !FRoot || FRoot->Eval(row) == TTri::True; }
    bool ReadsText() const override { return FReadsText; }

private:
    TBoolPtr FRoot; // null: no condition, every row passes
    bool FReadsText;
};

// Whether the text names a string field anywhere. A name inside a literal counts too; that only costs a
// little bandwidth when the store recounts.
bool MentionsTextField(const std::string& text) {
    const std::string lower = LowerCase(text);
    for (int f = 0; f < NoticeFieldCount; ++f) {
        const TNoticeField field = static_cast<TNoticeField>(f);
        if (TNoticeRecord::StringSlot(field) >= 0 && lower.find(NoticeFieldName(field)) != std::string::npos)
            return true;
    }
    return false;
}

// Reads exactly n digits at s[i].
bool Digits(const std::string& s, size_t& i, size_t n, int& value) {
    value = 0;
    for (size_t k = 0; k < n; ++k, ++i) {
        if (i >= s.size() || s[i] < '0' || s[i] > '9') return false;
        value = value * 10 + (s[i] - '0');
    }
    return true;
}

// yyyy-mm-dd, then optionally 'T' or a blank and hh:nn[:ss[.zzz]].
bool ParseIsoDate(const std::string& s, double& value) {
    size_t i = 0;
    int y, mo, d, h = 0, mi = 0, sec = 0, ms = 0;
    if (!Digits(s, i, 4, y) || i >= s.size() || s[i++] != '-' || !Digits(s, i, 2, mo) || i >= s.size() ||
        s[i++] != '-' || !Digits(s, i, 2, d))
        return false;
    if (i < s.size()) {
        if (s[i] != 'T' && s[i] != ' ') return false;
        ++i;
        if (!Digits(s, i, 2, h) || i >= s.size() || s[i++] != ':' || !Digits(s, i, 2, mi)) return false;
        if (i < s.size() && s[i] == ':') {
            ++i;
            if (!Digits(s, i, 2, sec)) return false;
            if (i < s.size() && s[i] == '.') {
                ++i;
                const size_t start = i;
                int frac = 0;
                while (i < s.size() && s[i] >= '0' && s[i] <= '9') {
                    if (i - start < 3) frac = frac * 10 + (s[i] - '0');
                    ++i;
                }
                if (i == start) return false;
                for (size_t k = i - start; k < 3; ++k)
                    frac *= 10;
                ms = frac;
            }
        }
        if (i != s.size()) return false;
    }
    double date, time;
    if (!TryEncodeDate(y, mo, d, date) || !TryEncodeTime(h, mi, sec, ms, time)) return false;
    value = date + time;
    return true;
}

} // namespace

bool FilterLanguage::ParseFilterDate(const std::string& text, double& value) {
    const std::string t = Trim(text);
    return ParseIsoDate(t, value) || TryStrToDateTime(t, value, FormatSettings());
}

std::unique_ptr<IRowFilter> CompileFilterExpression(const std::string& text) {
    try {
        std::unique_ptr<TFilterAst> ast = ParseFilterText(text);
        TBoolPtr root = ast ? BindFilterCondition(*ast) : nullptr;
        return std::make_unique<TCompiledFilter>(std::move(root), MentionsTextField(text));
    } catch (const EFilterExpressionError&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw EFilterExpressionError("Filter expression too large");
    } catch (const std::exception& e) {
        throw EFilterExpressionError(std::string("Invalid filter expression: ") + e.what());
    }
}
