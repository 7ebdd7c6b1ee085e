#include "open_files/context_registry.h"

#include <algorithm>

#include "logging/log_sites.h"
#include "logging/plugin_log.h"
#include "open_files/host_suites.h"

ContextRegistry& ContextRegistry::Instance() {
  static ContextRegistry registry;
  return registry;
}

void ContextRegistry::Register(FileContext* context) {
  std::lock_guard<std::mutex> lock(list_mutex_);
  contexts_.push_back(context);
  TouchContext(context);
}

void ContextRegistry::TouchContext(FileContext* context) {
  std::lock_guard<std::mutex> lock(last_use_mutex_);
  last_use_[context] = Clock::now();
}

namespace {

// REQUIRES: context->mutex held.
void ReleaseLockedSource(FileContext* context) {
  if (!context->source) return;
  PrSourceFactory::Destroy(context->source);
  context->source.reset();
  PluginLog::Get()->Write(kLogInfo, kLogSource, log_site::kCleanUpResource, "clean up resource:%s",
                          context->path.c_str());
}

}  // namespace

void ContextRegistry::ReleaseSource(FileContext* context) {
  std::lock_guard<std::mutex> lock(context->mutex);
  ReleaseLockedSource(context);
}

void ContextRegistry::ReleaseSourceIfIdle(FileContext* context) {
  std::unique_lock<std::mutex> lock(context->mutex, std::try_to_lock);
  if (lock.owns_lock()) ReleaseLockedSource(context);
}

void ContextRegistry::ResetFileContext(FileContext* context, const PrivateFileRecord* record) {
  if (context->source) {
    PluginLog::Get()->Write(kLogInfo, kLogSource, log_site::kResetFileContext,
                            "reset file context");
    PrSourceFactory::Destroy(context->source);
    context->source.reset();
  }
  SPBasicSuite* basic = record->basic_suite;
  if (context->audio_suite != nullptr && basic != nullptr) {
    ReleaseSuite(basic, kPrSDKAudioSuite, kPrSDKAudioSuiteVersion);
    context->audio_suite = nullptr;
  }
  if (context->ppix2_suite != nullptr && basic != nullptr) {
    ReleaseSuite(basic, kPrSDKPPix2Suite, kPrSDKPPix2SuiteVersion);
    context->ppix2_suite = nullptr;
  }
}

void ContextRegistry::RemoveContext(FileContext* context) {
  {
    std::lock_guard<std::mutex> lock(list_mutex_);
    PluginLog::Get()->Write(kLogInfo, kLogSource, log_site::kRemoveContext, "remove context");
    auto found = std::find(contexts_.begin(), contexts_.end(), context);
    if (found != contexts_.end()) contexts_.erase(found);
  }
  std::lock_guard<std::mutex> lock(last_use_mutex_);
  last_use_.erase(context);
}

// A snapshot taken under the registry's locks; the sources are released after they are let go,
// since releasing takes each context's mutex.
std::vector<FileContext*> ContextRegistry::ContextsByLastUse() {
  std::vector<FileContext*> contexts;
  {
    std::lock_guard<std::mutex> lock(list_mutex_);
    contexts = contexts_;
  }
  std::unordered_map<const FileContext*, Clock::time_point> last_use;
  {
    std::lock_guard<std::mutex> lock(last_use_mutex_);
    last_use = last_use_;
  }
  // A context with a last use comes before one without; among those with one, oldest first.
  std::stable_sort(contexts.begin(), contexts.end(),
                   [&last_use](const FileContext* a, const FileContext* b) {
                     auto a_use = last_use.find(a);
                     if (a_use == last_use.end()) return false;
                     auto b_use = last_use.find(b);
                     return b_use == last_use.end() || a_use->second < b_use->second;
                   });
  return contexts;
}

void ContextRegistry::EvictHalf(const FileContext* held_by_caller) {
  std::vector<FileContext*> by_last_use = ContextsByLastUse();
  const size_t half = by_last_use.size() / 2;
  for (size_t i = 0; i < half; ++i) {
    if (by_last_use[i] != held_by_caller) ReleaseSourceIfIdle(by_last_use[i]);
  }
}

void ContextRegistry::Stop() {
  running_ = false;
  if (worker_.joinable()) worker_.join();
}

size_t ContextRegistry::size() {
  std::lock_guard<std::mutex> lock(list_mutex_);
  return contexts_.size();
}
