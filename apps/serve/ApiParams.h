// ApiParams: strict reading of the viewer API's query parameters. A value must be present
// (unless it has a default), given once, parse completely, be finite and lie in its range;
// a name the endpoint does not know is an error too. The first problem found is kept as the
// message of the 400 answer, so a handler reads everything and then asks Ok() once.
#pragma once

#include "Scene.h"

#include <httplib.h>
#include <nlohmann/json.hpp>

#include <initializer_list>
#include <string>
#include <string_view>

namespace serve {

// Largest image side the viewer draws, pixels: 8192 x 8192 ARGB is 256 MiB per surface.
inline constexpr int kMaxImageSide = 8192;
// Most pixels one image may have (4096 x 4096, 64 MiB of ARGB): a side may reach
// kMaxImageSide only while the other stays small.
inline constexpr long long kMaxImagePixels = Scene::kMaxPixels;
// Largest request body, bytes; a scene of hundreds of points is a few tens of kilobytes.
inline constexpr std::size_t kMaxBodyBytes = 1u << 20;
// Longest name of a state point, bytes of UTF-8.
inline constexpr std::size_t kMaxNameBytes = 200;

class QueryParams {
public:
    // allowed: every parameter name the endpoint accepts.
    QueryParams(const httplib::Params& params, std::initializer_list<std::string_view> allowed);

    bool Ok() const { return m_error.empty(); }
    const std::string& Error() const { return m_error; }

    // A required integer within [min, max]; min on failure.
    int Int(std::string_view name, int min, int max);
    // A required finite number within [min, max]; min on failure.
    double Double(std::string_view name, double min, double max);
    // An optional value that must be one of choices; fallback when absent.
    std::string Choice(std::string_view name, std::initializer_list<std::string_view> choices,
                       std::string_view fallback);
    // An optional flag "0" or "1"; false when absent.
    bool Flag(std::string_view name);

    // w and h of an image, each 1..kMaxImageSide.
    void ImageSize(int& w, int& h);
    // Whether name is given at all.
    bool Has(std::string_view name) const;

private:
    // The single value of name, or null (with the error set when it is given twice).
    const std::string* Find(std::string_view name);
    void Fail(std::string message);

    const httplib::Params& m_params;
    std::string m_error;
};

// The same checks for a JSON object body: it must parse, be an object and hold only known
// keys; values must have the right JSON type and range.
class JsonBody {
public:
    JsonBody(const std::string& body, std::initializer_list<std::string_view> allowed);

    bool Ok() const { return m_error.empty(); }
    const std::string& Error() const { return m_error; }

    // A required integer within [min, max]; min on failure.
    int Int(std::string_view name, int min, int max);
    // An optional string of at most maxBytes bytes; empty when absent.
    std::string String(std::string_view name, std::size_t maxBytes);

private:
    const nlohmann::json* Find(std::string_view name) const;
    void Fail(std::string message);

    nlohmann::json m_doc;
    std::string m_error;
};

}  // namespace serve
