#include "command_link/message_reception.h"

#include <gtest/gtest.h>

namespace {

std::vector<std::string> Split(const std::string& text) {
  std::vector<std::string> pieces;
  SplitString(text, pieces, "###");
  return pieces;
}

using Pieces = std::vector<std::string>;

TEST(SplitStringTest, CutsAtEveryDelimiterFromTheLeft) {
  EXPECT_EQ(Split("A###B###"), (Pieces{"A", "B"}));
  EXPECT_EQ(Split("A###B"), (Pieces{"A", "B"}));
  EXPECT_EQ(Split("###A"), (Pieces{"", "A"}));
  EXPECT_EQ(Split("A######B"), (Pieces{"A", "", "B"}));
  EXPECT_EQ(Split("A"), (Pieces{"A"}));
  EXPECT_EQ(Split("A####"), (Pieces{"A", "#"})) << "non-overlapping, left first";
}

TEST(SplitStringTest, AppendsToWhatIsThere) {
  Pieces pieces = {"kept"};
  SplitString("x", pieces, "###");
  EXPECT_EQ(pieces, (Pieces{"kept", "x"}));
}

}  // namespace
