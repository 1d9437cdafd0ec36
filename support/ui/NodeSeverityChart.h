// The summary window's chart (NodeSeverityChart): one horizontal bar per console node, stacked by
// severity in the severity colours (core/ui/NbColors.h), bars scaled to the busiest node, its total at the
// end, and a legend on top. It shows what it is given; the summary window gives it the counters it shows
// in its table at every refresh.
// Owned by its parent (the summary window). GUI thread only. Nothing throws.
#pragma once

#include <QStringList>
#include <QWidget>

#include <vector>

class TNodeSeverityChart : public QWidget {
    Q_OBJECT
public:
    explicit TNodeSeverityChart(QWidget* Parent = nullptr);

    // Columns are the severity texts ("Normal" ... "Critical": coloured as severities 1 to 4, any other
    // in grey), Counts[node][column] the counters (negative ones draw as 0).
    void SetCounts(const QStringList& Nodes, const QStringList& Columns,
                   const std::vector<std::vector<int>>& Counts);
    const QStringList& Nodes() const { return FNodes; }
    int Total(int Node) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* Event) override;

private:
    QStringList FNodes, FColumns;
    std::vector<std::vector<int>> FCounts;
    std::vector<int> FSeverity; // per column: 1 to 4, or 0 for another text
};
