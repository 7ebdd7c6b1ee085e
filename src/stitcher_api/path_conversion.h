// Conversions of the host's wide (UTF-16) paths into the narrow strings that the stitching library
// and the rest of the plug-in use. The first four converted bytes are dropped on purpose: the host
// hands long paths with the "\\?\" prefix, which they remove.
#pragma once

#include <string>

// To the system ANSI code page; characters it lacks become its default character.
std::string NarrowPath(const char16_t* wide);

// To UTF-8; every character is kept.
std::string Utf8Path(const char16_t* wide);
