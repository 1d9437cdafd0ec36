#include "support/FilterDialogBench.h"

#include "adapters/ZNB_Cfg.h"
#include "core/Nb_utils.h"
#include "support/StrUtils.h"

TFilterDialogBench::TFilterDialogBench() : FOldFilterFolder(FilterFolder) {
    NBConfig = std::make_unique<TNBConfig>(Board.Path());
    NBConfig->NBFolder = Board.Path();
    FilterFolder = Board.Path();
    const struct {
        int Severity;
        const char* Summary;
    } notices[] = {
        {1, "Disk full"}, {2, "CPU high"}, {3, "Disk slow"}, {4, "Backup failed"}, {4, "Disk gone"}};
    for (const auto& n : notices) {
        Notices.Append();
        TNoticeRecord& r = Notices.Buffer();
        r.SetString(nf_adpt_orig_key, std::string("K-") + n.Summary);
        r.SetString(nf_note_summary, n.Summary);
        r.SetInteger(nf_note_severity, n.Severity);
        Notices.Post();
    }
}

TFilterDialogBench::~TFilterDialogBench() {
    FilterFolder = FOldFilterFolder;
    NBConfig.reset();
}

std::string TFilterDialogBench::Line(const std::string& BoolOp, const std::string& LeftPar,
                                     const std::string& Field, const std::string& Op,
                                     const std::string& Value, const std::string& RightPar) {
    const char sep = '\x02';
    return BoolOp + sep + LeftPar + sep + Field + sep + Op + sep + Value + sep + RightPar;
}

std::string TFilterDialogBench::Data(std::initializer_list<std::string> Lines) {
    std::string data = "0";
    bool first = true;
    for (const std::string& line : Lines) {
        if (!first) data += '\x03';
        data += line;
        first = false;
    }
    return data;
}

void TFilterDialogBench::WriteFilter(const std::string& Name, const std::string& Data) const {
    WriteTextFile(Path(Name), Data);
}

std::string TFilterDialogBench::ReadFilter(const std::string& Name) const {
    return ReadTextFile(Path(Name));
}

bool TFilterDialogBench::HasFilter(const std::string& Name) const {
    return FileExists(Path(Name));
}
