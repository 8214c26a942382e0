#include "AtomicFile.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <vector>

#include <climits>
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string Reason(const std::string& what) { return what + ": " + std::strerror(errno); }

bool WriteAll(int fd, std::string_view bytes)
{
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += static_cast<size_t>(n);
    }
    return true;
}

// The temporary file of the write in progress, for the signal handler: a fixed buffer, since
// a handler may not allocate. Written only with SIGINT and SIGTERM blocked.
char g_pending[PATH_MAX + 1];
volatile std::sig_atomic_t g_hasPending = 0;

constexpr std::array<int, 2> kStopSignals = {SIGINT, SIGTERM};

extern "C" void RemovePendingAndDie(int sig)
{
    if (g_hasPending) ::unlink(g_pending);
    std::signal(sig, SIG_DFL);
    std::raise(sig);
}

// For the duration of one write: a stop signal with its default action removes the
// temporary file first, then ends the process as it would have.
class StopSignalGuard {
public:
    StopSignalGuard()
    {
        for (size_t i = 0; i < kStopSignals.size(); ++i) {
            struct sigaction current {};
            ::sigaction(kStopSignals[i], nullptr, &current);
            if (current.sa_handler != SIG_DFL || (current.sa_flags & SA_SIGINFO)) continue;
            struct sigaction ours {};
            ours.sa_handler = RemovePendingAndDie;
            sigemptyset(&ours.sa_mask);
            m_installed[i] = ::sigaction(kStopSignals[i], &ours, &m_previous[i]) == 0;
        }
    }
    ~StopSignalGuard()
    {
        for (size_t i = 0; i < kStopSignals.size(); ++i)
            if (m_installed[i]) ::sigaction(kStopSignals[i], &m_previous[i], nullptr);
    }
    // Records (or, with null, forgets) the temporary file without a signal in between.
    static void SetPending(const char* name)
    {
        sigset_t block, old;
        sigemptyset(&block);
        for (int sig : kStopSignals) sigaddset(&block, sig);
        pthread_sigmask(SIG_BLOCK, &block, &old);
        g_hasPending = 0;
        if (name) {
            std::strncpy(g_pending, name, sizeof g_pending - 1);
            g_hasPending = 1;
        }
        pthread_sigmask(SIG_SETMASK, &old, nullptr);
    }

private:
    std::array<struct sigaction, kStopSignals.size()> m_previous{};
    std::array<bool, kStopSignals.size()> m_installed{};
};

// The file a write to path lands in: path itself, or the final target of a symbolic link.
bool ResolveTarget(const std::string& path, std::filesystem::path& target, std::string& error)
{
    std::error_code ec;
    target = path;
    if (!std::filesystem::is_symlink(target, ec)) return true;
    target = std::filesystem::weakly_canonical(target, ec);
    if (ec) {
        error = "cannot follow the link " + path + ": " + ec.message();
        return false;
    }
    return true;
}

}  // namespace

bool AtomicFile::Write(const std::string& path, std::string_view bytes, std::string& error)
{
    static std::mutex oneAtATime;
    std::lock_guard<std::mutex> lock(oneAtATime);
    error.clear();
    if (path.empty()) {
        error = "no output file named";
        return false;
    }
    std::filesystem::path target;
    if (!ResolveTarget(path, target, error)) return false;

    // What is there decides the mode of what replaces it, and whether it may be replaced.
    struct stat existing {};
    const bool exists = ::stat(target.c_str(), &existing) == 0;
    if (exists) {
        if (S_ISDIR(existing.st_mode)) {
            error = "cannot write " + path + ": it is a directory";
            return false;
        }
        if (!S_ISREG(existing.st_mode)) {
            error = "cannot write " + path + ": it is not a regular file";
            return false;
        }
        // Root may write anything; a file without write bits is still meant to stay as it is.
        if ((existing.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0 || ::access(target.c_str(), W_OK) != 0) {
            error = "cannot write " + path + ": the file is read-only";
            return false;
        }
    }
    const mode_t mask = ::umask(0);
    ::umask(mask);
    const mode_t mode = exists ? (existing.st_mode & 07777) : (0666 & ~mask);

    const std::filesystem::path dir = target.has_parent_path() ? target.parent_path() : std::filesystem::path(".");
    // A short name of its own: "." + the target's name + a suffix would pass NAME_MAX for
    // long names.
    std::string tmpl = (dir / ".kygraph-XXXXXX").string();
    std::vector<char> name(tmpl.begin(), tmpl.end());
    name.push_back('\0');

    StopSignalGuard guard;
    sigset_t block, old;
    sigemptyset(&block);
    for (int sig : kStopSignals) sigaddset(&block, sig);
    pthread_sigmask(SIG_BLOCK, &block, &old);
    const int fd = ::mkstemp(name.data());
    if (fd >= 0) StopSignalGuard::SetPending(name.data());
    pthread_sigmask(SIG_SETMASK, &old, nullptr);
    if (fd < 0) {
        error = Reason("cannot create a file in " + dir.string());
        return false;
    }

    // Each step runs only when the ones before succeeded; the first failure names itself.
    auto step = [&](bool done, const std::string& what) {
        if (!done && error.empty()) error = Reason(what);
        return done;
    };
    bool ok = step(::fchmod(fd, mode) == 0, "cannot set the mode of " + path);
    if (ok && exists && ::fchown(fd, existing.st_uid, existing.st_gid) != 0) {
        // Keeping the owner needs privileges; without them the file becomes the writer's.
    }
    ok = ok && step(WriteAll(fd, bytes), "cannot write " + path);
    ok = ok && step(::fsync(fd) == 0, "cannot flush " + path);
    ok = step(::close(fd) == 0, "cannot write " + path) && ok;
    ok = ok && step(std::rename(name.data(), target.c_str()) == 0, "cannot replace " + path);
    if (!ok) ::unlink(name.data());
    StopSignalGuard::SetPending(nullptr);
    return ok;
}
