#include "AtomicFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string Reason(const char* what) { return std::string(what) + ": " + std::strerror(errno); }

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

}  // namespace

bool AtomicFile::Write(const std::string& path, std::string_view bytes, std::string& error)
{
    if (path.empty()) {
        error = "no output file named";
        return false;
    }
    const std::filesystem::path target(path);
    std::error_code ec;
    if (std::filesystem::is_directory(target, ec)) {
        error = "cannot write " + path + ": it is a directory";
        return false;
    }
    const std::filesystem::path dir = target.has_parent_path() ? target.parent_path() : std::filesystem::path(".");
    std::string tmpl = (dir / ("." + target.filename().string() + ".XXXXXX")).string();
    std::vector<char> name(tmpl.begin(), tmpl.end());
    name.push_back('\0');
    const int fd = ::mkstemp(name.data());
    if (fd < 0) {
        error = Reason(("cannot create a file in " + dir.string()).c_str());
        return false;
    }
    // mkstemp makes the file private; give it the mode a newly created file would have.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    // Each step runs only when the ones before succeeded; the first failure names itself.
    auto step = [&](bool done, const std::string& what) {
        if (!done && error.empty()) error = Reason(what.c_str());
        return done;
    };
    error.clear();
    bool ok = step(::fchmod(fd, 0666 & ~mask) == 0, "cannot set the mode of " + path);
    ok = ok && step(WriteAll(fd, bytes), "cannot write " + path);
    ok = ok && step(::fsync(fd) == 0, "cannot flush " + path);
    ok = step(::close(fd) == 0, "cannot write " + path) && ok;
    ok = ok && step(std::rename(name.data(), path.c_str()) == 0, "cannot replace " + path);
    if (!ok) ::unlink(name.data());
    return ok;
}
