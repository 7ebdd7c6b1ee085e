// The two requests that the maker's application sends to the plug-in, as JSON text without the
// "###" that ends them on the wire.
#pragma once

#include <string>

namespace command_server {

// {"requestId":`request_id`,"type":"get_media_info","request":{"filepath":`filepath`}}
std::string MediaInfoRequest(const std::string& request_id, const std::string& filepath);

// {"requestId":`request_id`,"type":"request_update_param","request":{"filepath":`filepath`}}
std::string UpdateParamRequest(const std::string& request_id, const std::string& filepath);

}  // namespace command_server
