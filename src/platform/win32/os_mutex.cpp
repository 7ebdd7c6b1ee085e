#include "platform/os_mutex.h"

#include <windows.h>

namespace platform {

OsMutex::OsMutex() : handle_(CreateMutexW(nullptr, FALSE, nullptr)) {}

OsMutex::~OsMutex() {
  if (handle_ != nullptr) CloseHandle(handle_);
}

void OsMutex::Wait() { WaitForSingleObject(handle_, INFINITE); }

void OsMutex::Release() { ReleaseMutex(handle_); }

}  // namespace platform
