// Checks a grid view against the brute-force answer: the store's visible rows (narrowed, if asked) sorted by
// the plain comparison, every position and key, and the nodes of a grouped walk built row by row.
#pragma once

#include "core/TNoticeGridView.h"
#include "core/TNoticeRowOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

// A narrowing's plain answer (the quick search's): whether a visible row is shown; empty: every one is.
using TShownRow = std::function<bool(const TNoticeRecord&)>;

// What the view must show: the store's visible rows that shown passes, sorted by the plain comparison.
inline std::vector<const TNoticeRecord*> ExpectedRows(const TNoticeGridView& view, const TShownRow& shown) {
    std::vector<TSortColumn> cols = view.GroupColumns();
    cols.insert(cols.end(), view.SortColumns().begin(), view.SortColumns().end());
    std::vector<const TNoticeRecord*> rows;
    view.Store().ForEachRow([&](const TNoticeRecord& r) {
        if (!shown || shown(r)) rows.push_back(&r);
    });
    std::sort(rows.begin(), rows.end(), [&](const TNoticeRecord* a, const TNoticeRecord* b) {
        return CompareNoticeRows(*a, *b, cols) < 0;
    });
    return rows;
}

inline int32_t Key(const TNoticeRecord* r) {
    return r->AsInteger(nf_nb_internal_key);
}

// The nodes a grouped grid walks, built the plain way: a heading opens wherever a row differs from the one
// before it on the group columns up to the heading's level.
inline std::vector<TGridNode> ExpectedNodes(const TNoticeGridView& view,
                                            const std::vector<const TNoticeRecord*>& rows) {
    const std::vector<TSortColumn>& groups = view.GroupColumns();
    const int levels = static_cast<int>(groups.size());
    std::vector<TGridNode> nodes;
    for (size_t i = 0; i < rows.size(); ++i) {
        for (int level = 0; level < levels; ++level) {
            if (i > 0 && CompareNoticeColumns(*rows[i - 1], *rows[i], groups.data(), size_t(level) + 1) == 0)
                continue;
            size_t end = i + 1;
            while (end < rows.size() &&
                   CompareNoticeColumns(*rows[end], *rows[i], groups.data(), size_t(level) + 1) == 0)
                ++end;
            nodes.push_back(
                {true, level, groups[size_t(level)].Field, rows[i], int32_t(i), int32_t(end - i)});
        }
        nodes.push_back({false, levels, nf_nb_internal_key, rows[i], int32_t(i), 1});
    }
    return nodes;
}

inline void ExpectViewMatches(const TNoticeGridView& view, const TShownRow& shownRow = {}) {
    const std::vector<const TNoticeRecord*> rows = ExpectedRows(view, shownRow);
    ASSERT_EQ(view.RowCount(), int32_t(rows.size()));
    for (size_t i = 0; i < rows.size(); ++i) {
        ASSERT_EQ(view.KeyAt(int32_t(i)), Key(rows[i])) << "position " << i;
        ASSERT_EQ(view.RowAt(int32_t(i)), rows[i]);
        ASSERT_EQ(view.PositionOf(Key(rows[i])), int32_t(i));
    }
    EXPECT_EQ(view.RowAt(int32_t(rows.size())), nullptr);
    EXPECT_EQ(view.KeyAt(-1), 0);
    // Keys not in the view: deleted, filtered out, never given.
    std::vector<bool> shown(size_t(view.Store().NextKey()) + 1, false);
    for (const TNoticeRecord* r : rows)
        shown[size_t(Key(r))] = true;
    for (int32_t key = 0; key < int32_t(shown.size()); ++key) {
        if (!shown[size_t(key)]) {
            ASSERT_EQ(view.PositionOf(key), -1) << "key " << key;
        }
    }

    const std::vector<TGridNode> expected = ExpectedNodes(view, rows);
    std::vector<TGridNode> walked;
    view.WalkNodes([&](const TGridNode& n) {
        walked.push_back(n);
        return true;
    });
    ASSERT_EQ(walked.size(), expected.size());
    for (size_t i = 0; i < walked.size(); ++i) {
        const TGridNode &w = walked[i], &e = expected[i];
        ASSERT_TRUE(w.IsGroup == e.IsGroup && w.Level == e.Level && w.Row == e.Row &&
                    w.Position == e.Position && w.RowCount == e.RowCount &&
                    (!w.IsGroup || w.Field == e.Field))
            << "node " << i;
        if (!w.IsGroup) continue;
        int32_t first = -1, count = -1;
        view.GroupRange(w.Level, w.Position + w.RowCount - 1, first, count); // asked from its last row
        ASSERT_EQ(first, w.Position);
        ASSERT_EQ(count, w.RowCount);
    }
}
