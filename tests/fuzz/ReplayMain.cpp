// Replays saved fuzz inputs through one target without libFuzzer: every file named on the command line, and
// every file of every folder named there (in name order; a missing folder counts as empty). A fault
// aborts inside the target, so the test fails on the input that shows it; the name of each input is
// printed first so that the failing one is the last name in the output.
#include "FuzzSupport.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> Inputs(int argc, char** argv) {
    std::vector<fs::path> files;
    for (int i = 1; i < argc; ++i) {
        const fs::path arg(argv[i]);
        std::error_code ec;
        if (fs::is_directory(arg, ec)) {
            std::vector<fs::path> inFolder;
            for (const auto& entry : fs::directory_iterator(arg, ec))
                if (entry.is_regular_file(ec)) inFolder.push_back(entry.path());
            std::sort(inFolder.begin(), inFolder.end());
            files.insert(files.end(), inFolder.begin(), inFolder.end());
        } else if (fs::exists(arg, ec)) {
            files.push_back(arg);
        }
    }
    return files;
}

} // namespace

int main(int argc, char** argv) {
    int replayed = 0;
    for (const fs::path& file : Inputs(argc, argv)) {
        std::ifstream in(file, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
        if (!in.good() && !in.eof()) {
            std::fprintf(stderr, "cannot read %s\n", file.c_str());
            return 1;
        }
        std::printf("%s\n", file.c_str());
        std::fflush(stdout);
        // A copy of exactly the input's size, so that a read past its end is seen by the sanitizers.
        std::vector<uint8_t> data(bytes.begin(), bytes.end());
        LLVMFuzzerTestOneInput(data.data(), data.size());
        ++replayed;
    }
    std::printf("%d inputs replayed\n", replayed);
    return 0;
}
