// The host's importer interface in one include: entry point, standard parameters and host tables,
// the records of every selector served, suites and constants.
//
// Every host record is byte-packed; on x64 unaligned access is legal, so packed fields are read
// and written directly. Never take a pointer or bind a reference to a packed field (g++ warns
// for pointers only; a reference, as in std::min or EXPECT_EQ, is a misaligned access the
// sanitizer build rejects): copy the field to a local first.
#pragma once

#include <cstdint>

#include "host_sdk/premiere_constants.h"
#include "host_sdk/premiere_file_info.h"
#include "host_sdk/premiere_file_records.h"
#include "host_sdk/premiere_host_tables.h"
#include "host_sdk/premiere_media_records.h"
#include "host_sdk/premiere_startup_records.h"
#include "host_sdk/premiere_suites.h"
#include "host_sdk/premiere_types.h"

// The name the host looks up, exported undecorated with C linkage.
constexpr char kImportEntryName[] = "xImportEntry";

extern "C" {
// Answers a result code (imNoErr, ...). param1 and param2 are pointer-sized: per selector a record
// pointer, a pointer to a slot, a file reference by value, or an index in the low 32 bits
// (static_cast<int32_t>(reinterpret_cast<intptr_t>(param1))).
using xImportEntryFunc = int32_t (*)(int32_t selector, imStdParms* stdParms, void* param1,
                                     void* param2);
}
