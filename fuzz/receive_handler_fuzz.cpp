// The command link's receive handler on one receive holding the fuzz input: the bytes are split at
// "###", each piece parsed and answered over a live loopback connection, whose far end reads the
// answers and drops them. One file's media information is published, so "get_media_info" can be
// answered with data.
//
// The handler keeps two aborts on purpose, the JSON library's assertions on a trusted command
// server: a piece that parses as something other than an object, and a "requestId", "type" or
// "request"."filepath" member that is there but is not a string. An input that would reach one of
// them is skipped; nothing else is.
#include <asio.hpp>
#include <cstddef>
#include <cstdint>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "command_link/json.h"
#include "command_link/message_reception.h"
#include "command_link/tcp_client.h"
#include "fuzz_profile.h"
#include "open_files/media_info_cache.h"

namespace {

using command_link::TcpClient;

// Listens on the loopback address, accepts one connection and reads it until it ends, on a thread
// of its own. Lives as long as the process.
class DrainingPeer {
 public:
  DrainingPeer() : acceptor_(io_, {asio::ip::address_v4::loopback(), 0}), socket_(io_) {
    thread_ = std::thread([this] {
      acceptor_.accept(socket_);
      char bytes[65536];
      std::error_code error;
      while (!error) socket_.read_some(asio::buffer(bytes), error);
    });
  }

  uint16_t port() const { return acceptor_.local_endpoint().port(); }

 private:
  asio::io_context io_;
  asio::ip::tcp::acceptor acceptor_;
  asio::ip::tcp::socket socket_;
  std::thread thread_;
};

bool HasNonStringMember(const rapidjson::Value& object, const char* name) {
  auto member = object.FindMember(name);
  return member != object.MemberEnd() && !member->value.IsString();
}

// Reads the pieces as the handler does, up to the first that does not parse, where it stops.
bool ReachesAKeptAbort(const std::string& text) {
  std::vector<std::string> pieces;
  SplitString(text, pieces, "###");
  for (const std::string& piece : pieces) {
    rapidjson::Document request;
    request.Parse(piece.c_str());
    if (request.HasParseError()) return false;
    if (!request.IsObject()) return true;
    if (HasNonStringMember(request, "requestId") || HasNonStringMember(request, "type")) {
      return true;
    }
    auto arguments = request.FindMember("request");
    if (arguments != request.MemberEnd() && arguments->value.IsObject() &&
        HasNonStringMember(arguments->value, "filepath")) {
      return true;
    }
  }
  return false;
}

// Returns once every answer queued so far has been written: writes leave in order.
void WaitForAnswers(TcpClient& client) {
  std::promise<void> written;
  client.async_write({{}, [&written](TcpClient::WriteResult&) { written.set_value(); }});
  written.get_future().wait();
}

TcpClient& ConnectedClient() {
  static FuzzProfile* const profile = new FuzzProfile();
  static DrainingPeer* const peer = new DrainingPeer();
  static TcpClient* const client = [] {
    auto* connected = new TcpClient();
    connected->connect("127.0.0.1", peer->port(), 2500);
    return connected;
  }();
  static_cast<void>(profile);
  return *client;
}

void PublishOneFile() {
  MediaInfo media;
  media.has_video = 1;
  media.width = 3840;
  media.height = 1920;
  media.fps = 29.97;
  media.frame_count = 900;
  media.bitrate = 120000000;
  media.offset = "1.5,0,0";
  MediaInfoCache().emplace("D:\\media\\shot01.qvo", media);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  ConnectedClient();
  PublishOneFile();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  TcpClient::ReadResult receive{true, std::vector<char>(data, data + size)};
  if (ReachesAKeptAbort(std::string(receive.buffer.begin(), receive.buffer.end()))) return -1;
  TcpClient& client = ConnectedClient();
  OnReadComplete(client, receive);
  WaitForAnswers(client);
  return 0;
}
