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

  // One read of up to 16 bytes.
  static std::string ReadSome(FileHandle file) {
    char buffer[16] = {};
    uint32_t read = sizeof(buffer);
    EXPECT_TRUE(platform::ReadFromFile(file, buffer, sizeof(buffer), &read));
    return std::string(buffer, read);
  }

  TempFolder folder_;
};

TEST_F(FileHandlesTest, CreatesANewFileButNeverOverAnExistingOneAndDeletesIt) {
  Put(kEmoji, "hello");
  EXPECT_EQ(Content(kEmoji), "hello");
  EXPECT_EQ(platform::CreateNewFileForWriting(Host(kEmoji).c_str()), platform::InvalidFileHandle());
  EXPECT_EQ(Content(kEmoji), "hello");
  EXPECT_TRUE(platform::DeleteFileAt(Host(kEmoji).c_str()));
  EXPECT_FALSE(Exists(kEmoji));
  EXPECT_FALSE(platform::DeleteFileAt(Host(kEmoji).c_str()));
}

TEST_F(FileHandlesTest, ReadsAndSeeksFromTheStartButNeverWritesAFileOpenForReading) {
  Put(u"data.bin", "hello");
  // A path without the long-path prefix is taken as it is.
  FileHandle file =
      platform::OpenFileForReading((folder_.path().u16string() + u"\\data.bin").c_str());
  ASSERT_NE(file, platform::InvalidFileHandle());
  EXPECT_EQ(ReadSome(file), "hello");
  EXPECT_EQ(ReadSome(file), "") << "at the end";
  EXPECT_TRUE(platform::SeekFromStart32(file, 3));
  EXPECT_EQ(ReadSome(file), "lo");
  ASSERT_TRUE(platform::SeekFromStart32(file, 1));
  EXPECT_FALSE(platform::SeekFromStart32(file, 0x80000000u)) << "negative without a high part";
  EXPECT_FALSE(platform::SeekFromStart32(file, 0xFFFFFFFFu));
  EXPECT_EQ(ReadSome(file), "ello") << "a failed seek leaves the pointer";
  EXPECT_TRUE(platform::SeekFromStart64(file, 2));
  EXPECT_FALSE(platform::SeekFromStart64(file, -1));
  EXPECT_EQ(ReadSome(file), "llo");

  uint32_t written = 99;
  EXPECT_FALSE(platform::WriteToFile(file, "abc", 3, &written));
  EXPECT_NE(platform::LastSystemError(), 0u);
  EXPECT_EQ(written, 0u);
  platform::CloseFileHandle(file);
  EXPECT_EQ(Content(u"data.bin"), "hello");
}

TEST_F(FileHandlesTest, FailsWithTheSystemsErrorOnAMissingFileOrTheInvalidHandle) {
  EXPECT_EQ(platform::OpenFileForReading(Host(u"missing.bin").c_str()),
            platform::InvalidFileHandle());
  EXPECT_NE(platform::LastSystemError(), 0u);
  int64_t size = 123;
  EXPECT_FALSE(platform::FileSize64(platform::InvalidFileHandle(), &size));
  EXPECT_NE(platform::LastSystemError(), 0u);
  EXPECT_EQ(size, 123);
}

TEST_F(FileHandlesTest, MovesAFileButNeitherOntoAnExistingOneNorFromNowhere) {
  Put(kAccented, "source");
  Put(u"to.bin", "target");
  EXPECT_FALSE(platform::MoveFileTo(Host(kAccented).c_str(), Host(u"to.bin").c_str()));
  EXPECT_EQ(Content(kAccented), "source");
  EXPECT_EQ(Content(u"to.bin"), "target");
  EXPECT_TRUE(platform::MoveFileTo(Host(kAccented).c_str(), Host(kEmoji).c_str()));
  EXPECT_FALSE(Exists(kAccented));
  EXPECT_EQ(Content(kEmoji), "source");
  EXPECT_FALSE(platform::MoveFileTo(Host(kAccented).c_str(), Host(u"again.bin").c_str()));
  EXPECT_FALSE(Exists(u"again.bin"));
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

TEST_F(FileHandlesTest, CopiesOntoANewFileOnlyAndKeepsTheSource) {
  std::string bytes(200000, '\0');
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7);
  Put(kEmoji, bytes);
  EXPECT_TRUE(platform::CopyFileNoReplace(Host(kEmoji).c_str(), Host(kAccented).c_str()));
  EXPECT_EQ(Content(kEmoji), bytes);
  EXPECT_EQ(Content(kAccented), bytes);
  FileHandle copy = platform::OpenFileForReading(Host(kAccented).c_str());
  int64_t size = -1;
  EXPECT_TRUE(platform::FileSize64(copy, &size));
  EXPECT_EQ(size, 200000);
  platform::CloseFileHandle(copy);

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
