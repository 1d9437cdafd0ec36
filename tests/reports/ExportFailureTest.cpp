// An export that cannot finish leaves no file behind and any older file as it was, and says why.
#include "ExportReadBack.h"

#include "platform/FileLock.h"
#include "reports/ExportJob.h"
#include "reports/ExportRows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace {

std::vector<std::string> FolderEntries(const std::string& Folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(Folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

size_t OpenDescriptors() {
    return static_cast<size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

class TCancelAfter : public IExportProgress {
public:
    explicit TCancelAfter(int Calls) : FCalls(Calls) {}
    bool Progress(int32_t, int32_t) override { return --FCalls > 0; }

private:
    int FCalls;
};

class ExportFailure : public ::testing::TestWithParam<const char*> {
protected:
    std::string Target() const { return Folder / (std::string("notices") + GetParam()); }
    TTempFolder Folder;
    const std::vector<TNoticeRecord> Rows = NumberedNotices(20000);
};

TEST_P(ExportFailure, AMissingFolderIsAnErrorNamingTheFile) {
    const std::string file = Folder / ("missing/notices" + std::string(GetParam()));
    try {
        ExportGrid(KeySummaryCount(), TRecordExportRows(Rows), file);
        FAIL() << "no error";
    } catch (const EExportError& e) {
        EXPECT_EQ(e.Message(), "Cannot create file " + file + ": No such file or directory");
    }
    EXPECT_TRUE(FolderEntries(Folder.Path()).empty());
}

// The temporary file is the full-disk device, so every write fails the way it does on a full disk.
TEST_P(ExportFailure, AFullDiskLeavesTheOlderFileAndNoTemporaryFile) {
    WriteTextFile(Target(), "older");
    const size_t descriptors = OpenDescriptors();
    TExportOptions options;
    options.MakeTemporary = [](std::string& Template) {
        Template.replace(Template.size() - 6, 6, "diskfull");
        if (::symlink("/dev/full", Template.c_str()) != 0) return -1;
        return ::open(Template.c_str(), O_WRONLY | O_CLOEXEC);
    };
    try {
        ExportGridWith(KeySummaryCount(), TRecordExportRows(Rows), Target(), nullptr, options);
        FAIL() << "no error";
    } catch (const EExportError& e) {
        EXPECT_EQ(e.Message(), "Cannot create file " + Target() + ": No space left on device");
    }
    EXPECT_EQ(ReadTextFile(Target()), "older");
    EXPECT_EQ(FolderEntries(Folder.Path()), std::vector<std::string>{"notices" + std::string(GetParam())});
    EXPECT_EQ(OpenDescriptors(), descriptors);
}

TEST_P(ExportFailure, ACancelLeavesTheOlderFileAndNoTemporaryFile) {
    WriteTextFile(Target(), "older");
    const size_t descriptors = OpenDescriptors();
    TCancelAfter cancel(3);
    EXPECT_THROW(ExportGrid(KeySummaryCount(), TRecordExportRows(Rows), Target(), &cancel), EExportCancelled);
    EXPECT_EQ(ReadTextFile(Target()), "older");
    EXPECT_EQ(FolderEntries(Folder.Path()), std::vector<std::string>{"notices" + std::string(GetParam())});
    EXPECT_EQ(OpenDescriptors(), descriptors);
}

TEST_P(ExportFailure, AFileLockedByAnotherProcessIsLeftAlone) {
    WriteTextFile(Target(), "older");
    TExclusiveFileLock other(Target()); // another open file: to the lock it is another process
    ASSERT_TRUE(other.Locked());
    try {
        ExportGrid(KeySummaryCount(), TRecordExportRows(Rows), Target());
        FAIL() << "no error";
    } catch (const EExportError& e) {
        EXPECT_EQ(e.Message(), "Cannot create file " + Target() + ": the file is locked by another process");
    }
    EXPECT_EQ(ReadTextFile(Target()), "older");
    EXPECT_EQ(FolderEntries(Folder.Path()).size(), 1u);
}

TEST_P(ExportFailure, AFolderInTheWayIsAnError) {
    std::filesystem::create_directory(Target());
    EXPECT_THROW(ExportGrid(KeySummaryCount(), TRecordExportRows(Rows), Target()), EExportError);
    EXPECT_TRUE(std::filesystem::is_directory(Target()));
    EXPECT_EQ(FolderEntries(Folder.Path()).size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Formats, ExportFailure, ::testing::Values(".xls", ".xlsx", ".csv"));

class TProgressLog : public IExportProgress {
public:
    bool Progress(int32_t Done, int32_t Total) override {
        Calls.push_back({Done, Total});
        return true;
    }
    std::vector<std::pair<int32_t, int32_t>> Calls;
};

TEST(ExportProgress, IsToldEverySoManyRowsAndAtTheEnd) {
    TTempFolder folder;
    const std::vector<TNoticeRecord> rows = NumberedNotices(10000);
    TProgressLog log;
    ExportGrid(KeySummaryCount(), TRecordExportRows(rows), folder / "p.csv", &log);
    using P = std::pair<int32_t, int32_t>;
    EXPECT_EQ(log.Calls, (std::vector<P>{{0, 10000}, {4096, 10000}, {8192, 10000}, {10000, 10000}}));
}

TEST(ExportFormat, FollowsTheFileNameEndingInAnyCase) {
    const std::pair<const char*, TExportFormat> cases[] = {
        {"a.xlsx", TExportFormat::efXlsx},   {"/x/A.XLSX", TExportFormat::efXlsx},
        {"a.csv", TExportFormat::efCsv},     {"a.CsV", TExportFormat::efCsv},
        {"a.xls", TExportFormat::efXls},     {"a.txt", TExportFormat::efXls},
        {"noext", TExportFormat::efXls},     {"/x.csv/noext", TExportFormat::efXls},
        {"a.xlsx.bak", TExportFormat::efXls}};
    for (const auto& [name, format] : cases)
        EXPECT_EQ(ExportFormatFor(name), format) << name;
}

} // namespace
