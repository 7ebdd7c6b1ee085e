#include "platform/child_process.h"

#include <fcntl.h>
#include <limits.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <thread>

extern char** environ;

namespace platform {
namespace {

constexpr std::chrono::milliseconds kPoll{10};

std::string SignalDescription(int signal_number) {
  const struct {
    int number;
    const char* text;
  } known[] = {
      {SIGSEGV, "SIGSEGV (segmentation fault)"},
      {SIGBUS, "SIGBUS (bus error)"},
      {SIGFPE, "SIGFPE (arithmetic fault)"},
      {SIGILL, "SIGILL (illegal instruction)"},
      {SIGABRT, "SIGABRT (abort)"},
      {SIGKILL, "SIGKILL (killed)"},
      {SIGTERM, "SIGTERM (terminated)"},
      {SIGTRAP, "SIGTRAP (trap)"},
  };
  for (const auto& signal : known) {
    if (signal.number == signal_number) return signal.text;
  }
  return "signal " + std::to_string(signal_number);
}

ChildEnd EndOf(int status) {
  ChildEnd end;
  if (WIFSIGNALED(status)) {
    end.faulted = true;
    end.code = static_cast<uint32_t>(WTERMSIG(status));
    end.description = SignalDescription(WTERMSIG(status));
  } else {
    end.code = static_cast<uint32_t>(WEXITSTATUS(status));
    end.description = "exit code " + std::to_string(end.code);
  }
  return end;
}

}  // namespace

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& arguments,
                           const std::string& output_path) {
  std::vector<char*> argv;
  argv.push_back(const_cast<char*>(program.c_str()));
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output_path.c_str(),
                                   O_WRONLY | O_CREAT | O_TRUNC, 0644);
  posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
  pid_t pid = 0;
  const int result = posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (result != 0) {
    error_ = "cannot start " + program + ": " + std::strerror(result);
    return;
  }
  process_ = pid;
  started_ = true;
}

ChildProcess::~ChildProcess() {
  if (!started_ || ended_) return;
  Kill();
  int status = 0;
  waitpid(static_cast<pid_t>(process_), &status, 0);
}

bool ChildProcess::WaitForEnd(std::chrono::milliseconds timeout, ChildEnd* end) {
  if (!started_) return false;
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  while (!ended_) {
    int status = 0;
    const pid_t waited = waitpid(static_cast<pid_t>(process_), &status, WNOHANG);
    if (waited == static_cast<pid_t>(process_)) {
      ended_ = true;
      end_ = EndOf(status);
    } else if (waited < 0 && errno != EINTR) {
      ended_ = true;
      end_.description = "lost: " + std::string(std::strerror(errno));
    } else if (std::chrono::steady_clock::now() >= deadline) {
      return false;
    } else {
      std::this_thread::sleep_for(kPoll);
    }
  }
  *end = end_;
  return true;
}

void ChildProcess::Kill() {
  if (started_ && !ended_) kill(static_cast<pid_t>(process_), SIGKILL);
}

std::string RunningProgram() {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof(path) - 1);
  return std::string(path, length > 0 ? static_cast<size_t>(length) : 0);
}

}  // namespace platform
