#include "platform/fault_report.h"

#include <windows.h>

#include "platform/win32/wide_text.h"

namespace platform {
namespace {

FaultHandler installed_handler = nullptr;

const char* ExceptionName(DWORD code) {
  switch (code) {
    case EXCEPTION_ACCESS_VIOLATION:
      return "EXCEPTION_ACCESS_VIOLATION";
    case EXCEPTION_STACK_OVERFLOW:
      return "EXCEPTION_STACK_OVERFLOW";
    case EXCEPTION_INT_DIVIDE_BY_ZERO:
      return "EXCEPTION_INT_DIVIDE_BY_ZERO";
    case EXCEPTION_ILLEGAL_INSTRUCTION:
      return "EXCEPTION_ILLEGAL_INSTRUCTION";
    case EXCEPTION_IN_PAGE_ERROR:
      return "EXCEPTION_IN_PAGE_ERROR";
    case EXCEPTION_BREAKPOINT:
      return "EXCEPTION_BREAKPOINT";
    default:
      return "exception";
  }
}

// Runs for an exception no frame handled; ending the process with its code lets the parent see it.
LONG WINAPI OnUnhandledException(EXCEPTION_POINTERS* pointers) {
  const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
  FaultFacts facts;
  facts.code = record.ExceptionCode;
  facts.kind = ExceptionName(record.ExceptionCode);
  facts.instruction = reinterpret_cast<uintptr_t>(record.ExceptionAddress);
  facts.has_data_address = (record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION ||
                            record.ExceptionCode == EXCEPTION_IN_PAGE_ERROR) &&
                           record.NumberParameters >= 2;
  if (facts.has_data_address) facts.data_address = record.ExceptionInformation[1];
  if (installed_handler != nullptr) installed_handler(facts);
  return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

void OnFault(FaultHandler handler) {
  installed_handler = handler;
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
  SetUnhandledExceptionFilter(OnUnhandledException);
}

bool LoadedModuleRange(const std::string& file_name, uintptr_t* start, uintptr_t* end) {
  const HMODULE module = GetModuleHandleW(Widen(file_name).c_str());
  if (module == nullptr) return false;
  const auto* base = reinterpret_cast<const unsigned char*>(module);
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
  *start = reinterpret_cast<uintptr_t>(base);
  *end = *start + nt->OptionalHeader.SizeOfImage;
  return true;
}

}  // namespace platform
