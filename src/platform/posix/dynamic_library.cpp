#include "platform/dynamic_library.h"

#include <dlfcn.h>
#include <limits.h>
#include <unistd.h>

namespace platform {

DynamicLibrary::DynamicLibrary(const std::string& path) {
  handle_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle_ == nullptr) error_ = dlerror();
}

DynamicLibrary::~DynamicLibrary() { Unload(); }

void* DynamicLibrary::Symbol(const char* name) const {
  return handle_ == nullptr ? nullptr : dlsym(handle_, name);
}

bool DynamicLibrary::Unload() {
  if (handle_ == nullptr) return false;
  bool freed = dlclose(handle_) == 0;
  handle_ = nullptr;
  return freed;
}

std::string ExecutableFolder() {
  char path[PATH_MAX];
  ssize_t length = readlink("/proc/self/exe", path, sizeof(path) - 1);
  std::string executable(path, length > 0 ? static_cast<size_t>(length) : 0);
  return executable.substr(0, executable.find_last_of('/'));
}

std::string PluginFileName(const std::string& stem) { return stem + ".so"; }

std::string ProgramFileName(const std::string& stem) { return stem; }

}  // namespace platform
