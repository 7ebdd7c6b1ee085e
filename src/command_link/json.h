// rapidjson as the command link uses it, configured for the whole project by
// json/rapidjson_config.h.
#pragma once

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
