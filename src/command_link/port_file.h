// The command server's port file, %HOMEDRIVE%%HOMEPATH%\AppData\Local\quorvel\Adobe\port, which the
// maker's application writes and the plug-in only reads.
#pragma once

#include <string>

// Copies the file's first line, at most 31 characters, into `out`. False, leaving `out` alone,
// when HOMEDRIVE or HOMEPATH is not set (logged) or the file cannot be opened (silent).
bool ReadPortFile(std::string& out);
