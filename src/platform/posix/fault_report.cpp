#include "platform/fault_report.h"

#include <link.h>
#include <signal.h>
#include <ucontext.h>

#include <cstring>

namespace platform {
namespace {

const struct {
  int number;
  const char* name;
} kFaultSignals[] = {{SIGSEGV, "SIGSEGV"}, {SIGBUS, "SIGBUS"},   {SIGFPE, "SIGFPE"},
                     {SIGILL, "SIGILL"},   {SIGABRT, "SIGABRT"}, {SIGTRAP, "SIGTRAP"}};

FaultHandler installed_handler = nullptr;

// Room to report a stack overflow from.
alignas(16) char alternate_stack[64 * 1024];

uintptr_t InstructionOf(void* context) {
#if defined(__x86_64__)
  return static_cast<uintptr_t>(static_cast<ucontext_t*>(context)->uc_mcontext.gregs[REG_RIP]);
#else
  (void)context;
  return 0;
#endif
}

// Installed with SA_RESETHAND: once it returns, the fault happens again, or abort() raises again,
// and the system's own action ends the process.
void OnSignal(int number, siginfo_t* info, void* context) {
  FaultFacts facts;
  facts.code = static_cast<uint32_t>(number);
  for (const auto& signal : kFaultSignals) {
    if (signal.number == number) facts.kind = signal.name;
  }
  facts.instruction = InstructionOf(context);
  facts.has_data_address = number == SIGSEGV || number == SIGBUS;
  facts.data_address = reinterpret_cast<uintptr_t>(info->si_addr);
  if (installed_handler != nullptr) installed_handler(facts);
}

struct ModuleSearch {
  const char* file_name;
  uintptr_t start = 0;
  uintptr_t end = 0;
};

int VisitModule(dl_phdr_info* info, size_t /*size*/, void* data) {
  auto* search = static_cast<ModuleSearch*>(data);
  const char* slash = std::strrchr(info->dlpi_name, '/');
  const char* name = slash != nullptr ? slash + 1 : info->dlpi_name;
  if (std::strcmp(name, search->file_name) != 0) return 0;
  search->start = UINTPTR_MAX;
  for (int i = 0; i < info->dlpi_phnum; ++i) {
    const ElfW(Phdr)& header = info->dlpi_phdr[i];
    if (header.p_type != PT_LOAD) continue;
    const uintptr_t first = info->dlpi_addr + header.p_vaddr;
    if (first < search->start) search->start = first;
    if (first + header.p_memsz > search->end) search->end = first + header.p_memsz;
  }
  return 1;
}

}  // namespace

void OnFault(FaultHandler handler) {
  installed_handler = handler;
  stack_t stack = {};
  stack.ss_sp = alternate_stack;
  stack.ss_size = sizeof(alternate_stack);
  sigaltstack(&stack, nullptr);
  struct sigaction action = {};
  action.sa_sigaction = OnSignal;
  action.sa_flags = SA_SIGINFO | SA_RESETHAND | SA_ONSTACK;
  sigemptyset(&action.sa_mask);
  for (const auto& signal : kFaultSignals) sigaction(signal.number, &action, nullptr);
}

bool LoadedModuleRange(const std::string& file_name, uintptr_t* start, uintptr_t* end) {
  ModuleSearch search{file_name.c_str()};
  if (dl_iterate_phdr(VisitModule, &search) == 0 || search.end == 0) return false;
  *start = search.start;
  *end = search.end;
  return true;
}

}  // namespace platform
