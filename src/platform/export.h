// Symbol visibility of the two dynamic libraries (the plug-in and the stitching library).
#pragma once

#if defined(_WIN32)
#define QUORVEL_DLL_EXPORT __declspec(dllexport)
#define QUORVEL_DLL_IMPORT __declspec(dllimport)
#else
#define QUORVEL_DLL_EXPORT __attribute__((visibility("default")))
#define QUORVEL_DLL_IMPORT __attribute__((visibility("default")))
#endif
