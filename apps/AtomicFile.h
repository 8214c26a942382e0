// AtomicFile: replaces a file's contents all at once, so that a reader (or a failed run)
// never sees a half-written or truncated file.
#pragma once

#include <string>
#include <string_view>

class AtomicFile {
public:
    // Writes bytes to a temporary file in path's folder, flushes it to disk and renames it
    // over path. True on success; otherwise false with a one-line reason, path untouched and
    // the temporary file removed.
    static bool Write(const std::string& path, std::string_view bytes, std::string& error);
};
