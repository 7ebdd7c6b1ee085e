// The port file through which the plug-in finds the command server: the port as decimal text
// and a newline, in `home`\AppData\Local\quorvel\Adobe\port, where `home` is what the plug-in
// reads as HOMEDRIVE followed by HOMEPATH. `home` is UTF-8, as the tools hold every path.
// Backslashes separate folders on every system.
#pragma once

#include <cstdint>
#include <string>

namespace command_server {

// The file's path as the plug-in builds it: `home` and the rest joined with nothing in between.
std::string PortFilePath(const std::string& home);

// Writes `port`, replacing an older file and making the folders as needed; false when the folder
// cannot be made or the file cannot be written.
bool WritePortFile(const std::string& home, uint16_t port);

}  // namespace command_server
