// Replacing a file atomically keeps what the replaced file was (its mode, the link that named
// it), refuses what must not be replaced, writes any legal name, and leaves no temporary file
// behind, not even when the process is stopped mid-write.
#include "CliTestSupport.h"

#include "AtomicFile.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

std::vector<std::string> Entries(const fs::path& dir)
{
    std::vector<std::string> names;
    for (const auto& e : fs::directory_iterator(dir)) names.push_back(e.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

mode_t ModeOf(const fs::path& p)
{
    struct stat st {};
    ::stat(p.c_str(), &st);
    return st.st_mode & 07777;
}

}  // namespace

TEST(AtomicFile, KeepsTheModeFollowsLinksAndWritesEveryLegalName)
{
    const fs::path dir = clitest::ScratchDir("atomic-keeps");
    std::string error;
    // The mode of what is replaced survives.
    for (mode_t mode : {0600, 0640, 0755}) {
        clitest::WriteText(dir / "f", "old");
        ::chmod((dir / "f").c_str(), mode);
        ASSERT_TRUE(AtomicFile::Write((dir / "f").string(), "new", error)) << error;
        EXPECT_EQ(ModeOf(dir / "f"), mode);
        EXPECT_EQ(clitest::ReadText(dir / "f"), "new");
    }
    // A link stays a link; its target gets the bytes.
    clitest::WriteText(dir / "target", "old");
    fs::create_symlink("target", dir / "link");
    ASSERT_TRUE(AtomicFile::Write((dir / "link").string(), "through", error)) << error;
    EXPECT_TRUE(fs::is_symlink(dir / "link"));
    EXPECT_EQ(clitest::ReadText(dir / "target"), "through");
    // Names up to the longest a folder holds.
    for (std::size_t length : {1, 200, 248, 255}) {
        const fs::path p = dir / std::string(length, 'n');
        ASSERT_TRUE(AtomicFile::Write(p.string(), "x", error)) << length << ": " << error;
        EXPECT_EQ(clitest::ReadText(p), "x");
        fs::remove(p);
    }
    EXPECT_EQ(Entries(dir), (std::vector<std::string>{"f", "link", "target"}));
}

TEST(AtomicFile, RefusesWhatMustStayAndLeavesNothingBehind)
{
    const fs::path dir = clitest::ScratchDir("atomic-refuses");
    clitest::WriteText(dir / "readonly", "kept");
    ::chmod((dir / "readonly").c_str(), 0444);
    fs::create_directory(dir / "folder");
    const struct {
        std::string name;
        std::string reason;
    } cases[] = {
        {"readonly", "the file is read-only"},
        {"folder", "it is a directory"},
    };
    for (const auto& c : cases) {
        std::string error;
        EXPECT_FALSE(AtomicFile::Write((dir / c.name).string(), "new", error)) << c.name;
        EXPECT_NE(error.find(c.reason), std::string::npos) << error;
    }
    EXPECT_EQ(clitest::ReadText(dir / "readonly"), "kept");
    EXPECT_EQ(ModeOf(dir / "readonly"), 0444u);
    EXPECT_EQ(Entries(dir), (std::vector<std::string>{"folder", "readonly"}));
}

// A child writes past its file-size limit; the SIGXFSZ this raises is turned into a SIGTERM,
// which arrives exactly mid-write. The child must die of it with its temporary file removed.
TEST(AtomicFile, SignalMidWriteRemovesTheTemporaryFile)
{
    const fs::path dir = clitest::ScratchDir("atomic-signal");
    clitest::WriteText(dir / "scene.json", "old");
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        std::signal(SIGXFSZ, [](int) { std::raise(SIGTERM); });
        const rlimit limit{4096, 4096};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        std::string error;
        AtomicFile::Write((dir / "scene.json").string(), std::string(1 << 20, 'x'), error);
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
    EXPECT_EQ(Entries(dir), (std::vector<std::string>{"scene.json"}));
    EXPECT_EQ(clitest::ReadText(dir / "scene.json"), "old");
}
