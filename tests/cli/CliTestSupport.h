// What the tests of the kygraph program share: running the built binary, scratch files, and
// the image comparison of the golden tests.
#pragma once

#include "support/ImageCompare.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace clitest {

inline const std::string kBinary = std::string(KY_BINARY_DIR) + "/bin/kygraph";
inline const std::string kExamples = std::string(KY_SOURCE_DIR) + "/examples/scenes";

// A folder of its own under the build tree for one test, emptied first. Under the running
// test's own name, since ctest runs tests that share a helper (and its name) in parallel.
inline std::filesystem::path ScratchDir(const std::string& name)
{
    const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
    const std::string owner = test ? std::string(test->test_suite_name()) + "." + test->name() : "no-test";
    const std::filesystem::path dir = std::filesystem::path(KY_BINARY_DIR) / "cli-test" / owner / name;
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    return dir;
}

inline std::string ReadText(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

inline void WriteText(const std::filesystem::path& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

struct Run {
    int status = -1;
    std::string out;
    std::string err;
};

inline std::string Quote(const std::string& s)
{
    std::string q = "'";
    for (char c : s) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

// Runs kygraph with args in dir and collects its exit status and both streams.
inline Run RunKygraph(const std::vector<std::string>& args, const std::filesystem::path& dir)
{
    // Under the leak sanitizer the program would end its stderr with a table of suppressions.
    std::string cmd = "cd " + Quote(dir.string()) + " && LSAN_OPTIONS=\"$LSAN_OPTIONS:print_suppressions=0\" " +
                      Quote(kBinary);
    for (const std::string& a : args) cmd += " " + Quote(a);
    cmd += " >.stdout 2>.stderr";
    Run r;
    const int raw = std::system(cmd.c_str());
    r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    r.out = ReadText(dir / ".stdout");
    r.err = ReadText(dir / ".stderr");
    std::filesystem::remove(dir / ".stdout");
    std::filesystem::remove(dir / ".stderr");
    return r;
}

}  // namespace clitest
