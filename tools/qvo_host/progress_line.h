// Progress of a long tool run, written to standard error so that results on standard output stay
// clean: on a terminal one line rewritten in place, elsewhere (a log, a pipe) a plain line at every
// tenth of the way.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace host_sim {

class ProgressLine {
 public:
  // `what` names the work ("frame", "sound"); `total` counts its steps. `rewrite` chooses the
  // terminal's rewritten line; by default it is taken from whether `stream` is a terminal.
  ProgressLine(std::string what, int64_t total, std::FILE* stream = stderr);
  ProgressLine(std::string what, int64_t total, std::FILE* stream, bool rewrite);

  // `done` steps of the total are done.
  void Update(int64_t done);

  // Ends the rewritten line; plain lines need nothing more.
  void Finish();

 private:
  const std::string what_;
  const int64_t total_;
  std::FILE* const stream_;
  const bool rewrite_;
  int64_t last_shown_ = -1;  // the percentage (rewritten line) or tenth (plain lines) last written
};

}  // namespace host_sim
