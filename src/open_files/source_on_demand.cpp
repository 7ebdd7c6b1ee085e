#include "open_files/source_on_demand.h"

#include "logging/plugin_log.h"

bool EnsureSource(FileContext* context, int32_t log_line) {
  if (context->source) return true;
  context->source = PrSourceFactory::Create(context->path, &context->media_info);
  if (context->source) return true;
  // The words are shared by the picture and sound paths and have always read so.
  PluginLog::Get()->Write(kLogError, kLogSource, log_line,
                          "create pr source failed on socket request!");
  return false;
}
