// AtomicFile: replaces a file's contents all at once, so that a reader (or a failed run)
// never sees a half-written or truncated file.
#pragma once

#include <string>
#include <string_view>

class AtomicFile {
public:
    // Writes bytes to a temporary file in the target's folder, flushes it to disk and renames
    // it over the target. True on success; otherwise false with a one-line reason, the target
    // untouched and the temporary file removed.
    //
    // - A symbolic link is followed: its final target is replaced and the link stays a link.
    // - A file that exists keeps its permission bits (and its owner, where allowed); a new one
    //   gets 0666 less the umask.
    // - A read-only file (no write bit set, or not writable by this user) is refused, as is
    //   anything that is not a regular file.
    // - The temporary name is short, so any legal file name can be written.
    // - SIGINT or SIGTERM during the write remove the temporary file before the process ends
    //   (when the signal has its default action; a host's own handler is left alone).
    // Writes are serialised within the process.
    static bool Write(const std::string& path, std::string_view bytes, std::string& error);
};
