#include "AtomicFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace serve {

namespace {

std::string Reason(const char* step) { return std::string(step) + ": " + std::strerror(errno); }

// Directory part of path ("." for a bare name), for the temporary and the directory sync.
std::string DirectoryOf(const std::string& path)
{
    const std::size_t slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    if (slash == 0) return "/";
    return path.substr(0, slash);
}

bool WriteAll(int fd, std::string_view data)
{
    std::size_t done = 0;
    // Each round writes at least one byte or fails, so the loop ends.
    while (done < data.size()) {
        const ssize_t n = ::write(fd, data.data() + done, data.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += static_cast<std::size_t>(n);
    }
    return true;
}

}  // namespace

bool WriteFileAtomically(const std::string& path, std::string_view data, std::string& error)
{
    if (path.empty()) {
        error = "no file name";
        return false;
    }
    std::string pattern = path + ".tmp-XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    const int fd = ::mkstemp(name.data());
    if (fd < 0) {
        error = Reason("cannot create a temporary file beside the scene");
        return false;
    }
    // The new file gets the old one's permissions when there is one, else rw-r--r--.
    struct stat st {};
    (void)::fchmod(fd, ::stat(path.c_str(), &st) == 0 ? (st.st_mode & 07777) : 0644);

    bool ok = WriteAll(fd, data);
    if (!ok) error = Reason("cannot write the scene");
    if (ok && ::fsync(fd) != 0) {
        ok = false;
        error = Reason("cannot flush the scene to disk");
    }
    if (::close(fd) != 0 && ok) {
        ok = false;
        error = Reason("cannot close the scene");
    }
    if (ok && ::rename(name.data(), path.c_str()) != 0) {
        ok = false;
        error = Reason("cannot replace the scene file");
    }
    if (!ok) {
        ::unlink(name.data());
        return false;
    }
    // Make the rename itself durable; failing here loses nothing already written.
    const int dir = ::open(DirectoryOf(path).c_str(), O_RDONLY | O_DIRECTORY);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return true;
}

}  // namespace serve
