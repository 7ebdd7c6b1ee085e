#include "qvo_host/code_page_problem.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/text_encoding.h"

namespace {

// No ANSI code page has an emoji, and every one has ASCII.
TEST(CodePageProblemTest, NamesTheCodePageOnlyForAPathItCannotSpell) {
  EXPECT_EQ(host_sim::CodePageProblem("C:\\clips\\a.qvo"), "");
  EXPECT_EQ(host_sim::CodePageProblem("C:\\clips\\\xF0\x9F\x98\x80.qvo"),
            "the system code page (" + std::to_string(platform::SystemAnsiCodePageNumber()) +
                ") cannot spell this path, so the stitching library cannot be given it");
}

}  // namespace
