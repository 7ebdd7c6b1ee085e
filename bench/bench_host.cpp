#include "bench_host.h"

#include <filesystem>
#include <map>

#include "platform/environment.h"

namespace {

constexpr int32_t kInterfaceVersion = 23;

BenchHost* started = nullptr;

}  // namespace

void UseBenchProfile() {
  static TempFolder* profile = new TempFolder;
  std::filesystem::create_directories(profile->path() / "AppData" / "Local");
  platform::SetEnvironment("USERPROFILE", profile->path().string());
  SetHomeDriveAndPath(profile->path().string());
}

BenchHost& BenchHost::Get() {
  if (started == nullptr) started = new BenchHost;
  return *started;
}

void BenchHost::ShutDown() {
  if (started == nullptr) return;
  for (auto& clip : started->clips_) clip->Close();
  started->session_.ShutDown();
}

BenchHost::BenchHost()
    : plugin_(host_sim::DefaultPluginPath()), session_(plugin_, kInterfaceVersion) {
  host().frames().set_recycling(true);
  imImportInfoRec capabilities;
  session_.StartUp(&capabilities);
  int32_t last_result = 0;
  session_.FileTypes(&last_result);
}

host_sim::HostFile* BenchHost::OpenClip(const std::string& project) {
  const std::string path =
      folder_.WriteFile("clip" + std::to_string(clips_.size() + 1) + ".qvo", project);
  clips_.push_back(
      std::make_unique<host_sim::HostFile>(session_, path, session_.FileTypeFor(path)->file_type));
  clips_.back()->Open();
  clips_.back()->GetInfo();
  return clips_.back().get();
}

std::string BenchHost::PathOf(const host_sim::HostFile& clip) {
  // The host hands "\\?\" and the native path.
  return std::filesystem::path(clip.host_path().substr(4)).u8string();
}

host_sim::HostFile* FlatClipOfWidth(int64_t width) {
  static std::map<int64_t, host_sim::HostFile*> clips;
  host_sim::HostFile*& clip = clips[width];
  if (clip == nullptr) {
    clip = BenchHost::Get().OpenClip(R"({"width": )" + std::to_string(width) + R"(, "height": )" +
                                     std::to_string(width / 2) +
                                     R"(, "frames": 1000000, "render": "flat"})");
  }
  return clip;
}

DirectSource::DirectSource(const host_sim::HostFile& clip) {
  MediaInfo info;
  source_ = PrSourceFactory::Create(BenchHost::PathOf(clip), &info);
}

DirectSource::DirectSource(const host_sim::HostFile& clip, int32_t width) : DirectSource(clip) {
  host_sim::HostFrames& frames = BenchHost::Get().host().frames();
  width_ = width;
  frame_ = frames.Create(kPlanarFormat, width, width / 2);
  const host_sim::HostFrame* made = frames.Find(frame_);
  for (int p = 0; p < 3; ++p) {
    planes_[p] = made->planes[p].bytes;
    strides_[p] = made->planes[p].row_bytes;
  }
}

DirectSource::~DirectSource() {
  if (frame_ != nullptr) BenchHost::Get().host().frames().Dispose(frame_);
  PrSourceFactory::Destroy(source_);
}

int32_t DirectSource::WriteFrame(int64_t index) {
  return source_->GetVideoFrame(index, width_, width_ / 2, planes_, strides_);
}
