#include "qvo_host/check/worker_fault_report.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/fault_report.h"
#include "platform/guarded_memory.h"

namespace host_sim {
namespace {

struct NamedModule {
  char name[128] = {};
  uintptr_t start = 0;
  uintptr_t end = 0;
};

constexpr size_t kModules = 4;
NamedModule modules[kModules];
size_t module_count = 0;
const platform::RecordFile* record_file = nullptr;

// A line built without allocating, for a signal handler.
class FixedLine {
 public:
  void Text(const char* text) {
    while (*text != '\0' && length_ < sizeof(bytes_) - 1) bytes_[length_++] = *text++;
  }
  void Hex(uintptr_t value) {
    char digits[2 * sizeof(value) + 1];
    size_t count = 0;
    do {
      digits[count++] = "0123456789abcdef"[value % 16];
      value /= 16;
    } while (value != 0);
    Text("0x");
    while (count > 0 && length_ < sizeof(bytes_) - 1) bytes_[length_++] = digits[--count];
  }
  void Decimal(int64_t value) {
    char digits[24];
    size_t count = 0;
    do {
      digits[count++] = static_cast<char>('0' + value % 10);
      value /= 10;
    } while (value != 0);
    while (count > 0 && length_ < sizeof(bytes_) - 1) bytes_[length_++] = digits[--count];
  }
  const char* data() const { return bytes_; }
  size_t length() const { return length_; }

 private:
  char bytes_[512] = {};
  size_t length_ = 0;
};

void Where(uintptr_t address, FixedLine* line) {
  for (size_t i = 0; i < module_count; ++i) {
    if (address >= modules[i].start && address < modules[i].end) {
      line->Text(modules[i].name);
      line->Text("+");
      line->Hex(address - modules[i].start);
      return;
    }
  }
  line->Hex(address);
}

// fault, kind, code, where, address touched (or empty), bytes past a host buffer (or empty).
void OnFault(const platform::FaultFacts& facts) {
  FixedLine line;
  line.Text(journal::kFault);
  line.Text("\t");
  line.Text(facts.kind);
  line.Text("\t");
  line.Hex(facts.code);
  line.Text("\t");
  if (facts.instruction != 0) Where(facts.instruction, &line);
  line.Text("\t");
  if (facts.has_data_address) line.Hex(facts.data_address);
  line.Text("\t");
  const int64_t past =
      facts.has_data_address ? platform::BytesPastGuardedBlock(facts.data_address) : -1;
  if (past >= 0) line.Decimal(past);
  line.Text("\n");
  if (record_file != nullptr) record_file->Append(line.data(), line.length());
}

}  // namespace

void ReportFaultsTo(const CheckJournal& journal) {
  record_file = &journal.file();
  platform::OnFault(OnFault);
}

bool NameFaultsIn(const std::string& file_name) {
  if (module_count == kModules) return false;
  NamedModule& module = modules[module_count];
  if (!platform::LoadedModuleRange(file_name, &module.start, &module.end)) return false;
  std::memcpy(module.name, file_name.c_str(), std::min(file_name.size(), sizeof(module.name) - 1));
  ++module_count;
  return true;
}

}  // namespace host_sim
