#include "qvo_host/check/startup_checks.h"

#include <chrono>
#include <cstdio>
#include <string>

namespace host_sim {
namespace {

constexpr int32_t kQvoFileType = 0x0071766F;
constexpr char kFileTypeName[] = "Quorvel Omni Project";

struct CapabilityWord {
  const char* name;
  int32_t value;
  int32_t expected;
};

std::string Hex(int32_t value) {
  char text[16];
  std::snprintf(text, sizeof(text), "0x%08X", static_cast<unsigned>(value));
  return text;
}

void CheckCapabilities(const imImportInfoRec& capabilities, CheckJournal* journal) {
  const CapabilityWord words[] = {
      {"canSave", capabilities.canSave, 1},
      {"canDelete", capabilities.canDelete, 1},
      {"hasSetup", capabilities.hasSetup, 1},
      {"dontCache", capabilities.dontCache, 0},
      {"setupOnDblClk", capabilities.setupOnDblClk, 0},
      {"keepLoaded", capabilities.keepLoaded, 0},
      {"priority", capabilities.priority, 0},
      {"canCalcSizes", capabilities.canCalcSizes, 1},
      {"canTrim", capabilities.canTrim, 1},
      {"avoidAudioConform", capabilities.avoidAudioConform, 1},
  };
  std::string figure;
  bool as_expected = true;
  for (const CapabilityWord& word : words) {
    if (!figure.empty()) figure += ", ";
    figure += std::string(word.name) + " " + std::to_string(word.value);
    if (word.value != word.expected) {
      figure += " (expected " + std::to_string(word.expected) + ")";
      as_expected = false;
    }
  }
  journal->Add("capability words", figure, as_expected);
}

void CheckFileTypes(HostSession& session, CheckJournal* journal) {
  int32_t last_result = 0;
  const std::vector<RegisteredFileType> types = session.FileTypes(&last_result);
  std::string figure;
  for (const RegisteredFileType& type : types) {
    figure += Hex(type.file_type) + " \"" + type.name + "\" (\"" + type.short_name + "\"), .";
    for (const std::string& extension : type.extensions) figure += extension + " ";
  }
  figure += "list ended with " + std::to_string(last_result);
  const bool one_qvo_type =
      types.size() == 1 && types[0].file_type == kQvoFileType && types[0].name == kFileTypeName &&
      types[0].short_name == kFileTypeName &&
      types[0].extensions == std::vector<std::string>{"qvo"} && last_result == imBadFormatIndex;
  journal->Add("file type", figure, one_qvo_type);
}

}  // namespace

bool CheckStartUp(HostSession& session, CheckJournal* journal) {
  imImportInfoRec capabilities;
  const int32_t result = session.StartUp(&capabilities);
  journal->Add("start-up", "result " + std::to_string(result), result == imNoErr);
  if (result != imNoErr) return false;
  CheckCapabilities(capabilities, journal);
  CheckFileTypes(session, journal);
  return true;
}

void CheckShutDown(HostSession& session, CheckJournal* journal) {
  const auto start = std::chrono::steady_clock::now();
  const int32_t result = session.ShutDown();
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  const double bound = std::chrono::duration<double>(kShutDownBound).count();
  char figure[96];
  std::snprintf(figure, sizeof(figure), "result %d in %.2f s (bound %.1f s)",
                static_cast<int>(result), seconds,
                std::chrono::duration<double>(kShutDownBound).count());
  journal->Add("shut-down", figure, result == imNoErr && seconds <= bound);
}

}  // namespace host_sim
