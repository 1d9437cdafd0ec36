// Rows for an export that do not come from the grid: a vector of records, or a store's rows in key order
// (those its filter passes). For tools, tests and benchmarks. Both only read; the records or the store must
// outlive the object and stay unchanged while an export reads them. Header-only.
#pragma once

#include "core/TNoticeStore.h"
#include "reports/GridExport.h"

#include <vector>

class TRecordExportRows : public IExportRows {
public:
    explicit TRecordExportRows(const std::vector<TNoticeRecord>& Records) : FRecords(Records) {}
    int32_t Count() const override { return static_cast<int32_t>(FRecords.size()); }
    const TNoticeRecord* Row(int32_t Index) const override { return &FRecords[static_cast<size_t>(Index)]; }

private:
    const std::vector<TNoticeRecord>& FRecords;
};

class TStoreExportRows : public IExportRows {
public:
    explicit TStoreExportRows(const TNoticeStore& Store) : FStore(Store) {}
    int32_t Count() const override { return FStore.RecordCount(); }
    const TNoticeRecord* Row(int32_t Index) const override { return FStore.RowAt(Index + 1); }

private:
    const TNoticeStore& FStore;
};
