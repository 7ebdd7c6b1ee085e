#include "stitcher_api/path_conversion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>

#include "platform/text_encoding.h"

namespace {

// The last two are shorter than the prefix.
TEST(PathConversionTest, DropsTheFirstFourCharactersWhateverTheyAre) {
  const std::pair<const char16_t*, const char*> cases[] = {
      {u"\\\\?\\C:\\a.qvo", "C:\\a.qvo"}, {u"C:\\x\\a.qvo", "\\a.qvo"}, {u"ab", ""}, {u"", ""}};
  for (const auto& [wide, dropped] : cases) {
    EXPECT_EQ(NarrowPath(wide), dropped);
    EXPECT_EQ(Utf8Path(wide), dropped);
  }
}

TEST(PathConversionTest, NarrowPathReplacesWhatTheCodePageLacksWhileUtf8KeepsIt) {
  const char16_t* path = u"\\\\?\\D:\\\u4E2D\u00E9\u20AC\u00A0\u00FF.qvo";
  EXPECT_EQ(Utf8Path(path), "D:\\\xE4\xB8\xAD\xC3\xA9\xE2\x82\xAC\xC2\xA0\xC3\xBF.qvo");
  EXPECT_EQ(Utf8Path(u"\\\\?\\\U0001F600"), "\xF0\x9F\x98\x80");
  // NarrowPath converts to the system's code page on Windows, Windows-1252 elsewhere.
  if (platform::SystemAnsiCodePageNumber() != 1252) {
    GTEST_SKIP() << "the narrow bytes below are Windows-1252's; this system's code page is "
                 << platform::SystemAnsiCodePageNumber();
  }
  EXPECT_EQ(NarrowPath(path), "D:\\?\xE9\x80\xA0\xFF.qvo");
  EXPECT_EQ(NarrowPath(u"\\\\?\\\U0001F600"), "??") << "one default character per code unit";
}

// Whatever the system code page is, it spells a path exactly when NarrowPath adds no default
// character to it.
TEST(PathConversionTest, SystemAnsiCanSpellExactlyWhatNarrowPathKeeps) {
  const std::u16string paths[] = {u"C:\\a?.qvo", u"C:\\Caf\u00E9 360\u20AC",
                                  u"C:\\\u65E5\u672C\u8A9E", u"C:\\\U0001F600"};
  for (const std::u16string& path : paths) {
    const std::string utf8 = Utf8Path((u"\\\\?\\" + path).c_str());
    SCOPED_TRACE(utf8);
    const std::string narrow = NarrowPath((u"\\\\?\\" + path).c_str());
    const bool kept =
        std::count(narrow.begin(), narrow.end(), '?') == std::count(path.begin(), path.end(), u'?');
    EXPECT_EQ(platform::SystemAnsiCanSpell(utf8), kept);
  }
  for (const char* not_utf8 : {"C:\\\xE9", "C:\\\xE0\x83\xA9"}) {
    EXPECT_FALSE(platform::SystemAnsiCanSpell(not_utf8)) << "a lone byte, an overlong form";
  }
}

}  // namespace
