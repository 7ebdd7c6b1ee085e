#include "host_sim/host_report.h"

#include <sstream>

namespace host_sim {
namespace {

template <typename Entry, typename Describe>
void AppendSection(const char* heading, const std::vector<Entry>& entries, Describe describe,
                   std::ostringstream* out) {
  if (entries.empty()) return;
  *out << heading << ":\n";
  for (const Entry& entry : entries) {
    *out << "  ";
    describe(entry, out);
    *out << "\n";
  }
}

void DescribeBlock(const char* kind, const LeftoverBlock& block, std::ostringstream* out) {
  *out << kind << " #" << block.serial << " (" << block.size << " bytes)";
}

}  // namespace

bool HostReport::clean() const {
  return handles_still_locked.empty() && handles_never_disposed.empty() &&
         pointers_never_disposed.empty() && suites_unbalanced.empty() && suites_refused.empty() &&
         failed_suite_calls.empty() && memory_faults.empty() && frame_faults.empty();
}

std::string HostReport::ToString() const {
  if (clean()) return "clean\n";
  std::ostringstream out;
  AppendSection(
      "handles still locked", handles_still_locked,
      [](const LeftoverBlock& block, std::ostringstream* text) {
        DescribeBlock("handle", block, text);
        *text << ", lock count " << block.lock_count;
      },
      &out);
  AppendSection(
      "handles never disposed", handles_never_disposed,
      [](const LeftoverBlock& block, std::ostringstream* text) {
        DescribeBlock("handle", block, text);
      },
      &out);
  AppendSection(
      "pointers never disposed", pointers_never_disposed,
      [](const LeftoverBlock& block, std::ostringstream* text) {
        DescribeBlock("pointer", block, text);
      },
      &out);
  AppendSection(
      "suites unbalanced", suites_unbalanced,
      [](const SuiteBalance& suite, std::ostringstream* text) {
        *text << '"' << suite.name << "\" " << suite.version << ": acquired " << suite.acquired
              << ", released " << suite.released;
      },
      &out);
  AppendSection(
      "suites refused", suites_refused,
      [](const RefusedSuite& suite, std::ostringstream* text) {
        *text << '"' << suite.name << "\" " << suite.version << ": asked " << suite.requests
              << " time(s)";
      },
      &out);
  AppendSection(
      "failed suite calls", failed_suite_calls,
      [](const FailedSuiteCall& call, std::ostringstream* text) {
        *text << '"' << call.suite << "\" " << call.function << ": " << call.calls << " call(s)";
      },
      &out);
  AppendSection(
      "memory faults", memory_faults,
      [](const std::string& fault, std::ostringstream* text) { *text << fault; }, &out);
  AppendSection(
      "frame faults", frame_faults,
      [](const std::string& fault, std::ostringstream* text) { *text << fault; }, &out);
  return out.str();
}

}  // namespace host_sim
