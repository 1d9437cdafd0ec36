// The comparison nodes of the filter language: one class per operator, so a row pays no operator switch.
#include "core/FilterNodes.h"

#include "core/FilterLike.h"

#include <algorithm>

namespace FilterLanguage {

namespace {

template <TCmpOp Op, typename T> inline bool Holds(const T& a, const T& b) {
    if constexpr (Op == TCmpOp::Eq)
        return a == b;
    else if constexpr (Op == TCmpOp::Ne)
        return a != b;
    else if constexpr (Op == TCmpOp::Lt)
        return a < b;
    else if constexpr (Op == TCmpOp::Gt)
        return a > b;
    else if constexpr (Op == TCmpOp::Le)
        return a <= b;
    else
        return a >= b;
}

// Instantiates Node<Op> for the operator chosen at run time.
template <template <TCmpOp> class Node, typename... Args> TBoolPtr ForOp(TCmpOp op, Args&&... args) {
    switch (op) {
    case TCmpOp::Eq:
        return std::make_unique<Node<TCmpOp::Eq>>(std::forward<Args>(args)...);
    case TCmpOp::Ne:
        return std::make_unique<Node<TCmpOp::Ne>>(std::forward<Args>(args)...);
    case TCmpOp::Lt:
        return std::make_unique<Node<TCmpOp::Lt>>(std::forward<Args>(args)...);
    case TCmpOp::Gt:
        return std::make_unique<Node<TCmpOp::Gt>>(std::forward<Args>(args)...);
    case TCmpOp::Le:
        return std::make_unique<Node<TCmpOp::Le>>(std::forward<Args>(args)...);
    case TCmpOp::Ge:
        break;
    }
    return std::make_unique<Node<TCmpOp::Ge>>(std::forward<Args>(args)...);
}

// Two computed values of one type (Ptr evaluates to V); null when either is.
template <TCmpOp Op, typename Ptr, typename V> class TCmpValues final : public TBoolNode {
public:
    TCmpValues(Ptr l, Ptr r) : L(std::move(l)), R(std::move(r)) {}
    TTri Eval(const TNoticeRecord& row) const override {
        V a, b;
        if (!L->Eval(row, a) || !R->Eval(row, b)) return TTri::Unknown;
        return ToTri(Holds<Op>(a, b));
    }
    Ptr L, R;
};
template <TCmpOp Op> using TCmpNum = TCmpValues<Op, TNumPtr, double>;
template <TCmpOp Op> using TCmpStr = TCmpValues<Op, TStrPtr, std::string_view>;

template <TCmpOp Op> class TCmpIntFieldConst final : public TBoolNode {
public:
    TCmpIntFieldConst(TNoticeField f, double v) : F(f), V(v) {}
    int Cost() const override { return 1; }
    TTri Eval(const TNoticeRecord& r) const override {
        if (r.IsNull(F)) return TTri::Unknown;
        return ToTri(Holds<Op>(static_cast<double>(r.AsInteger(F)), V));
    }
    TNoticeField F;
    double V;
};

template <TCmpOp Op> class TCmpDateFieldConst final : public TBoolNode {
public:
    TCmpDateFieldConst(TNoticeField f, double v) : F(f), V(v) {}
    int Cost() const override { return 1; }
    TTri Eval(const TNoticeRecord& r) const override {
        if (r.IsNull(F)) return TTri::Unknown;
        return ToTri(Holds<Op>(r.AsDateTime(F), V));
    }
    TNoticeField F;
    double V;
};

template <TCmpOp Op> class TCmpStrFieldConst final : public TBoolNode {
public:
    TCmpStrFieldConst(TNoticeField f, std::string v) : F(f), V(std::move(v)) {}
    int Cost() const override { return 3; }
    TTri Eval(const TNoticeRecord& r) const override {
        if (r.IsNull(F)) return TTri::Unknown;
        return ToTri(Holds<Op>(r.AsString(F), std::string_view(V)));
    }
    TNoticeField F;
    std::string V;
};

class TIsNullField final : public TBoolNode {
public:
    TIsNullField(TNoticeField f, bool n) : F(f), Negated(n) {}
    int Cost() const override { return 1; }
    TTri Eval(const TNoticeRecord& r) const override { return ToTri(r.IsNull(F) != Negated); }
    TNoticeField F;
    bool Negated;
};

template <typename Ptr, typename V> class TIsNullValue final : public TBoolNode {
public:
    TIsNullValue(Ptr c, bool n) : C(std::move(c)), Negated(n) {}
    TTri Eval(const TNoticeRecord& r) const override {
        V v;
        return ToTri(!C->Eval(r, v) != Negated);
    }
    Ptr C;
    bool Negated;
};

class TLikeConst final : public TBoolNode {
public:
    TLikeConst(TStrPtr v, const std::string& p) : V(std::move(v)), P(p) {}
    TTri Eval(const TNoticeRecord& r) const override {
        std::string_view s;
        if (!V->Eval(r, s)) return TTri::Unknown;
        return ToTri(P.Match(s));
    }
    TStrPtr V;
    TLikePattern P;
};

class TLikeFieldConst final : public TBoolNode {
public:
    TLikeFieldConst(TNoticeField f, const std::string& p) : F(f), P(p) {}
    int Cost() const override { return P.Shape() == TLikePattern::TShape::General ? 8 : 4; }
    TTri Eval(const TNoticeRecord& r) const override {
        if (r.IsNull(F)) return TTri::Unknown;
        return ToTri(P.Match(r.AsString(F)));
    }
    TNoticeField F;
    TLikePattern P;
};

class TLike final : public TBoolNode {
public:
    TLike(TStrPtr v, TStrPtr p) : V(std::move(v)), P(std::move(p)) {}
    int Cost() const override { return 10; }
    TTri Eval(const TNoticeRecord& r) const override {
        std::string_view s, p;
        if (!V->Eval(r, s) || !P->Eval(r, p)) return TTri::Unknown;
        return ToTri(LikeMatch(s, p));
    }
    TStrPtr V, P;
};

class TInNum final : public TBoolNode {
public:
    TInNum(TNumPtr v, std::vector<double> l) : V(std::move(v)), L(std::move(l)) {}
    int Cost() const override { return 3; }
    TTri Eval(const TNoticeRecord& r) const override {
        double x;
        if (!V->Eval(r, x)) return TTri::Unknown;
        return ToTri(std::find(L.begin(), L.end(), x) != L.end());
    }
    TNumPtr V;
    std::vector<double> L;
};

class TInStr final : public TBoolNode {
public:
    TInStr(TStrPtr v, std::vector<std::string> l) : V(std::move(v)), L(std::move(l)) {
        std::sort(L.begin(), L.end());
    }
    int Cost() const override { return 5; }
    TTri Eval(const TNoticeRecord& r) const override {
        std::string_view x;
        if (!V->Eval(r, x)) return TTri::Unknown;
        return ToTri(std::binary_search(L.begin(), L.end(), x, std::less<>()));
    }
    TStrPtr V;
    std::vector<std::string> L;
};

} // namespace

TCmpOp SwapCmpOp(TCmpOp op) {
    switch (op) {
    case TCmpOp::Lt:
        return TCmpOp::Gt;
    case TCmpOp::Gt:
        return TCmpOp::Lt;
    case TCmpOp::Le:
        return TCmpOp::Ge;
    case TCmpOp::Ge:
        return TCmpOp::Le;
    default:
        return op;
    }
}

TBoolPtr MakeCmpNum(TCmpOp op, TNumPtr l, TNumPtr r) {
    return ForOp<TCmpNum>(op, std::move(l), std::move(r));
}
TBoolPtr MakeCmpStr(TCmpOp op, TStrPtr l, TStrPtr r) {
    return ForOp<TCmpStr>(op, std::move(l), std::move(r));
}
TBoolPtr MakeCmpIntFieldConst(TCmpOp op, TNoticeField f, double v) {
    return ForOp<TCmpIntFieldConst>(op, f, v);
}
TBoolPtr MakeCmpDateFieldConst(TCmpOp op, TNoticeField f, double v) {
    return ForOp<TCmpDateFieldConst>(op, f, v);
}
TBoolPtr MakeCmpStrFieldConst(TCmpOp op, TNoticeField f, std::string v) {
    return ForOp<TCmpStrFieldConst>(op, f, std::move(v));
}
TBoolPtr MakeIsNullField(TNoticeField f, bool negated) {
    return std::make_unique<TIsNullField>(f, negated);
}
TBoolPtr MakeIsNullNum(TNumPtr c, bool negated) {
    return std::make_unique<TIsNullValue<TNumPtr, double>>(std::move(c), negated);
}
TBoolPtr MakeIsNullStr(TStrPtr c, bool negated) {
    return std::make_unique<TIsNullValue<TStrPtr, std::string_view>>(std::move(c), negated);
}
TBoolPtr MakeLike(TStrPtr v, TStrPtr p) {
    return std::make_unique<TLike>(std::move(v), std::move(p));
}
TBoolPtr MakeLikeConst(TStrPtr v, const std::string& p) {
    return std::make_unique<TLikeConst>(std::move(v), p);
}
TBoolPtr MakeLikeFieldConst(TNoticeField f, const std::string& p) {
    return std::make_unique<TLikeFieldConst>(f, p);
}
TBoolPtr MakeInNum(TNumPtr v, std::vector<double> l) {
    return std::make_unique<TInNum>(std::move(v), std::move(l));
}
TBoolPtr MakeInStr(TStrPtr v, std::vector<std::string> l) {
    return std::make_unique<TInStr>(std::move(v), std::move(l));
}

} // namespace FilterLanguage
