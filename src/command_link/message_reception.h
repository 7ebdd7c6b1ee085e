// The command link's byte stream: "###"-delimited JSON requests in, responses out on the same
// connection.
#pragma once

#include <string>
#include <vector>

#include "command_link/tcp_client.h"

// Appends the pieces of `text` between delimiters, left to right, empty pieces included; a
// trailing delimiter adds no empty piece.
void SplitString(const std::string& text, std::vector<std::string>& pieces,
                 const std::string& delimiter);

// Handles one completed receive: each piece is parsed and answered through parseJson, in order.
// A piece that is not JSON is logged and ends the handling of that receive. One receive is
// handled by itself: a request that TCP splits across two receives is lost. Runs on the client's
// I/O thread.
void OnReadComplete(command_link::TcpClient& client, command_link::TcpClient::ReadResult& result);
