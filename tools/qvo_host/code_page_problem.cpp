#include "qvo_host/code_page_problem.h"

#include "platform/text_encoding.h"

namespace host_sim {

std::string CodePageProblem(const std::string& utf8_path) {
  if (platform::SystemAnsiCanSpell(utf8_path)) return std::string();
  return "the system code page (" + std::to_string(platform::SystemAnsiCodePageNumber()) +
         ") cannot spell this path, so the stitching library cannot be given it";
}

}  // namespace host_sim
