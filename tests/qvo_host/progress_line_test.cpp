#include "qvo_host/progress_line.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

// Everything `run` writes through a ProgressLine of 30 frames onto a stream of its own.
template <typename Run>
std::string Written(bool rewrite, Run run) {
  std::FILE* stream = std::tmpfile();
  host_sim::ProgressLine progress("frame", 30, stream, rewrite);
  run(progress);
  std::string text(static_cast<size_t>(std::ftell(stream)), '\0');
  std::rewind(stream);
  text.resize(std::fread(text.data(), 1, text.size(), stream));
  std::fclose(stream);
  return text;
}

TEST(ProgressLineTest, WritesAPlainLineAtEveryTenthOfTheWayWhereItCannotRewrite) {
  const std::string text = Written(false, [](host_sim::ProgressLine& progress) {
    for (int done = 1; done <= 30; ++done) progress.Update(done);
    progress.Finish();
  });
  EXPECT_EQ(text.find('\r'), std::string::npos);
  EXPECT_EQ(text.rfind("frame 3/30 (10%)\n", 0), 0u) << text;
  EXPECT_NE(text.find("frame 15/30 (50%)\nframe 18/30 (60%)\n"), std::string::npos) << text;
  EXPECT_EQ(text.substr(text.size() - 19), "frame 30/30 (100%)\n");
  size_t lines = 0;
  for (char c : text) lines += c == '\n' ? 1 : 0;
  EXPECT_EQ(lines, 10u);
}

TEST(ProgressLineTest, AFileIsNoTerminalSoItGetsPlainLines) {
  std::FILE* stream = std::tmpfile();
  host_sim::ProgressLine progress("sound", 1, stream);
  progress.Update(1);
  progress.Finish();
  std::rewind(stream);
  char text[32] = {};
  EXPECT_NE(std::fgets(text, sizeof(text), stream), nullptr);
  EXPECT_STREQ(text, "sound 1/1 (100%)\n");
  std::fclose(stream);
}

TEST(ProgressLineTest, RewritesOneLineOnATerminalAndEndsIt) {
  const std::string text = Written(true, [](host_sim::ProgressLine& progress) {
    progress.Update(1);
    progress.Update(1);
    progress.Update(30);
    progress.Finish();
  });
  EXPECT_EQ(text, "\rframe 1/30 (3%)\rframe 30/30 (100%)\n");
}

}  // namespace
