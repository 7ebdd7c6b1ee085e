#include "host_sim/suite_registry.h"

namespace host_sim {
namespace {

SuiteBalance& BalanceOf(std::map<std::pair<std::string, int32_t>, SuiteBalance>* balances,
                        const std::string& name, int32_t version) {
  SuiteBalance& balance = (*balances)[{name, version}];
  balance.name = name;
  balance.version = version;
  return balance;
}

}  // namespace

void SuiteRegistry::Offer(const std::string& name, int32_t version, const void* table) {
  std::lock_guard<std::mutex> lock(mutex_);
  offers_[{name, version}] = table;
}

const void* SuiteRegistry::Acquire(const char* name, int32_t version) {
  std::lock_guard<std::mutex> lock(mutex_);
  std::string key_name = name == nullptr ? std::string() : std::string(name);
  auto offer = offers_.find({key_name, version});
  if (offer == offers_.end()) {
    ++refusals_[{key_name, version}];
    return nullptr;
  }
  ++BalanceOf(&balances_, key_name, version).acquired;
  return offer->second;
}

bool SuiteRegistry::Release(const char* name, int32_t version) {
  std::lock_guard<std::mutex> lock(mutex_);
  std::string key_name = name == nullptr ? std::string() : std::string(name);
  ++BalanceOf(&balances_, key_name, version).released;
  return offers_.count({key_name, version}) == 1;
}

void SuiteRegistry::RecordFailedCall(const char* suite, const char* function) {
  std::lock_guard<std::mutex> lock(mutex_);
  ++failed_calls_[{suite, function}];
}

std::vector<SuiteBalance> SuiteRegistry::Balances() const {
  std::lock_guard<std::mutex> lock(mutex_);
  std::vector<SuiteBalance> balances;
  for (const auto& entry : balances_) balances.push_back(entry.second);
  return balances;
}

void SuiteRegistry::AddToReport(HostReport* report) const {
  std::lock_guard<std::mutex> lock(mutex_);
  for (const auto& entry : balances_) {
    if (entry.second.acquired != entry.second.released) {
      report->suites_unbalanced.push_back(entry.second);
    }
  }
  for (const auto& entry : refusals_) {
    report->suites_refused.push_back({entry.first.first, entry.first.second, entry.second});
  }
  for (const auto& entry : failed_calls_) {
    report->failed_suite_calls.push_back({entry.first.first, entry.first.second, entry.second});
  }
}

}  // namespace host_sim
