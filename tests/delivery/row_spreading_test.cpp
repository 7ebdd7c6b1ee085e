#include "delivery/row_spreading.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

// A byte of packed row `row` at column `column`; rows differ at every column.
uint8_t PackedByte(uint32_t row, uint32_t column) {
  return static_cast<uint8_t>(row + 1 + column * 3);
}

std::vector<uint8_t> PackedPicture(uint32_t row_bytes, uint32_t height, size_t buffer_size) {
  std::vector<uint8_t> buffer(buffer_size, 0xEE);
  for (uint32_t row = 0; row < height; ++row) {
    for (uint32_t column = 0; column < row_bytes; ++column) {
      buffer[row * row_bytes + column] = PackedByte(row, column);
    }
  }
  return buffer;
}

TEST(RowSpreadingTest, CopiesNothingUnlessPackedRowsAreShorterThanThePitch) {
  std::vector<uint8_t> source = PackedPicture(7680, 3, 7680 * 3);
  std::vector<uint8_t> destination(source.size(), 0);
  SpreadRowsToPitch(source.data(), destination.data(), 7680, 4, 1920, 3);
  EXPECT_EQ(destination, std::vector<uint8_t>(source.size(), 0)) << "rows of exactly the pitch";
  SpreadRowsToPitch(source.data(), destination.data(), 7000, 4, 1920, 2);
  EXPECT_EQ(destination, std::vector<uint8_t>(source.size(), 0)) << "rows longer than the pitch";
}

TEST(RowSpreadingTest, SpreadsPackedRowsInPlaceLastRowFirst) {
  const uint32_t pitch = 7696, row_bytes = 7680, height = 4;
  std::vector<uint8_t> buffer = PackedPicture(row_bytes, height, pitch * height);
  const std::vector<uint8_t> before = buffer;
  SpreadRowsToPitch(buffer.data(), buffer.data(), pitch, 4, 1920, height);
  // The rest of each row keeps whatever was there: for the first row, the start of the packed
  // second row; for the last, the buffer's original fill.
  for (uint32_t row = 0; row < height; ++row) {
    for (uint32_t i = 0; i < pitch; ++i) {
      const uint8_t expected = i < row_bytes ? PackedByte(row, i) : before[row * pitch + i];
      ASSERT_EQ(buffer[row * pitch + i], expected) << "row " << row << ", byte " << i;
    }
  }
}

TEST(RowSpreadingTest, OnlyTheFloatVuyaFormatTakesSixteenBytesAPixel) {
  EXPECT_EQ(BytesPerPixelForFormat(0x61795556), 16u);
  EXPECT_EQ(BytesPerPixelForFormat(0x61726762), 4u);
}

}  // namespace
