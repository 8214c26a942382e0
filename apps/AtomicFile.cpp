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
    bool ok = ::fchmod(fd, 0666 & ~mask) == 0;
    if (!ok) error = Reason("cannot set the file mode");
    if (ok && !(ok = WriteAll(fd, bytes))) error = Reason(("cannot write " + path).c_str());
    if (ok && !(ok = ::fsync(fd) == 0)) error = Reason(("cannot flush " + path).c_str());
    if (::close(fd) != 0 && ok) {
        ok = false;
        error = Reason(("cannot write " + path).c_str());
    }
    if (ok && !(ok = std::rename(name.data(), path.c_str()) == 0)) error = Reason(("cannot replace " + path).c_str());
    if (!ok) ::unlink(name.data());
    return ok;
}
