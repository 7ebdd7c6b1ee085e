// Environment variables a test changes, put back as they were when it ends.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

class SavedEnvironment {
 public:
  // Remembers `names` as they are now; with `unset`, also removes them for the test.
  SavedEnvironment(std::vector<std::string> names, bool unset);
  // Puts every remembered variable back, removing those that were not set.
  ~SavedEnvironment();
  SavedEnvironment(const SavedEnvironment&) = delete;
  SavedEnvironment& operator=(const SavedEnvironment&) = delete;

 private:
  std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};
