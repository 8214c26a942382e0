// WebAssets: the viewer's page (HTML, CSS, JS from apps/serve/web), embedded into the program
// at build time so that the viewer needs no file and no network besides itself.
#pragma once

#include <string_view>

namespace serve {

struct WebAsset {
    std::string_view path;         // URL path, "/index.html"
    std::string_view contentType;  // MIME type with charset
    std::string_view body;         // the file's bytes
};

// The asset served at path ("/" is the page itself); null for any other path.
const WebAsset* FindWebAsset(std::string_view path);

}  // namespace serve
