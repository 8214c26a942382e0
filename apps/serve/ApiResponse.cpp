#include "ApiResponse.h"

#include "HostMessages.h"

namespace serve {

void SendJson(httplib::Response& res, int status, const nlohmann::json& body)
{
    res.status = status;
    res.set_header("Cache-Control", "no-store");
    res.set_content(body.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace),
                    "application/json; charset=utf-8");
}

void SendError(httplib::Response& res, int status, const std::string& message)
{
    SendJson(res, status, nlohmann::json{{"error", HostMessages::Localize(message)}});
}

}  // namespace serve
