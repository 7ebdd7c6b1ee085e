// Every test program logs into a profile folder of its own, never into the user's.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/environment.h"
#include "support/temp_folder.h"

namespace {

class ProfileEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    std::filesystem::create_directories(profile_.path() / "AppData" / "Local");
    platform::SetEnvironment("USERPROFILE", profile_.path().string());
  }

 private:
  TempFolder profile_;
};

}  // namespace

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  ::testing::AddGlobalTestEnvironment(new ProfileEnvironment);
  return RUN_ALL_TESTS();
}
