// The MediaInfoCache as the file-information request fills it, driven in-process with the host
// simulator's records and suites.
#include "open_files/media_info_cache.h"

#include <gtest/gtest.h>

#include "host_sim/host.h"
#include "host_sim/host_records.h"
#include "importer/file_info.h"
#include "importer/file_lifecycle.h"
#include "support/temp_folder.h"

namespace {

class MediaInfoCacheTest : public ::testing::Test {
 protected:
  // Opens `native_path`, reads its information and closes it again, as the host does.
  void DescribeOnce(const std::string& native_path) {
    std::u16string path = host_sim::HostWidePath(native_path);
    imFileAccessRec8 access = host_sim::MakeAccessRecord(nullptr, 0, path, nullptr);
    imFileOpenRec8 open = host_sim::MakeOpenRecord(access, nullptr, 7);
    imFileRef file_ref = nullptr;
    ASSERT_EQ(OpenFile(host_.std_parms(), &file_ref, &open), imNoErr);
    host_sim::FileInfoBlock info(7, open.privatedata);
    ASSERT_EQ(GetFileInfo(host_.std_parms(), &access, info.record()), imNoErr);
    ReleaseFile(&file_ref, open.privatedata);
  }

  host_sim::Host host_;
  TempFolder folder_;
};

TEST_F(MediaInfoCacheTest, KeepsTheFirstDescriptionOfAPath) {
  std::string path =
      folder_.WriteFile("clip.qvo", R"({"width": 64, "height": 32, "offset": "first"})");
  DescribeOnce(path);
  folder_.WriteFile("clip.qvo", R"({"width": 64, "height": 32, "offset": "second"})");
  DescribeOnce(path);

  auto entry = MediaInfoCache().find(path);
  ASSERT_NE(entry, MediaInfoCache().end());
  EXPECT_EQ(entry->second.offset, "first");
  EXPECT_EQ(entry->second.width, 64);
}

}  // namespace
