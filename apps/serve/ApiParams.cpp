#include "ApiParams.h"

#include "DecimalNumber.h"

#include <charconv>
#include <cstdint>
#include <cmath>

namespace serve {

QueryParams::QueryParams(const httplib::Params& params, std::initializer_list<std::string_view> allowed)
    : m_params(params)
{
    for (const auto& [name, value] : params) {
        bool known = false;
        for (std::string_view a : allowed) known = known || a == name;
        if (!known) {
            Fail("unknown parameter '" + name + "'");
            break;
        }
    }
}

void QueryParams::Fail(std::string message)
{
    if (m_error.empty()) m_error = std::move(message);
}

const std::string* QueryParams::Find(std::string_view name)
{
    const auto range = m_params.equal_range(std::string(name));
    if (range.first == range.second) return nullptr;
    if (std::next(range.first) != range.second) {
        Fail("parameter '" + std::string(name) + "' is given more than once");
        return nullptr;
    }
    return &range.first->second;
}

int QueryParams::Int(std::string_view name, int min, int max)
{
    const std::string* text = Find(name);
    long long v = 0;
    if (!text) {
        if (m_params.count(std::string(name)) == 0) Fail("missing parameter '" + std::string(name) + "'");
        return min;
    }
    if (!DecimalNumber::ParseInt(*text, v)) {
        Fail("parameter '" + std::string(name) + "' must be an integer");
        return min;
    }
    if (v < min || v > max) {
        Fail("parameter '" + std::string(name) + "' must lie within " + std::to_string(min) + ".." +
             std::to_string(max));
        return min;
    }
    return static_cast<int>(v);
}

double QueryParams::Double(std::string_view name, double min, double max)
{
    const std::string* text = Find(name);
    double v = 0.0;
    if (!text) {
        if (m_params.count(std::string(name)) == 0) Fail("missing parameter '" + std::string(name) + "'");
        return min;
    }
    if (!DecimalNumber::Parse(*text, v)) {
        Fail("parameter '" + std::string(name) + "' must be a finite number");
        return min;
    }
    if (v < min || v > max) {
        Fail("parameter '" + std::string(name) + "' is out of range");
        return min;
    }
    return v;
}

std::string QueryParams::Choice(std::string_view name, std::initializer_list<std::string_view> choices,
                                std::string_view fallback)
{
    const std::string* text = Find(name);
    if (!text) return std::string(fallback);
    for (std::string_view c : choices)
        if (c == *text) return *text;
    std::string list;
    for (std::string_view c : choices) list += (list.empty() ? "" : ", ") + std::string(c);
    Fail("parameter '" + std::string(name) + "' must be one of " + list);
    return std::string(fallback);
}

bool QueryParams::Flag(std::string_view name)
{
    const std::string* text = Find(name);
    if (!text) return false;
    if (*text == "0" || *text == "1") return *text == "1";
    Fail("parameter '" + std::string(name) + "' must be 0 or 1");
    return false;
}

void QueryParams::ImageSize(int& w, int& h)
{
    w = Int("w", 1, kMaxImageSide);
    h = Int("h", 1, kMaxImageSide);
}

bool QueryParams::Has(std::string_view name) const { return m_params.count(std::string(name)) != 0; }

JsonBody::JsonBody(const std::string& body, std::initializer_list<std::string_view> allowed)
    : m_doc(nlohmann::json::parse(body, nullptr, false))
{
    if (m_doc.is_discarded()) {
        Fail("the request body is not JSON");
    } else if (!m_doc.is_object()) {
        Fail("the request body must be a JSON object");
    } else {
        for (const auto& item : m_doc.items()) {
            bool known = false;
            for (std::string_view a : allowed) known = known || a == item.key();
            if (!known) {
                Fail("unknown field '" + item.key() + "'");
                break;
            }
        }
    }
}

void JsonBody::Fail(std::string message)
{
    if (m_error.empty()) m_error = std::move(message);
}

const nlohmann::json* JsonBody::Find(std::string_view name) const
{
    if (!m_doc.is_object()) return nullptr;
    const auto it = m_doc.find(std::string(name));
    return it == m_doc.end() ? nullptr : &*it;
}

int JsonBody::Int(std::string_view name, int min, int max)
{
    const nlohmann::json* v = Find(name);
    if (!v) {
        Fail("missing field '" + std::string(name) + "'");
        return min;
    }
    if (!v->is_number_integer()) {
        Fail("field '" + std::string(name) + "' must be an integer");
        return min;
    }
    // Unsigned values above the signed range compare as such, not wrapped.
    const bool big = v->is_number_unsigned() && v->get<std::uint64_t>() > static_cast<std::uint64_t>(max);
    const long long n = big ? static_cast<long long>(max) + 1 : v->get<long long>();
    if (big || n < min || n > max) {
        Fail("field '" + std::string(name) + "' must lie within " + std::to_string(min) + ".." + std::to_string(max));
        return min;
    }
    return static_cast<int>(n);
}

std::string JsonBody::String(std::string_view name, std::size_t maxBytes)
{
    const nlohmann::json* v = Find(name);
    if (!v) return {};
    if (!v->is_string()) {
        Fail("field '" + std::string(name) + "' must be a string");
        return {};
    }
    const std::string& s = v->get_ref<const std::string&>();
    if (s.size() > maxBytes) {
        Fail("field '" + std::string(name) + "' is longer than " + std::to_string(maxBytes) + " bytes");
        return {};
    }
    return s;
}

}  // namespace serve
