#include "qvo_host/kept_by_design.h"

#include <algorithm>

namespace host_sim {
namespace {

constexpr char kAudioSuite[] = "Premiere Audio Suite";

}  // namespace

bool KeptByDesign(const SuiteBalance& suite) {
  return suite.name == kAudioSuite && suite.released == 2 * suite.acquired;
}

HostReport WithoutKeptByDesign(HostReport report) {
  std::vector<SuiteBalance>& suites = report.suites_unbalanced;
  suites.erase(std::remove_if(suites.begin(), suites.end(), KeptByDesign), suites.end());
  return report;
}

}  // namespace host_sim
