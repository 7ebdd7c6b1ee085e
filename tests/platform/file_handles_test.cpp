#include "platform/file_handles.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "support/temp_folder.h"

namespace {

using platform::FileHandle;

class FileHandlesTest : public ::testing::Test {
 protected:
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

TEST_F(FileHandlesTest, CreatesANewFileAndWritesIt) {
  Put(u"new.bin", "hello");
  EXPECT_EQ(Content(u"new.bin"), "hello");
}

TEST_F(FileHandlesTest, CreatingANewFileFailsWhenItExistsAndLeavesItAlone) {
  Put(u"old.bin", "old");
  EXPECT_EQ(platform::CreateNewFileForWriting(Host(u"old.bin").c_str()),
            platform::InvalidFileHandle());
  EXPECT_EQ(Content(u"old.bin"), "old");
}

TEST_F(FileHandlesTest, OpeningAMissingFileForReadingFails) {
  EXPECT_EQ(platform::OpenFileForReading(Host(u"missing.bin").c_str()),
            platform::InvalidFileHandle());
  EXPECT_NE(platform::LastSystemError(), 0u);
}

TEST_F(FileHandlesTest, ReadsUpToTheEndOfTheFileAndThenNothing) {
  Put(u"data.bin", "hello");
  FileHandle file = platform::OpenFileForReading(Host(u"data.bin").c_str());
  ASSERT_NE(file, platform::InvalidFileHandle());
  char buffer[16] = {};
  uint32_t read = 99;
  EXPECT_TRUE(platform::ReadFromFile(file, buffer, sizeof(buffer), &read));
  EXPECT_EQ(read, 5u);
  EXPECT_EQ(std::string(buffer, read), "hello");
  EXPECT_TRUE(platform::ReadFromFile(file, buffer, sizeof(buffer), &read));
  EXPECT_EQ(read, 0u);
  platform::CloseFileHandle(file);
}

TEST_F(FileHandlesTest, SeeksFromTheStart) {
  Put(u"data.bin", "hello");
  FileHandle file = platform::OpenFileForReading(Host(u"data.bin").c_str());
  ASSERT_NE(file, platform::InvalidFileHandle());
  char buffer[8] = {};
  uint32_t read = 0;
  ASSERT_TRUE(platform::ReadFromFile(file, buffer, 4, &read));
  EXPECT_TRUE(platform::SeekFromStart32(file, 3));
  ASSERT_TRUE(platform::ReadFromFile(file, buffer, sizeof(buffer), &read));
  EXPECT_EQ(std::string(buffer, read), "lo");
  platform::CloseFileHandle(file);
}

TEST_F(FileHandlesTest, ASeekOf2GiBOrMoreIsNegativeWithoutAHighPartAndLeavesThePointer) {
  Put(u"data.bin", "hello");
  FileHandle file = platform::OpenFileForReading(Host(u"data.bin").c_str());
  ASSERT_NE(file, platform::InvalidFileHandle());
  ASSERT_TRUE(platform::SeekFromStart32(file, 1));
  EXPECT_FALSE(platform::SeekFromStart32(file, 0x80000000u));
  EXPECT_FALSE(platform::SeekFromStart32(file, 0xFFFFFFFFu));
  char buffer[8] = {};
  uint32_t read = 0;
  ASSERT_TRUE(platform::ReadFromFile(file, buffer, sizeof(buffer), &read));
  EXPECT_EQ(std::string(buffer, read), "ello");
  platform::CloseFileHandle(file);
}

TEST_F(FileHandlesTest, SeeksWithA64BitOffsetAndRefusesANegativeOne) {
  Put(u"data.bin", "hello");
  FileHandle file = platform::OpenFileForReading(Host(u"data.bin").c_str());
  ASSERT_NE(file, platform::InvalidFileHandle());
  EXPECT_TRUE(platform::SeekFromStart64(file, 2));
  EXPECT_FALSE(platform::SeekFromStart64(file, -1));
  char buffer[8] = {};
  uint32_t read = 0;
  ASSERT_TRUE(platform::ReadFromFile(file, buffer, sizeof(buffer), &read));
  EXPECT_EQ(std::string(buffer, read), "llo");
  platform::CloseFileHandle(file);
}

TEST_F(FileHandlesTest, ReportsTheSizeOfAnOpenFile) {
  Put(u"data.bin", std::string(70000, 'x'));
  FileHandle file = platform::OpenFileForReading(Host(u"data.bin").c_str());
  ASSERT_NE(file, platform::InvalidFileHandle());
  int64_t size = -1;
  EXPECT_TRUE(platform::FileSize64(file, &size));
  EXPECT_EQ(size, 70000);
  platform::CloseFileHandle(file);
}

TEST_F(FileHandlesTest, SizingTheInvalidHandleFailsAndLeavesTheSize) {
  int64_t size = 123;
  EXPECT_FALSE(platform::FileSize64(platform::InvalidFileHandle(), &size));
  EXPECT_NE(platform::LastSystemError(), 0u);
  EXPECT_EQ(size, 123);
}

TEST_F(FileHandlesTest, WritingToAReadOnlyHandleFailsWithTheSystemsError) {
  Put(u"data.bin", "hello");
  FileHandle file = platform::OpenFileForReading(Host(u"data.bin").c_str());
  ASSERT_NE(file, platform::InvalidFileHandle());
  uint32_t written = 99;
  EXPECT_FALSE(platform::WriteToFile(file, "abc", 3, &written));
  EXPECT_NE(platform::LastSystemError(), 0u);
  EXPECT_EQ(written, 0u);
  platform::CloseFileHandle(file);
  EXPECT_EQ(Content(u"data.bin"), "hello");
}

TEST_F(FileHandlesTest, MovesAFile) {
  Put(u"from.bin", "moved");
  EXPECT_TRUE(platform::MoveFileTo(Host(u"from.bin").c_str(), Host(u"to.bin").c_str()));
  EXPECT_FALSE(Exists(u"from.bin"));
  EXPECT_EQ(Content(u"to.bin"), "moved");
}

TEST_F(FileHandlesTest, MovingOntoAnExistingFileFailsAndChangesNothing) {
  Put(u"from.bin", "source");
  Put(u"to.bin", "target");
  EXPECT_FALSE(platform::MoveFileTo(Host(u"from.bin").c_str(), Host(u"to.bin").c_str()));
  EXPECT_EQ(Content(u"from.bin"), "source");
  EXPECT_EQ(Content(u"to.bin"), "target");
}

TEST_F(FileHandlesTest, MovingAMissingFileFails) {
  EXPECT_FALSE(platform::MoveFileTo(Host(u"missing.bin").c_str(), Host(u"to.bin").c_str()));
  EXPECT_FALSE(Exists(u"to.bin"));
}

TEST_F(FileHandlesTest, CopiesOntoANewFileAndKeepsTheSource) {
  std::string bytes(200000, '\0');
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7);
  Put(u"from.bin", bytes);
  EXPECT_TRUE(platform::CopyFileNoReplace(Host(u"from.bin").c_str(), Host(u"to.bin").c_str()));
  EXPECT_EQ(Content(u"from.bin"), bytes);
  EXPECT_EQ(Content(u"to.bin"), bytes);
}

TEST_F(FileHandlesTest, CopyingOntoAnExistingFileFailsAndLeavesItUnchanged) {
  Put(u"from.bin", "source");
  Put(u"to.bin", "target");
  EXPECT_FALSE(platform::CopyFileNoReplace(Host(u"from.bin").c_str(), Host(u"to.bin").c_str()));
  EXPECT_EQ(Content(u"to.bin"), "target");
}

TEST_F(FileHandlesTest, CopyingAMissingFileFailsAndCreatesNothing) {
  EXPECT_FALSE(platform::CopyFileNoReplace(Host(u"missing.bin").c_str(), Host(u"to.bin").c_str()));
  EXPECT_FALSE(Exists(u"to.bin"));
}

TEST_F(FileHandlesTest, DeletesAnExistingFileAndReportsAMissingOne) {
  Put(u"doomed.bin", "x");
  EXPECT_TRUE(platform::DeleteFileAt(Host(u"doomed.bin").c_str()));
  EXPECT_FALSE(Exists(u"doomed.bin"));
  EXPECT_FALSE(platform::DeleteFileAt(Host(u"doomed.bin").c_str()));
}

TEST_F(FileHandlesTest, HandlesNamesBeyondAscii) {
  const std::u16string first = u"caf\u00E9 \u4E2D.qvo";
  const std::u16string second = u"\u00C5\u20AC \U0001F600.qvo";
  Put(first, "360");
  EXPECT_EQ(Content(first), "360");
  ASSERT_TRUE(platform::MoveFileTo(Host(first).c_str(), Host(second).c_str()));
  EXPECT_FALSE(Exists(first));
  EXPECT_TRUE(platform::CopyFileNoReplace(Host(second).c_str(), Host(first).c_str()));
  EXPECT_EQ(Content(first), "360");
  EXPECT_TRUE(platform::DeleteFileAt(Host(second).c_str()));
  EXPECT_FALSE(Exists(second));
}

TEST_F(FileHandlesTest, TakesPathsWithoutTheLongPathPrefixAsTheyAre) {
  Put(u"plain.bin", "plain");
  std::u16string plain = folder_.path().u16string() + u"\\plain.bin";
  FileHandle file = platform::OpenFileForReading(plain.c_str());
  ASSERT_NE(file, platform::InvalidFileHandle());
  platform::CloseFileHandle(file);
}

}  // namespace
