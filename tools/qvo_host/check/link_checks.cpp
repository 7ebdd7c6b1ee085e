#include "qvo_host/check/link_checks.h"

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>
#include <optional>

#include <rapidjson/document.h>

#include "command_server/requests.h"

namespace host_sim {
namespace {

constexpr char kStitchLine[] = "get source video:";
constexpr char kExpireLine[] = "Expire all cache after update param";
// The link's waits end by themselves after kLinkWait; the judge need not end them sooner.
constexpr std::chrono::milliseconds kLinkCallLimit = 2 * kLinkWait;

// The path as the plug-in knows it: the host hands "\\?\" and the native path.
std::string PathOf(const HostFile& file) {
  return std::filesystem::path(file.host_path().substr(4)).u8string();
}

// What the host was told: frames per second and seconds, from the time base.
struct ToldTiming {
  double fps = 0;
  double seconds = 0;
};

ToldTiming TimingOf(const HostFile& file) {
  const imFileInfoRec8& info = *file.info().record();
  ToldTiming told;
  const int32_t scale = info.vidScale;
  const int32_t sample_size = info.vidSampleSize;
  if (sample_size > 0) told.fps = static_cast<double>(scale) / sample_size;
  if (scale > 0) told.seconds = static_cast<double>(info.vidDuration) / scale;
  return told;
}

std::optional<rapidjson::Document> Parsed(const std::string& text) {
  rapidjson::Document answer;
  answer.Parse(text.c_str());
  if (answer.HasParseError() || !answer.IsObject()) return std::nullopt;
  return answer;
}

std::string RequestIdOf(const rapidjson::Document& answer) {
  const auto member = answer.FindMember("requestId");
  return member != answer.MemberEnd() && member->value.IsString() ? member->value.GetString()
                                                                  : std::string();
}

// Sends every request at once, as the plug-in reads what has come on each pass, and returns the
// answers by request ID; an answer that does not come within the wait is missing.
std::map<std::string, rapidjson::Document> Answers(command_server::CommandServer& server,
                                                   const std::vector<std::string>& requests) {
  std::map<std::string, rapidjson::Document> answers;
  size_t sent = 0;
  for (const std::string& request : requests) sent += server.Send(request) ? 1 : 0;
  const auto deadline = std::chrono::steady_clock::now() + kLinkWait;
  while (answers.size() < sent && std::chrono::steady_clock::now() < deadline) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    const std::optional<std::string> text = server.WaitForResponse(left);
    if (!text) break;
    std::optional<rapidjson::Document> answer = Parsed(*text);
    if (answer) answers.emplace(RequestIdOf(*answer), std::move(*answer));
  }
  return answers;
}

double NumberMember(const rapidjson::Value& object, const char* name) {
  const auto member = object.FindMember(name);
  return member != object.MemberEnd() && member->value.IsNumber() ? member->value.GetDouble()
                                                                  : std::nan("");
}

// The time base holds the frame rate in hundredths, truncated: the answer may lie one hundredth
// above, and the duration accordingly.
bool AgreesWithTimeBase(double answered_fps, double answered_seconds, const ToldTiming& told) {
  const double fps_step = 0.01;
  return answered_fps >= told.fps - 1e-9 && answered_fps < told.fps + fps_step &&
         std::fabs(answered_seconds - told.seconds) <= told.seconds * fps_step / told.fps + 1e-9;
}

void CheckMediaInfo(const CheckedClip& clip, const rapidjson::Document* answer,
                    CheckJournal* journal) {
  const ToldTiming told = TimingOf(*clip.file);
  const std::string what = "command link: get_media_info " + clip.name;
  if (answer == nullptr || !answer->HasMember("data") || !(*answer)["data"].IsObject()) {
    journal->Add(what, "no media information in the answer", false);
    return;
  }
  const double fps = NumberMember((*answer)["data"], "fps");
  const double seconds = NumberMember((*answer)["data"], "duration");
  char figure[160];
  std::snprintf(figure, sizeof(figure), "fps %.3f (told %.3f), duration %.3f s (told %.3f s)", fps,
                told.fps, seconds, told.seconds);
  journal->Add(what, figure, AgreesWithTimeBase(fps, seconds, told));
}

void CheckMediaInfos(command_server::CommandServer& server, const std::vector<CheckedClip>& clips,
                     CheckJournal* journal) {
  std::vector<std::string> requests;
  for (size_t i = 0; i < clips.size(); ++i) {
    requests.push_back(command_server::MediaInfoRequest(std::to_string(i), PathOf(*clips[i].file)));
  }
  std::map<std::string, rapidjson::Document> answers;
  {
    CallScope call(journal, "", "command link: get_media_info", kLinkCallLimit);
    answers = Answers(server, requests);
  }
  for (size_t i = 0; i < clips.size(); ++i) {
    const auto answer = answers.find(std::to_string(i));
    CheckMediaInfo(clips[i], answer != answers.end() ? &answer->second : nullptr, journal);
  }
}

// Frame 0 of every clip, fetched so that it is cached, or stitched anew after an update; the
// number of clips whose frame was stitched.
int64_t FetchFrameZero(HostSession& session, const std::vector<CheckedClip>& clips,
                       const ProfileLog& log, CheckJournal* journal) {
  int64_t stitched = 0;
  for (const CheckedClip& clip : clips) {
    const int64_t before = log.CountLogged(kStitchLine);
    PPixHand frame = nullptr;
    {
      CallScope call(journal, clip.name,
                     "GetVideoFrame frame 0, YUV 4:2:0, after the link's update");
      clip.file->RequestFrame(
          0, {0, 0, PrPixelFormat_YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_709_FullRange}, &frame);
    }
    if (frame != nullptr) session.host().frames().Dispose(frame);
    if (log.CountLogged(kStitchLine) != before) ++stitched;
  }
  return stitched;
}

void CheckUpdate(HostSession& session, command_server::CommandServer& server,
                 const std::vector<CheckedClip>& clips, const ProfileLog& log,
                 CheckJournal* journal) {
  // With one file the update names none, so that the one file is among "the others".
  const std::string named = clips.size() > 1 ? PathOf(*clips[0].file) : std::string();
  int64_t others = 0;
  for (const CheckedClip& clip : clips) others += PathOf(*clip.file) != named ? 1 : 0;
  FetchFrameZero(session, clips, log, journal);
  const int64_t expired_before = log.CountLogged(kExpireLine);
  const int64_t cache_expiries_before = session.host().frame_cache().expire_all_calls();
  bool answered = false;
  {
    CallScope call(journal, "", "Update (command link: request_update_param)", kLinkCallLimit);
    answered =
        Answers(server, {command_server::UpdateParamRequest("update", named)}).count("update") == 1;
  }
  const int64_t updated = log.CountLogged(kExpireLine) - expired_before;
  const int64_t cache_expiries =
      session.host().frame_cache().expire_all_calls() - cache_expiries_before;
  const int64_t stitched_anew = FetchFrameZero(session, clips, log, journal);
  const std::string figure = "named " + (named.empty() ? std::string("no file") : clips[0].name) +
                             ": " + std::to_string(updated) + " of " + std::to_string(others) +
                             " others updated, host cache expired " +
                             std::to_string(cache_expiries) + " times, frame 0 stitched anew for " +
                             std::to_string(stitched_anew) + " of " + std::to_string(clips.size()) +
                             " files";
  journal->Add("command link: request_update_param", figure,
               answered && updated == others && cache_expiries == others &&
                   stitched_anew == static_cast<int64_t>(clips.size()));
}

}  // namespace

void CheckCommandLink(HostSession& session, command_server::CommandServer& server,
                      const std::vector<CheckedClip>& clips, const ProfileLog& log,
                      CheckJournal* journal) {
  const auto start = std::chrono::steady_clock::now();
  bool connected = false;
  {
    CallScope call(journal, "", "command link: waiting for the plug-in to connect", kLinkCallLimit);
    connected = server.WaitForConnection(kLinkWait);
  }
  char figure[64];
  std::snprintf(figure, sizeof(figure), "%s after %.2f s",
                connected ? "connected" : "not connected",
                std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  journal->Add("command link: the plug-in connects", figure, connected);
  if (!connected || clips.empty()) return;
  CheckMediaInfos(server, clips, journal);
  CheckUpdate(session, server, clips, log, journal);
}

}  // namespace host_sim
