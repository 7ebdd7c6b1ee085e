// The host's suite access behind SPBasicSuite: suite tables offered by name and version, and the
// account of every AcquireSuite and ReleaseSuite call, of requests for suites the host does not
// offer, and of calls into suite functions the host does not serve. Thread-safe.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "host_sdk/premiere_types.h"
#include "host_sim/host_report.h"

namespace host_sim {

// The host's refusals. The importer only tells success (0) from failure, so one generic code
// serves every refusal.
constexpr prSuiteError kSuiteFailure = -1;
constexpr SPErr kSPFailure = -1;

class SuiteRegistry {
 public:
  // Offers `table` under `name` and `version`; a later offer under the same key replaces it.
  // `table` must outlive the registry.
  void Offer(const std::string& name, int32_t version, const void* table);

  // The table offered under `name` and `version`, counted as acquired; null, and counted as
  // refused, when none is.
  const void* Acquire(const char* name, int32_t version);

  // Counts the release; false when nothing is offered under `name` and `version`.
  bool Release(const char* name, int32_t version);

  // Called by a suite function the host does not serve.
  void RecordFailedCall(const char* suite, const char* function);

  // Acquire and release counts of every suite acquired or released at least once.
  std::vector<SuiteBalance> Balances() const;

  // Fills the suite lists of `report`.
  void AddToReport(HostReport* report) const;

 private:
  using SuiteKey = std::pair<std::string, int32_t>;

  mutable std::mutex mutex_;
  std::map<SuiteKey, const void*> offers_;                               // guarded by mutex_
  std::map<SuiteKey, SuiteBalance> balances_;                            // guarded by mutex_
  std::map<SuiteKey, int64_t> refusals_;                                 // guarded by mutex_
  std::map<std::pair<std::string, std::string>, int64_t> failed_calls_;  // guarded by mutex_
};

}  // namespace host_sim
