#include "stitcher_api/path_conversion.h"

#include <gtest/gtest.h>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace {

// The code page that NarrowPath converts to: the system's on Windows, Windows-1252 elsewhere.
unsigned AnsiCodePage() {
#if defined(_WIN32)
  return GetACP();
#else
  return 1252;
#endif
}

TEST(PathConversionTest, DropsTheFirstFourCharactersWhateverTheyAre) {
  EXPECT_EQ(NarrowPath(u"\\\\?\\C:\\a.qvo"), "C:\\a.qvo");
  EXPECT_EQ(Utf8Path(u"\\\\?\\C:\\a.qvo"), "C:\\a.qvo");
  EXPECT_EQ(NarrowPath(u"C:\\x\\a.qvo"), "\\a.qvo");
  EXPECT_EQ(Utf8Path(u"C:\\x\\a.qvo"), "\\a.qvo");
  EXPECT_EQ(NarrowPath(u"ab"), "") << "shorter than the prefix";
  EXPECT_EQ(Utf8Path(u""), "");
}

TEST(PathConversionTest, NarrowPathReplacesWhatTheCodePageLacksWhileUtf8KeepsIt) {
  const char16_t* path = u"\\\\?\\D:\\\u4E2D\u00E9\u20AC\u00A0.qvo";
  EXPECT_EQ(Utf8Path(path), "D:\\\xE4\xB8\xAD\xC3\xA9\xE2\x82\xAC\xC2\xA0.qvo");
  EXPECT_EQ(Utf8Path(u"\\\\?\\\U0001F600"), "\xF0\x9F\x98\x80");
  if (AnsiCodePage() != 1252) {
    GTEST_SKIP() << "the narrow bytes below are Windows-1252's; this system's code page is "
                 << AnsiCodePage();
  }
  EXPECT_EQ(NarrowPath(path), "D:\\?\xE9\x80\xA0.qvo");
  EXPECT_EQ(NarrowPath(u"\\\\?\\\U0001F600"), "??") << "one default character per code unit";
}

}  // namespace
