#include "open_files/media_info_cache.h"

#include <gtest/gtest.h>

namespace {

TEST(MediaInfoCacheTest, KeepsTheFirstDescriptionOfAPath) {
  MediaInfo first;
  first.offset = "first";
  PublishMediaInfo("D:\\clips\\kept.qvo", first);
  MediaInfo second;
  second.offset = "second";
  PublishMediaInfo("D:\\clips\\kept.qvo", second);

  MediaInfo found;
  size_t entries = 0;
  ASSERT_TRUE(LookUpMediaInfo("D:\\clips\\kept.qvo", &found, &entries));
  EXPECT_EQ(found.offset, "first");
}

}  // namespace
