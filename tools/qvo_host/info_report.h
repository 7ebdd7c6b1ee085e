// qvo-host info's two ways of showing what the host learned about files: a readable table per
// file, and one JSON array of objects.
#pragma once

#include <string>
#include <vector>

#include "qvo_host/file_inspection.h"

namespace host_sim {

// Several lines: the file as named, then one indented line per fact.
std::string DescribeAsTable(const ClipFacts& facts);

// A JSON array with one object per file, in the given order.
std::string DescribeAsJson(const std::vector<ClipFacts>& clips);

}  // namespace host_sim
