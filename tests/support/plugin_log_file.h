// Where the plug-in writes Plugin.log, and what it holds.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

// <profile>/AppData/Local/quorvel/Adobe.
std::filesystem::path PluginLogFolder(const std::filesystem::path& profile);

// Plugin.log under `profile` and the files rotation moved aside, oldest first: their time-stamped
// names sort in time, and before "Plugin.log". The port file beside them is not among them.
std::vector<std::filesystem::path> PluginLogFiles(const std::filesystem::path& profile);

// Everything in Plugin.log under `profile`; empty when there is none.
std::string PluginLogText(const std::filesystem::path& profile);

// The profile folder the plug-in logs into now: USERPROFILE, which the test main points at a
// folder of the test program's own.
std::filesystem::path CurrentProfile();
