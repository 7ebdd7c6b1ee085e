#include "platform/file_handles.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "support/temp_folder.h"

#if !defined(_WIN32)
#include <errno.h>
#include <signal.h>
#include <sys/resource.h>
#endif

namespace {

using platform::FileHandle;

// Names whose UTF-8 and UTF-16 forms differ from their bytes, one of them with a surrogate pair.
const std::u16string kAccented = u"caf\u00E9 \u4E2D.qvo";
const std::u16string kEmoji = u"\u00C5\u20AC \U0001F600.qvo";

class FileHandlesTest : public ::testing::Test {
 protected:
#if !defined(_WIN32)
  // Every call closes what it opened, whether it succeeds or fails.
  void TearDown() override { EXPECT_EQ(OpenDescriptors(), descriptors_at_start_); }
  static size_t OpenDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  }
  const size_t descriptors_at_start_ = OpenDescriptors();
#endif

  // `name` in the test's folder as the host hands paths over: with the "\\?\" prefix.
  std::u16string Host(const std::u16string& name) const {
    return HostPath(folder_.path().string()) + u"\\" + name;
  }
  std::filesystem::path Native(const std::u16string& name) const {
    return folder_.path() / std::filesystem::path(name);
  }
  std::string Content(const std::u16string& name) const { return ReadWholeFile(Native(name)); }
  bool Exists(const std::u16string& name) const { return std::filesystem::exists(Native(name)); }

  // Writes through the layer, so that names need not be ASCII.
  void Put(const std::u16string& name, const std::string& text) {
    FileHandle file = platform::CreateNewFileForWriting(Host(name).c_str());
    ASSERT_NE(file, platform::InvalidFileHandle());
    uint32_t written = 0;
    ASSERT_TRUE(
        platform::WriteToFile(file, text.data(), static_cast<uint32_t>(text.size()), &written));
    ASSERT_EQ(written, text.size());
    platform::CloseFileHandle(file);
  }

  TempFolder folder_;
};

// Where the seek lands, the sample-file reads show; here, what each seek answers.
TEST_F(FileHandlesTest, SeeksFromTheStartButNeverBeforeIt) {
  Put(u"data.bin", "hello");
  FileHandle file = platform::OpenFileForReading(Host(u"data.bin").c_str());
  EXPECT_TRUE(platform::SeekFromStart32(file, 3));
  EXPECT_FALSE(platform::SeekFromStart32(file, 0x80000000u)) << "negative without a high part";
  EXPECT_TRUE(platform::SeekFromStart64(file, 2));
  EXPECT_FALSE(platform::SeekFromStart64(file, -1));
  platform::CloseFileHandle(file);
}

TEST_F(FileHandlesTest, MovesAFileButNeverOntoAnExistingOne) {
  Put(kAccented, "source");
  Put(u"to.bin", "target");
  EXPECT_FALSE(platform::MoveFileTo(Host(kAccented).c_str(), Host(u"to.bin").c_str()));
  EXPECT_EQ(Content(u"to.bin"), "target");
  EXPECT_TRUE(platform::MoveFileTo(Host(kAccented).c_str(), Host(kEmoji).c_str()));
  EXPECT_FALSE(Exists(kAccented));
  EXPECT_EQ(Content(kEmoji), "source");
}

#if !defined(_WIN32)
// Copies under a file-size limit, past which the system writes short and then refuses.
bool CopyUnderFileSizeLimit(rlim_t bytes, const std::u16string& from, const std::u16string& to) {
  rlimit saved;
  getrlimit(RLIMIT_FSIZE, &saved);
  const rlimit lowered = {bytes, saved.rlim_max};
  const auto handler = signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &lowered);
  const bool copied = platform::CopyFileNoReplace(from.c_str(), to.c_str());
  setrlimit(RLIMIT_FSIZE, &saved);
  signal(SIGXFSZ, handler);
  return copied;
}
#endif

// More than one block of the copy, onto a path without the long-path prefix, taken as it is.
TEST_F(FileHandlesTest, CopiesOntoANewFileOnly) {
  std::string bytes(200000, '\0');
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7);
  Put(kEmoji, bytes);
  const std::u16string unprefixed = folder_.path().u16string() + u"\\" + kAccented;
  EXPECT_TRUE(platform::CopyFileNoReplace(Host(kEmoji).c_str(), unprefixed.c_str()));
  EXPECT_EQ(Content(kAccented), bytes);

  Put(u"other.bin", "other");
  EXPECT_FALSE(platform::CopyFileNoReplace(Host(u"other.bin").c_str(), Host(kAccented).c_str()));
  EXPECT_EQ(Content(kAccented), bytes);
  EXPECT_FALSE(platform::CopyFileNoReplace(Host(u"missing.bin").c_str(), Host(u"new.bin").c_str()));
  EXPECT_FALSE(platform::CopyFileNoReplace(Host(u"").c_str(), Host(u"new.bin").c_str()))
      << "the folder itself";
  EXPECT_FALSE(Exists(u"new.bin"));
#if !defined(_WIN32)
  EXPECT_FALSE(CopyUnderFileSizeLimit(100000, Host(kEmoji), Host(u"short.bin")));
  EXPECT_EQ(platform::LastSystemError(), static_cast<uint32_t>(EFBIG));
  EXPECT_FALSE(Exists(u"short.bin")) << "a copy that fails half-way leaves nothing behind";
#endif
}

}  // namespace
