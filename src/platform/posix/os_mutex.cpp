#include "platform/os_mutex.h"

#include <mutex>

namespace platform {

OsMutex::OsMutex() : handle_(new std::mutex) {}

OsMutex::~OsMutex() { delete static_cast<std::mutex*>(handle_); }

void OsMutex::Wait() { static_cast<std::mutex*>(handle_)->lock(); }

void OsMutex::Release() { static_cast<std::mutex*>(handle_)->unlock(); }

}  // namespace platform
