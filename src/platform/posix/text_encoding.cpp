#include "platform/text_encoding.h"

#include <cstddef>
#include <string>

namespace platform {
namespace {

constexpr char kDefaultCharacter = '?';

// Windows-1252 bytes 0x80 to 0x9F; 0 marks the five bytes the code page leaves undefined.
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

char ToCp1252(char32_t code_point) {
  if (code_point < 0x80 || (code_point >= 0xA0 && code_point <= 0xFF)) {
    return static_cast<char>(code_point);
  }
  for (int i = 0; i < 32; ++i) {
    if (kCp1252High[i] != 0 && kCp1252High[i] == code_point) return static_cast<char>(0x80 + i);
  }
  return kDefaultCharacter;
}

void AppendUtf8(char32_t c, std::string& out) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

// Decodes UTF-16 up to and including the terminator; a lone surrogate becomes U+FFFD, as
// Windows converts it.
std::u32string DecodeTerminated(const char16_t* wide) {
  std::u32string code_points;
  for (size_t i = 0;; ++i) {
    char32_t unit = wide[i];
    if (unit >= 0xD800 && unit <= 0xDBFF && wide[i + 1] >= 0xDC00 && wide[i + 1] <= 0xDFFF) {
      code_points += 0x10000 + ((unit - 0xD800) << 10) + (wide[i + 1] - 0xDC00);
      ++i;
    } else if (unit >= 0xD800 && unit <= 0xDFFF) {
      code_points += 0xFFFD;
    } else {
      code_points += unit;
    }
    if (unit == 0) return code_points;
  }
}

// A single-byte code page maps code units one by one: each half of a surrogate pair becomes a
// default character, as Windows converts it.
std::string ToCp1252Terminated(const char16_t* wide) {
  std::string converted;
  for (size_t i = 0;; ++i) {
    converted += ToCp1252(wide[i]);
    if (wide[i] == 0) return converted;
  }
}

std::string ToUtf8Terminated(const char16_t* wide) {
  std::string converted;
  for (char32_t c : DecodeTerminated(wide)) AppendUtf8(c, converted);
  return converted;
}

// The bytes after a UTF-8 lead byte, or -1 for a byte no sequence starts with.
int ContinuationCount(unsigned char lead) {
  if (lead < 0x80) return 0;
  if (lead >= 0xC2 && lead <= 0xDF) return 1;
  if (lead >= 0xE0 && lead <= 0xEF) return 2;
  if (lead >= 0xF0 && lead <= 0xF4) return 3;
  return -1;
}

// False for bytes that are not UTF-8, overlong forms and code points past U+10FFFF included.
bool DecodeUtf8(const std::string& utf8, std::u32string* code_points) {
  constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
  for (size_t i = 0; i < utf8.size();) {
    const unsigned char lead = static_cast<unsigned char>(utf8[i]);
    const int count = ContinuationCount(lead);
    if (count < 0 || utf8.size() - i <= static_cast<size_t>(count)) return false;
    char32_t code_point = count == 0 ? lead : lead & (0x3F >> count);
    for (int k = 1; k <= count; ++k) {
      const unsigned char next = static_cast<unsigned char>(utf8[i + k]);
      if ((next & 0xC0) != 0x80) return false;
      code_point = (code_point << 6) | (next & 0x3F);
    }
    if (code_point < kSmallest[count] || code_point > 0x10FFFF) return false;
    code_points->push_back(code_point);
    i += static_cast<size_t>(count) + 1;
  }
  return true;
}

}  // namespace

int WideToMultiByte(CodePage code_page, const char16_t* wide, char* out, int out_size) {
  std::string converted =
      code_page == CodePage::kUtf8 ? ToUtf8Terminated(wide) : ToCp1252Terminated(wide);
  int needed = static_cast<int>(converted.size());
  if (out_size == 0) return needed;
  if (out_size < needed) return 0;
  converted.copy(out, converted.size());
  return needed;
}

uint32_t SystemAnsiCodePageNumber() { return 1252; }

bool SystemAnsiCanSpell(const std::string& utf8) {
  std::u32string code_points;
  if (!DecodeUtf8(utf8, &code_points)) return false;
  for (char32_t c : code_points) {
    if (c != kDefaultCharacter && ToCp1252(c) == kDefaultCharacter) return false;
  }
  return true;
}

}  // namespace platform
