// The host's records as the host sees them: raw bytes at fixed offsets. Layout (offsets, sizes)
// is checked at compile time in the headers; these tests cover what that cannot see: which
// selector parameter is which, and the encoding of each field (float, 16-bit signed, 64-bit).
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "host_sdk/host_assumptions.h"
#include "host_sdk/premiere_importer.h"

namespace {

template <typename T>
T ReadAt(const unsigned char* bytes, size_t offset) {
  T value;
  std::memcpy(&value, bytes + offset, sizeof(T));
  return value;
}

template <typename T>
void WriteAt(unsigned char* bytes, size_t offset, T value) {
  std::memcpy(bytes + offset, &value, sizeof(T));
}

// imOpenFile8 and imQuietFile, called the way the host calls them.

TEST(FileOpenRecordTest, ThePathAndIdsComeFromTheRecordAndTheReferenceGoesToBothSlots) {
  const char16_t path[] = u"C:\\clips\\a.qvo";
  char* private_block = nullptr;
  char** private_handle = &private_block;
  alignas(8) unsigned char record[68] = {};
  WriteAt(record, 12, static_cast<const char16_t*>(path));
  WriteAt(record, 36, static_cast<void*>(private_handle));
  WriteAt<int32_t>(record, 52, 0x1234);
  imFileRef host_slot = nullptr;

  imFileOpenRec8* open = OpenRecord(&host_slot, record);
  imFileRef* slot = OpenFileRefSlot(&host_slot, record);
  // Copied out first: gtest binds references, which packed fields do not support.
  const char16_t* filepath = open->fileinfo.filepath;
  void* privatedata = open->privatedata;
  int32_t importer_id = open->inImporterID;
  ASSERT_EQ(filepath, path);
  EXPECT_EQ(privatedata, static_cast<void*>(private_handle));
  EXPECT_EQ(importer_id, 0x1234);

  int context = 0;
  *slot = &context;
  open->fileinfo.fileref = &context;
  EXPECT_EQ(host_slot, static_cast<imFileRef>(&context));
  EXPECT_EQ(ReadAt<void*>(record, 20), static_cast<void*>(&context));
}

TEST(FileOpenRecordTest, QuietingAndClosingMarkTheHostsSlotClosed) {
  int context = 0;
  imFileRef quiet_slot = &context;
  imFileRef close_slot = &context;

  *QuietFileRefSlot(&quiet_slot) = reinterpret_cast<imFileRef>(kBadFileRef);
  *CloseFileRefSlot(&close_slot) = reinterpret_cast<imFileRef>(imInvalidHandleValue);

  EXPECT_EQ(reinterpret_cast<intptr_t>(quiet_slot), -1);
  EXPECT_EQ(reinterpret_cast<intptr_t>(close_slot), -1);
}

// imGetInfo8: the host allocates the record and reads what the importer wrote.

TEST(FileInfoRecordTest, WrittenFieldsReachTheHostInTheirEncoding) {
  // Room for the newest host's record, whose last three bytes this declaration does not cover.
  alignas(8) unsigned char host[5376];
  std::memset(host, 0xCD, sizeof(host));
  WriteAt<int32_t>(host, 46, 77);  // the host's importer id

  auto* info = reinterpret_cast<imFileInfoRec8*>(host);
  const int32_t importer_id = info->vidInfo.importerID;
  info->hasVideo = 1;
  info->vidInfo.imageWidth = 3840;
  info->vidInfo.depth = 32;
  info->vidInfo.fieldType = static_cast<char>(prFieldsNone);
  info->vidInfo.alphaType = alphaNone;
  info->audInfo.numChannels = 2;
  info->audInfo.sampleRate = 44100.0f;
  info->audInfo.sampleType = kPrAudioSampleType_32BitFloat;
  info->audDuration = 0x123456789LL;  // beyond 32 bits
  info->ivVerticalCapturedView = 180;

  EXPECT_EQ(importer_id, 77);
  EXPECT_EQ(ReadAt<char>(host, 0), 1);
  EXPECT_EQ(ReadAt<int32_t>(host, 2), 3840);
  EXPECT_EQ(ReadAt<int16_t>(host, 12), 32);
  EXPECT_EQ(ReadAt<unsigned char>(host, 18), 0);
  EXPECT_EQ(ReadAt<unsigned char>(host, 19), 0xCD);  // fieldType is one byte
  EXPECT_EQ(ReadAt<unsigned char>(host, 22), 5);
  EXPECT_EQ(ReadAt<unsigned char>(host, 23), 0xCD);  // alphaType is one byte
  EXPECT_EQ(ReadAt<int32_t>(host, 174), 2);
  EXPECT_EQ(ReadAt<float>(host, 178), 44100.0f);
  EXPECT_EQ(ReadAt<uint32_t>(host, 182), 6u);
  EXPECT_EQ(ReadAt<int64_t>(host, 186), 0x123456789LL);
  EXPECT_EQ(ReadAt<uint32_t>(host, 5369), 180u);
  for (size_t i = 5373; i < sizeof(host); ++i) EXPECT_EQ(host[i], 0xCD) << "byte " << i;
}

}  // namespace
