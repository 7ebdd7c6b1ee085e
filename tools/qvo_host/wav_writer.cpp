#include "qvo_host/wav_writer.h"

#include <cstring>
#include <filesystem>
#include <limits>

namespace host_sim {
namespace {

static_assert(sizeof(float) == 4, "samples are written as IEEE single floats");

constexpr uint16_t kIeeeFloatFormat = 3;
constexpr uint16_t kBitsPerSample = 32;
constexpr uint32_t kBytesPerSample = kBitsPerSample / 8;
constexpr uint32_t kFormatChunkSize = 18;
constexpr uint32_t kFactChunkSize = 4;
constexpr uint32_t kHeaderSize = 12 + 8 + kFormatChunkSize + 8 + kFactChunkSize + 8;

void AppendLittleEndian(uint64_t value, int bytes, std::string* out) {
  for (int i = 0; i < bytes; ++i) out->push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
}

void AppendTag(const char* tag, std::string* out) { out->append(tag, 4); }

}  // namespace

uint32_t MostWavSampleFrames(uint16_t channels) {
  if (channels == 0) return 0;
  const uint64_t room = std::numeric_limits<uint32_t>::max() - (kHeaderSize - 8);
  return static_cast<uint32_t>(room / (uint64_t{channels} * kBytesPerSample));
}

std::string FloatWavHeader(uint16_t channels, uint32_t sample_rate, uint32_t sample_frames) {
  const uint32_t block_align = channels * kBytesPerSample;
  const uint32_t data_size = sample_frames * block_align;
  std::string header;
  AppendTag("RIFF", &header);
  AppendLittleEndian(kHeaderSize - 8 + uint64_t{data_size}, 4, &header);
  AppendTag("WAVE", &header);
  AppendTag("fmt ", &header);
  AppendLittleEndian(kFormatChunkSize, 4, &header);
  AppendLittleEndian(kIeeeFloatFormat, 2, &header);
  AppendLittleEndian(channels, 2, &header);
  AppendLittleEndian(sample_rate, 4, &header);
  AppendLittleEndian(uint64_t{sample_rate} * block_align, 4, &header);
  AppendLittleEndian(block_align, 2, &header);
  AppendLittleEndian(kBitsPerSample, 2, &header);
  AppendLittleEndian(0, 2, &header);  // no format extension
  AppendTag("fact", &header);
  AppendLittleEndian(kFactChunkSize, 4, &header);
  AppendLittleEndian(sample_frames, 4, &header);
  AppendTag("data", &header);
  AppendLittleEndian(data_size, 4, &header);
  return header;
}

FloatWavWriter::FloatWavWriter(const std::string& path, uint16_t channels, uint32_t sample_rate,
                               uint32_t sample_frames)
    : file_(std::filesystem::u8path(path), std::ios::binary | std::ios::trunc),
      channels_(channels),
      announced_frames_(sample_frames) {
  if (channels == 0 || sample_frames > MostWavSampleFrames(channels)) {
    file_.setstate(std::ios::failbit);
    return;
  }
  const std::string header = FloatWavHeader(channels, sample_rate, sample_frames);
  file_.write(header.data(), static_cast<std::streamsize>(header.size()));
}

bool FloatWavWriter::AppendPlanar(const float* const* channels, uint32_t frames) {
  std::string bytes;
  bytes.reserve(static_cast<size_t>(frames) * channels_ * kBytesPerSample);
  for (uint32_t frame = 0; frame < frames; ++frame) {
    for (uint16_t channel = 0; channel < channels_; ++channel) {
      uint32_t bits = 0;
      std::memcpy(&bits, &channels[channel][frame], sizeof(bits));
      AppendLittleEndian(bits, 4, &bytes);
    }
  }
  file_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  appended_frames_ += frames;
  return file_.good();
}

bool FloatWavWriter::Finish() {
  file_.close();
  return !file_.fail() && appended_frames_ == announced_frames_;
}

}  // namespace host_sim
