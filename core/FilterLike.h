// A LIKE pattern ('%' any run, '_' one character), analysed once so that the common shapes - an exact
// text, a prefix, a suffix, a part, a prefix and a suffix - are matched without the general matcher.
// Immutable after construction; any thread.
#pragma once

#include <string>
#include <string_view>

namespace FilterLanguage {

class TLikePattern {
public:
    explicit TLikePattern(std::string_view pattern);
    bool Match(std::string_view s) const;

    enum class TShape { Exact, Prefix, Suffix, Contains, PrefixSuffix, General };
    TShape Shape() const { return FShape; }

private:
    TShape FShape = TShape::General;
    std::string FPattern; // runs of '%' collapsed
    std::string FFirst;   // the literal of the simple shapes (the prefix for PrefixSuffix)
    std::string FSecond;  // the suffix of PrefixSuffix
};

// True when needle occurs in s (an empty needle always does).
bool ContainsText(std::string_view s, std::string_view needle);

// The general matcher: backtracks only to the last '%', so time is at most text length x pattern length.
bool LikeMatch(std::string_view s, std::string_view pattern);

} // namespace FilterLanguage
