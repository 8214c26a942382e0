// AtomicFile: replaces a file's contents so that a reader sees either the old file or the new
// one, never a part: the bytes go to a temporary file beside it, are flushed to disk and then
// renamed over it. A failed write leaves the old file untouched and no temporary behind.
#pragma once

#include <string>
#include <string_view>

namespace serve {

// Writes data to path atomically. false with a reason in error when any step fails.
bool WriteFileAtomically(const std::string& path, std::string_view data, std::string& error);

}  // namespace serve
