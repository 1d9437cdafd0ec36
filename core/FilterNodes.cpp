// Leaves and logic of the compiled filter.
#include "core/FilterNodes.h"

#include <algorithm>

namespace FilterLanguage {

namespace {

class TIntField final : public TNumNode {
public:
    explicit TIntField(TNoticeField f) : F(f) {}
    bool Eval(const TNoticeRecord& r, double& v) const override {
        v = r.AsInteger(F);
        return !r.IsNull(F);
    }
    TNoticeField F;
};

class TDateField final : public TNumNode {
public:
    explicit TDateField(TNoticeField f) : F(f) {}
    bool Eval(const TNoticeRecord& r, double& v) const override {
        v = r.AsDateTime(F);
        return !r.IsNull(F);
    }
    TNoticeField F;
};

class TStrField final : public TStrNode {
public:
    explicit TStrField(TNoticeField f) : F(f) {}
    bool Eval(const TNoticeRecord& r, std::string_view& v) const override {
        v = r.AsString(F);
        return !r.IsNull(F);
    }
    TNoticeField F;
};

class TNumConst final : public TNumNode {
public:
    explicit TNumConst(double v) : V(v) {}
    bool Eval(const TNoticeRecord&, double& v) const override {
        v = V;
        return true;
    }
    double V;
};

class TStrConst final : public TStrNode {
public:
    explicit TStrConst(std::string v) : V(std::move(v)) {}
    bool Eval(const TNoticeRecord&, std::string_view& v) const override {
        v = V;
        return true;
    }
    std::string V;
};

class TBoolConst final : public TBoolNode {
public:
    explicit TBoolConst(TTri v) : V(v) {}
    int Cost() const override { return 0; }
    TTri Eval(const TNoticeRecord&) const override { return V; }
    TTri V;
};

int SumCost(const std::vector<TBoolPtr>& terms) {
    int sum = 0;
    for (const auto& t : terms)
        sum = std::min(sum + t->Cost(), 1000);
    return sum;
}

std::vector<TBoolPtr> CheapestFirst(std::vector<TBoolPtr> terms) {
    std::stable_sort(terms.begin(), terms.end(),
                     [](const TBoolPtr& a, const TBoolPtr& b) { return a->Cost() < b->Cost(); });
    return terms;
}

class TAnd final : public TBoolNode {
public:
    explicit TAnd(std::vector<TBoolPtr> c) : C(CheapestFirst(std::move(c))) {}
    int Cost() const override { return SumCost(C); }
    TTri Eval(const TNoticeRecord& r) const override {
        TTri result = TTri::True;
        for (const auto& child : C) {
            const TTri t = child->Eval(r);
            if (t == TTri::False) return TTri::False;
            if (t == TTri::Unknown) result = TTri::Unknown;
        }
        return result;
    }
    std::vector<TBoolPtr> C;
};

class TOr final : public TBoolNode {
public:
    explicit TOr(std::vector<TBoolPtr> c) : C(CheapestFirst(std::move(c))) {}
    int Cost() const override { return SumCost(C); }
    TTri Eval(const TNoticeRecord& r) const override {
        TTri result = TTri::False;
        for (const auto& child : C) {
            const TTri t = child->Eval(r);
            if (t == TTri::True) return TTri::True;
            if (t == TTri::Unknown) result = TTri::Unknown;
        }
        return result;
    }
    std::vector<TBoolPtr> C;
};

class TNot final : public TBoolNode {
public:
    explicit TNot(TBoolPtr c) : C(std::move(c)) {}
    int Cost() const override { return C->Cost(); }
    TTri Eval(const TNoticeRecord& r) const override {
        const TTri t = C->Eval(r);
        return t == TTri::Unknown ? t : ToTri(t == TTri::False);
    }
    TBoolPtr C;
};

} // namespace

TNumPtr MakeIntField(TNoticeField field) {
    return std::make_unique<TIntField>(field);
}
TNumPtr MakeDateField(TNoticeField field) {
    return std::make_unique<TDateField>(field);
}
TStrPtr MakeStrField(TNoticeField field) {
    return std::make_unique<TStrField>(field);
}
TNumPtr MakeNumConst(double value) {
    return std::make_unique<TNumConst>(value);
}
TStrPtr MakeStrConst(std::string value) {
    return std::make_unique<TStrConst>(std::move(value));
}
TBoolPtr MakeBoolConst(TTri value) {
    return std::make_unique<TBoolConst>(value);
}
TBoolPtr MakeAnd(std::vector<TBoolPtr> children) {
    return std::make_unique<TAnd>(std::move(children));
}
TBoolPtr MakeOr(std::vector<TBoolPtr> children) {
    return std::make_unique<TOr>(std::move(children));
}
TBoolPtr MakeNot(TBoolPtr child) {
    return std::make_unique<TNot>(std::move(child));
}

} // namespace FilterLanguage
