// ReadPortFile on a port file holding the fuzz input: it must take the file's first line, cut at
// 31 characters (and, being kept as a C string, at a NUL byte), and never more.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>

#include "command_link/port_file.h"
#include "fuzz_profile.h"

namespace {

constexpr size_t kMostPortCharacters = 31;

void Check(bool holds) {
  if (!holds) std::abort();
}

std::string ExpectedPortText(const std::string& file_text) {
  std::string line = file_text.substr(0, file_text.find('\n'));
  line = line.substr(0, kMostPortCharacters);
  return line.substr(0, line.find('\0'));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const FuzzProfile profile;
  static const std::filesystem::path port_file = profile.adobe_folder() / "port";
  const std::string file_text(reinterpret_cast<const char*>(data), size);
  std::ofstream(port_file, std::ios::binary | std::ios::trunc) << file_text;

  std::string port_text = "left from before";
  Check(ReadPortFile(port_text));
  Check(port_text.size() <= kMostPortCharacters);
  Check(port_text == ExpectedPortText(file_text));
  return 0;
}
