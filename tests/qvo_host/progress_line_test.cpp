#include "qvo_host/progress_line.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <string>
#include <vector>

namespace {

using host_sim::ProgressLine;

// Everything a ProgressLine made by `start` writes, with `steps` done one after the other.
template <typename Start>
std::string Written(Start start, const std::vector<int64_t>& steps) {
  std::FILE* stream = std::tmpfile();
  {
    ProgressLine progress = start(stream);
    for (int64_t done : steps) progress.Update(done);
    progress.Finish();
  }
  std::string text(static_cast<size_t>(std::ftell(stream)), '\0');
  std::rewind(stream);
  text.resize(std::fread(text.data(), 1, text.size(), stream));
  std::fclose(stream);
  return text;
}

// A file is no terminal, so the line it gets is never rewritten.
TEST(ProgressLineTest, WritesAPlainLineAtEveryTenthOfTheWayToAFile) {
  std::vector<int64_t> every_frame(30);
  std::iota(every_frame.begin(), every_frame.end(), 1);
  const std::string text =
      Written([](std::FILE* stream) { return ProgressLine("frame", 30, stream); }, every_frame);
  EXPECT_EQ(text.rfind("frame 3/30 (10%)\n", 0), 0u) << text;
  EXPECT_NE(text.find("frame 15/30 (50%)\nframe 18/30 (60%)\n"), std::string::npos) << text;
  EXPECT_EQ(text.substr(text.size() - 19), "frame 30/30 (100%)\n");
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 10);
}

TEST(ProgressLineTest, RewritesOneLineOnATerminalAndEndsIt) {
  EXPECT_EQ(Written([](std::FILE* stream) { return ProgressLine("frame", 30, stream, true); },
                    {1, 1, 30}),
            "\rframe 1/30 (3%)\rframe 30/30 (100%)\n");
}

}  // namespace
