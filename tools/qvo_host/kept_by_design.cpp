#include "qvo_host/kept_by_design.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "qvo_host/opened_clip.h"

namespace host_sim {
namespace {

constexpr char kAudioSuite[] = "Premiere Audio Suite";
// The plug-in's private record of an open file, and the lock it holds while the open runs.
constexpr uint32_t kPrivateRecordBytes = 1200;

bool IsKeptRecord(const LeftoverBlock& block) {
  return block.size == kPrivateRecordBytes && block.lock_count == 1;
}

// Drops the first `count` kept records from `blocks`.
void DropKeptRecords(size_t count, std::vector<LeftoverBlock>* blocks) {
  for (auto block = blocks->begin(); block != blocks->end() && count > 0;) {
    if (IsKeptRecord(*block)) {
      block = blocks->erase(block);
      --count;
    } else {
      ++block;
    }
  }
}

}  // namespace

bool KeptByDesign(const SuiteBalance& suite) {
  return suite.name == kAudioSuite && suite.released == 2 * suite.acquired;
}

size_t RecordsKeptByDesign(const HostReport& report) {
  const auto locked = std::count_if(report.handles_still_locked.begin(),
                                    report.handles_still_locked.end(), IsKeptRecord);
  return static_cast<size_t>(std::min<int64_t>(locked, RecordsKeptByFailedOpens()));
}

HostReport WithoutKeptByDesign(HostReport report) {
  const size_t kept = RecordsKeptByDesign(report);
  DropKeptRecords(kept, &report.handles_still_locked);
  DropKeptRecords(kept, &report.handles_never_disposed);
  std::vector<SuiteBalance>& suites = report.suites_unbalanced;
  suites.erase(std::remove_if(suites.begin(), suites.end(), KeptByDesign), suites.end());
  return report;
}

}  // namespace host_sim
