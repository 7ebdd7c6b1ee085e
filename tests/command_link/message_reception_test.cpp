#include "command_link/message_reception.h"

#include <gtest/gtest.h>

namespace {

using Pieces = std::vector<std::string>;

Pieces Split(const std::string& text) {
  Pieces pieces = {"kept"};
  SplitString(text, pieces, "###");
  return pieces;
}

TEST(SplitStringTest, AppendsThePiecesBetweenDelimitersFromTheLeft) {
  EXPECT_EQ(Split("A###B###"), (Pieces{"kept", "A", "B"}));
  EXPECT_EQ(Split("A###B"), (Pieces{"kept", "A", "B"}));
  EXPECT_EQ(Split("###A"), (Pieces{"kept", "", "A"}));
  EXPECT_EQ(Split("A######B"), (Pieces{"kept", "A", "", "B"}));
  EXPECT_EQ(Split("A"), (Pieces{"kept", "A"}));
  EXPECT_EQ(Split("A####"), (Pieces{"kept", "A", "#"})) << "non-overlapping, left first";
}

}  // namespace
