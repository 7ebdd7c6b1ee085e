// The command link's costs: a burst of requests in one write, from a read pending to the last
// response, beside the command handler answering the same requests in-process; and the memory an
// idle connection takes for each pass of the connection loop, which queues one read.
#include <benchmark/benchmark.h>

#include <malloc.h>
#include <chrono>
#include <string>
#include <vector>

#include "command_link/message_reception.h"
#include "command_link/parse_json.h"
#include "command_link/tcp_client.h"
#include "command_server/command_server.h"
#include "command_server/requests.h"
#include "open_files/media_info_cache.h"

namespace {

constexpr int kBurst = 100;
constexpr uint32_t kReadSize = 0xA00000;  // what each pass of the connection loop asks for
constexpr char kClipPath[] = "C:\\clips\\burst.qvo";

std::vector<std::string> BurstRequests() {
  MediaInfo info;
  info.has_video = 1;
  info.fps = 29.97;
  info.frame_count = 300;
  MediaInfoCache().emplace(kClipPath, info);
  std::vector<std::string> requests;
  for (int i = 0; i < kBurst; ++i) {
    requests.push_back(command_server::MediaInfoRequest(std::to_string(i), kClipPath));
  }
  return requests;
}

void BM_CommandBurst(benchmark::State& state) {
  std::string burst;
  for (const std::string& request : BurstRequests()) burst += request + "###";
  command_server::CommandServer server;
  command_link::TcpClient client;
  client.connect("127.0.0.1", server.port(), 2500);
  server.WaitForConnection(std::chrono::seconds(5));
  for (auto _ : state) {
    client.async_read({kReadSize, [&client](command_link::TcpClient::ReadResult& result) {
                         OnReadComplete(client, result);
                       }});
    server.SendRaw(burst);
    for (int i = 0; i < kBurst; ++i) {
      if (!server.WaitForResponse(std::chrono::seconds(5))) {
        state.SkipWithError("a response did not come");
        break;
      }
    }
  }
  client.disconnect(true);
}

void BM_ParseJsonBurst(benchmark::State& state) {
  std::vector<rapidjson::Document> requests(kBurst);
  const std::vector<std::string> texts = BurstRequests();
  for (int i = 0; i < kBurst; ++i) requests[i].Parse(texts[i].c_str());
  for (auto _ : state) {
    for (const rapidjson::Document& request : requests) {
      benchmark::DoNotOptimize(parseJson(request));
    }
  }
}

// Heap bytes in use. Resident pages cannot show what a pass keeps: a page holds about a hundred
// passes' worth, and memory freed by earlier runs is used again before any page is added.
int64_t HeapBytesInUse() { return static_cast<int64_t>(mallinfo2().uordblks); }

// `passes` passes of the connection loop, each queueing one read, and the time the I/O thread
// needs to take them in.
void IdlePasses(command_link::TcpClient& client, int passes) {
  for (int pass = 0; pass < passes; ++pass) {
    client.async_read({kReadSize, [](command_link::TcpClient::ReadResult&) {}});
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
}

// Each pass of an idle connection queues one more read; what it keeps is the request alone, its
// receive buffer being made only when bytes arrive. Measured once the first passes have settled
// the memory of their hand-over to the I/O thread, which later passes use again.
void BM_IdleLinkMemory(benchmark::State& state) {
  constexpr int kPasses = 1000;
  command_server::CommandServer server;
  command_link::TcpClient client;
  client.connect("127.0.0.1", server.port(), 2500);
  server.WaitForConnection(std::chrono::seconds(5));
  IdlePasses(client, kPasses);
  double bytes_per_pass = 0;
  for (auto _ : state) {
    const int64_t before = HeapBytesInUse();
    IdlePasses(client, kPasses);
    bytes_per_pass = static_cast<double>(HeapBytesInUse() - before) / kPasses;
  }
  state.counters["bytes_per_pass"] = bytes_per_pass;
  client.disconnect(true);
}

}  // namespace

// A burst's time is three threads taking turns on the processors: half a second of bursts for each
// repetition, even in a quick run, so that the turns average out.
BENCHMARK(BM_CommandBurst)->MinTime(0.5)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_ParseJsonBurst)->MinTime(0.5)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_IdleLinkMemory)->Iterations(1)->Unit(benchmark::kMillisecond);
