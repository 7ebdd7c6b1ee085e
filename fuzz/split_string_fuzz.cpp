// SplitString against the framing it must keep: the pieces joined with the delimiter give the
// text back, but for a trailing delimiter, which leaves no empty piece behind it; each delimiter
// taken is the leftmost one after the piece before it; what the vector held before stays in front.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "command_link/message_reception.h"

namespace {

const std::string kDelimiter = "###";

void Check(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::vector<std::string> pieces = {"kept"};
  SplitString(text, pieces, kDelimiter);
  Check(pieces.front() == "kept");

  // The text again, each piece followed by a delimiter.
  std::string rebuilt;
  for (size_t i = 1; i < pieces.size(); ++i) rebuilt += pieces[i] + kDelimiter;
  // Either every piece was ended by a delimiter, or the last one ran to the end of the text.
  const bool last_unended = rebuilt != text;
  if (last_unended) {
    const std::string& last = pieces.back();
    Check(pieces.size() > 1 && !last.empty() && last.find(kDelimiter) == std::string::npos &&
          rebuilt == text + kDelimiter);
  }
  // The delimiter that ends a piece is the first one after the piece's start.
  const size_t ended = pieces.size() - (last_unended ? 1 : 0);
  for (size_t i = 1; i < ended; ++i) {
    Check((pieces[i] + kDelimiter).find(kDelimiter) == pieces[i].size());
  }
  return 0;
}
