// Small stateless functions shared by the file-information, audio, size and trimming requests.
// They take plain numbers and buffers, allocate nothing, log nothing and keep no state.
#pragma once

#include <cstdint>

#include "platform/file_handles.h"

// Always 4; the codec is ignored.
uint32_t BytesPerPixelForCodec(uint32_t codec);

// The host's audio channel-type code as a channel count: 1 (mono) 1, 2 (stereo) 2, 3 (5.1) 6,
// any other -1. The file-information request stores 4 for four or more channels, which this
// table answers with -1; the size calculation has always counted such files that way, so the
// mismatch is kept.
int32_t ChannelCountOfType(uint32_t channel_type);

// Clamps the host's audio request (`position`, negative meaning "go on from `*saved_position`",
// and `size` sample frames) to a clip of `total` sample frames: `*start` and `*count` are what
// to read, and `*saved_position` moves to the end of that. A start beyond the total is not
// caught: the count then comes out negative.
void ClampAudioRequest(int64_t position, uint32_t size, int64_t total, int64_t* saved_position,
                       int64_t* start, int64_t* count);

// WriteFile of `*count` bytes; `*count` receives the bytes written. 0 on success, the system's
// last error when the write fails, 4 when fewer bytes were written than asked.
uint32_t WriteFileChecked(platform::FileHandle file, const void* buffer, uint32_t* count);

// Reads frame `frame_index` (from 0) of a sample file into `destination`, which holds
// `frame_bytes`. The offset is computed in unsigned 32-bit arithmetic and wraps beyond 4 GiB;
// a failed seek is not checked, so only the read decides the result. 0 when the read succeeds,
// short reads included; 2 when it fails.
uint8_t ReadSampleFrame(platform::FileHandle file, uint32_t frame_bytes, uint32_t frame_index,
                        void* destination);
