// The command server's side of the stress run: batches of "get_media_info" and
// "request_update_param" requests, each batch in one write and the next one sent as soon as every
// answer of the last has come, so the link carries as much as it takes. Each answer must come in
// the order of the requests and say what the host was told of the file.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <random>
#include <string>
#include <vector>

#include "command_server/command_server.h"
#include "stress/stand_in_output.h"

class LinkFlood {
 public:
  // `server` must have the plug-in connected; `paths` and `shapes` describe files the host has
  // described. The flood runs until `*stop` is set. All must outlive the flood.
  LinkFlood(command_server::CommandServer& server, std::vector<std::string> paths,
            std::vector<ClipShape> shapes, const std::atomic<bool>* stop);

  // Sends batches until stopped or until an answer is missing or wrong.
  void Run();

  int64_t answered() const { return media_info_answered_ + updates_answered_; }
  int64_t media_info_answered() const { return media_info_answered_; }
  int64_t updates_answered() const { return updates_answered_; }
  // What went wrong, or empty. Read after Run has returned.
  const std::string& faults() const { return faults_; }

 private:
  struct Sent {
    std::string request_id;
    bool update = false;
    size_t file = 0;
  };

  // False, with the fault noted, when `response` is not the answer to `sent`.
  bool Check(const Sent& sent, const std::string& response);

  command_server::CommandServer& server_;
  const std::vector<std::string> paths_;
  const std::vector<ClipShape> shapes_;
  const std::atomic<bool>* stop_;
  std::mt19937_64 random_{7};
  int64_t next_id_ = 1;
  std::atomic<int64_t> media_info_answered_{0};
  std::atomic<int64_t> updates_answered_{0};
  std::string faults_;
};
