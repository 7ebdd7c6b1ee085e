#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "importer/sample_header_answers.h"
#include "open_files/private_file_record.h"
#include "platform/file_handles.h"
#include "support/temp_folder.h"

namespace {

// The host stores five texts (selector 53): they go into the header, which is written to the
// host's file, and come back out to the host (selector 52). A field without a terminator is
// copied as empty, as strcpy_s does.
TEST(HeaderTextsTest, StoredTextsAreWrittenWithTheHeaderAndReadBack) {
  PrivateFileRecord record{};
  char* block = reinterpret_cast<char*>(&record);
  imTimeInfoRec8 stored{};
  stored.privatedata = &block;
  const auto put = [](char* field, const char* text) {
    std::memcpy(field, text, std::strlen(text) + 1);
  };
  put(stored.orgtime, "00:00:01:00");
  put(stored.alttime, "17 characters....");
  put(stored.orgreel, "reel A");
  std::memset(stored.altreel, 'x', sizeof(stored.altreel));
  put(stored.logcomment, "a comment");
  TempFolder folder;
  const std::string path = folder.Join("header.qvo");
  platform::FileHandle file = platform::CreateNewFileForWriting(HostPath(path).c_str());
  EXPECT_EQ(SetTimeInfo(file, &stored), 0);
  platform::CloseFileHandle(file);

  const std::string written = ReadWholeFile(path);
  ASSERT_EQ(written.size(), 602u);
  EXPECT_EQ(written.compare(0, 602, reinterpret_cast<const char*>(&record.header), 602), 0);
  imTimeInfoRec8 read{};
  read.privatedata = &block;
  EXPECT_EQ(GetTimeInfo(&read), 0);
  EXPECT_STREQ(read.orgtime, "00:00:01:00");
  EXPECT_STREQ(read.alttime, "17 characters....");
  EXPECT_STREQ(read.orgreel, "reel A");
  EXPECT_STREQ(read.altreel, "") << "40 characters and no terminator";
  EXPECT_STREQ(read.logcomment, "a comment");
}

}  // namespace
