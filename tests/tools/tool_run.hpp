// Running the built tpxconv from a test: a scratch folder per test program,
// the exit code and standard error of a run, whole-file reads and writes.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace tooltest {

using Bytes = std::vector<uint8_t>;

inline const std::string& scratch() {
    static const std::string dir = [] {
        char pattern[] = "/tmp/tpxconv-test-XXXXXX";
        const char* made = mkdtemp(pattern);
        return std::string(made ? made : "/tmp");
    }();
    return dir;
}

inline void removeScratch() {
    std::error_code ignored;
    std::filesystem::remove_all(scratch(), ignored);
}

// The scratch folder goes when the tests are done.
class ScratchCleanup : public ::testing::Environment {
public:
    void TearDown() override { removeScratch(); }
};
inline ::testing::Environment* const kScratchCleanup = ::testing::AddGlobalTestEnvironment(new ScratchCleanup);

inline std::string path(const std::string& name) { return scratch() + "/" + name; }

struct Result {
    int code;
    std::string err;  // standard error
};

// Runs a shell command line, standard output discarded, standard error kept.
inline Result shell(const std::string& command) {
    const std::string errFile = path("stderr.txt");
    const int status = std::system((command + " >/dev/null 2>" + errFile).c_str());
    std::ifstream in(errFile);
    std::string err((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::remove(errFile.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, err};
}

inline Result tpxconv(const std::string& args) { return shell(std::string(TPXCONV_PATH) + " " + args); }

inline Bytes readFile(const std::string& p) {
    std::ifstream in(p, std::ios::binary);
    return Bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

inline void writeFile(const std::string& p, const Bytes& b) {
    std::ofstream(p, std::ios::binary).write(reinterpret_cast<const char*>(b.data()), std::streamsize(b.size()));
}

// Names in the scratch folder (temporary files of tpxconv start with a dot).
inline std::vector<std::string> scratchNames() {
    std::vector<std::string> names;
    for (const auto& e : std::filesystem::directory_iterator(scratch())) names.push_back(e.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace tooltest
