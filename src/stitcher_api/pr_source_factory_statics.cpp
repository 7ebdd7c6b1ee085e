// The stitching library's factory keeps its per-path registry in statics that its header declares
// and the plug-in defines; the plug-in's own code never touches them.
#include "stitcher_api/pr_source.h"

std::mutex PrSourceFactory::mutex_;
std::unordered_map<std::string, int> PrSourceFactory::refs_;
std::unordered_map<std::string, std::shared_ptr<PRSource>> PrSourceFactory::sources_;

PrSourceFactory& PrSourceFactory::operator=(const PrSourceFactory&) { return *this; }
