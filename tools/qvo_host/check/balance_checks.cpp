#include "qvo_host/check/balance_checks.h"

#include <string>

#include "qvo_host/kept_by_design.h"

namespace host_sim {
namespace {

// A frame written outside its buffer is the frame checks' to report.
constexpr char kWriteOutside[] = "write outside";

std::string Describe(const SuiteBalance& suite) {
  return suite.name + " " + std::to_string(suite.version) + " acquired " +
         std::to_string(suite.acquired) + ", released " + std::to_string(suite.released);
}

void CheckSuites(const HostReport& host_report, CheckJournal* journal) {
  std::string unbalanced;
  for (const SuiteBalance& suite : host_report.suites_unbalanced) {
    if (KeptByDesign(suite)) {
      journal->Add("balance: kept by design",
                   Describe(suite) + " (closing a file releases it twice)", true);
    } else {
      unbalanced += (unbalanced.empty() ? "" : "; ") + Describe(suite);
    }
  }
  journal->Add("balance: suites released", unbalanced.empty() ? "all" : unbalanced,
               unbalanced.empty());
}

void CheckMemory(const HostReport& whole_report, CheckJournal* journal) {
  const size_t kept = RecordsKeptByDesign(whole_report);
  if (kept > 0) {
    journal->Add("balance: kept by design, records of failed opens",
                 std::to_string(kept) +
                     " private records left allocated and locked (an open whose Create failed "
                     "keeps its record)",
                 true);
  }
  const HostReport host_report = WithoutKeptByDesign(whole_report);
  journal->Add("balance: handles unlocked",
               std::to_string(host_report.handles_still_locked.size()) + " still locked",
               host_report.handles_still_locked.empty());
  const size_t left =
      host_report.handles_never_disposed.size() + host_report.pointers_never_disposed.size();
  journal->Add("balance: memory given back", std::to_string(left) + " blocks never disposed",
               left == 0);
}

void CheckMisuse(const HostReport& host_report, CheckJournal* journal) {
  std::string misuse;
  const auto add = [&misuse](const std::string& text) {
    misuse += (misuse.empty() ? "" : "; ") + text;
  };
  for (const std::string& fault : host_report.memory_faults) add(fault);
  for (const std::string& fault : host_report.frame_faults) {
    if (fault.find(kWriteOutside) == std::string::npos) add(fault);
  }
  for (const RefusedSuite& suite : host_report.suites_refused) {
    add("refused suite " + suite.name + " " + std::to_string(suite.version));
  }
  for (const FailedSuiteCall& call : host_report.failed_suite_calls) {
    add("unserved call " + call.suite + "." + call.function);
  }
  journal->Add("balance: host functions used rightly", misuse.empty() ? "no misuse" : misuse,
               misuse.empty());
}

}  // namespace

void CheckBalance(const HostReport& host_report, CheckJournal* journal) {
  CheckMemory(host_report, journal);
  CheckSuites(host_report, journal);
  CheckMisuse(host_report, journal);
}

}  // namespace host_sim
