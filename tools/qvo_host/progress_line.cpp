#include "qvo_host/progress_line.h"

#include <utility>

#include "platform/console.h"

namespace host_sim {

ProgressLine::ProgressLine(std::string what, int64_t total, std::FILE* stream)
    : ProgressLine(std::move(what), total, stream, platform::IsTerminal(stream)) {}

ProgressLine::ProgressLine(std::string what, int64_t total, std::FILE* stream, bool rewrite)
    : what_(std::move(what)), total_(total), stream_(stream), rewrite_(rewrite) {}

void ProgressLine::Update(int64_t done) {
  const int64_t percent = total_ > 0 ? done * 100 / total_ : 100;
  const int64_t shown = rewrite_ ? percent : percent / 10;
  if (shown == last_shown_ || (!rewrite_ && shown == 0)) return;
  last_shown_ = shown;
  std::fprintf(stream_, rewrite_ ? "\r%s %lld/%lld (%lld%%)" : "%s %lld/%lld (%lld%%)\n",
               what_.c_str(), static_cast<long long>(done), static_cast<long long>(total_),
               static_cast<long long>(percent));
  std::fflush(stream_);
}

void ProgressLine::Finish() {
  if (rewrite_ && last_shown_ >= 0) std::fprintf(stream_, "\n");
}

}  // namespace host_sim
