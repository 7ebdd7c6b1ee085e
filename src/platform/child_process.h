// A program started by this one, for a parent that must outlive whatever the child runs into: a
// crash, a hang, or an exit from deep inside a library.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace platform {

// How a child ended.
struct ChildEnd {
  bool faulted = false;  // ended by a signal (POSIX) or an exception code (Windows)
  uint32_t code = 0;     // the exit code, the signal number or the exception code
  // "exit code 3", "SIGSEGV (segmentation fault)", "exception 0xC0000005 (access violation)"
  std::string description;
};

class ChildProcess {
 public:
  // Starts `program` (UTF-8 path) with `arguments` (UTF-8) and this process's environment, its
  // standard output and error going to the file `output_path` (UTF-8, made anew). Check started().
  ChildProcess(const std::string& program, const std::vector<std::string>& arguments,
               const std::string& output_path);
  // Ends a child that still runs, and waits for it.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  bool started() const { return started_; }
  const std::string& error() const { return error_; }

  // Waits at most `timeout` for the child to end: true, with `*end` filled, once it has ended.
  bool WaitForEnd(std::chrono::milliseconds timeout, ChildEnd* end);

  // Ends the child at once; WaitForEnd then reports it.
  void Kill();

 private:
  intptr_t process_ = 0;  // the process ID on POSIX, its handle on Windows
  bool started_ = false;
  bool ended_ = false;
  ChildEnd end_;
  std::string error_;
};

// The full path of the running program, UTF-8.
std::string RunningProgram();

}  // namespace platform
