// ApiResponse: how the viewer answers: JSON bodies (errors as {"error": message}) and the
// status codes of the API.
#pragma once

#include <httplib.h>
#include <nlohmann/json.hpp>

#include <string>

namespace serve {

// A JSON body with the given status. Invalid UTF-8 in strings is replaced, never thrown.
void SendJson(httplib::Response& res, int status, const nlohmann::json& body);
// {"error": message} with the given status (400 for bad input).
void SendError(httplib::Response& res, int status, const std::string& message);

}  // namespace serve
