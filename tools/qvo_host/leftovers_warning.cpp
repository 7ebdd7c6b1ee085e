#include "qvo_host/leftovers_warning.h"

#include "qvo_host/kept_by_design.h"

namespace host_sim {

std::string LeftoversWarning(const HostReport& report) {
  const HostReport faults = WithoutKeptByDesign(report);
  if (faults.clean()) return std::string();
  return "qvo-host: the plug-in left this behind:\n" + faults.ToString();
}

}  // namespace host_sim
