// An unnamed operating-system mutex (CreateMutexW on Windows): it serialises the threads of one
// process only.
#pragma once

namespace platform {

class OsMutex {
 public:
  OsMutex();
  ~OsMutex();
  OsMutex(const OsMutex&) = delete;
  OsMutex& operator=(const OsMutex&) = delete;

  // False when the mutex could not be made; Wait and Release then do nothing.
  bool valid() const { return handle_ != nullptr; }

  void Wait();  // no time-out
  void Release();

 private:
  void* handle_;
};

// Holds an OsMutex for its own lifetime.
class OsMutexLock {
 public:
  explicit OsMutexLock(OsMutex& mutex) : mutex_(mutex) { mutex_.Wait(); }
  ~OsMutexLock() { mutex_.Release(); }
  OsMutexLock(const OsMutexLock&) = delete;
  OsMutexLock& operator=(const OsMutexLock&) = delete;

 private:
  OsMutex& mutex_;
};

}  // namespace platform
