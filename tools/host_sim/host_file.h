// One file as the host handles it: opened by path, asked about, asked for frames and sound, sized,
// trimmed, quieted and closed. It keeps what the host keeps between selectors: the file reference,
// the private-data handle, the latest information record and the preferences block. Every call
// returns the plug-in's result;
// selectors the plug-in does not serve come back as imUnsupported like any other result. One
// thread drives a HostFile.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host_sdk/premiere_importer.h"
#include "host_sim/host_records.h"
#include "host_sim/host_session.h"

namespace host_sim {

// The five text fields of imTimeInfoRec8.
struct HeaderTexts {
  std::string orgtime;
  std::string alttime;
  std::string orgreel;
  std::string altreel;
  std::string logcomment;
};

class HostFile {
 public:
  // `session` must outlive the file. `native_path` is UTF-8, relative or absolute; `file_type`
  // is the registered type the host picked for it. Nothing is sent to the plug-in yet.
  HostFile(HostSession& session, const std::string& native_path, int32_t file_type);

  // imOpenFile8 with the file-reference slot and a fresh open record. The private data the
  // plug-in leaves in the record is kept, whatever the result.
  int32_t Open();

  // imGetInfo8 with a fresh information record, holding the private data the host keeps; the
  // private data the plug-in leaves there is kept.
  int32_t GetInfo();

  // imGetPrefs8 with a null preferences record.
  int32_t GetPrefsWithoutRecord();

  // imGetPrefs8 twice: without a block, for the length, then with a block of that length, which
  // the file keeps. Returns the last result; a result other than imNoErr, or a length that is not
  // positive, ends the exchange after the first call.
  int32_t GetPrefs();

  // imGetIndPixelFormat for index 0, 1, ... until the plug-in answers something other than
  // imNoErr (or kMostListEntries times); `last_result` receives the last answer.
  std::vector<PrPixelFormat> PixelFormats(int32_t* last_result);

  // imAnalysis with a buffer of `kCodecTextCapacity` bytes.
  int32_t CodecText(std::string* text);

  // imDataRateAnalysis twice: without a buffer, for its size, then with a buffer of that size.
  // Returns the last result; a size that is not a whole, positive number of entries ends the
  // exchange after the first call.
  int32_t DataRates(std::vector<imDataSample>* samples, int32_t* base_rate);

  // imGetTimeInfo8.
  int32_t ReadHeaderTexts(HeaderTexts* texts);

  // imGetSourceVideo for the frame at `time` (host ticks), wanted in `format`, which the plug-in
  // may complete (a 0 x 0 size becomes the file's; see last_frame_format()). `*frame` is cleared,
  // then receives the frame the plug-in hands over, also when it fails; the caller then holds that
  // frame's reference and disposes of it through Host::frames(), or leaves it to the Host's end.
  int32_t RequestFrame(PrTime time, imFrameFormat format, PPixHand* frame);

  // The same with the caller's own format entry, which the plug-in may complete. Several threads
  // may ask at once, as the host's render threads do.
  int32_t RequestFrame(PrTime time, imFrameFormat* format, PPixHand* frame);

  // The wanted format as the plug-in left it in the latest RequestFrame.
  imFrameFormat last_frame_format() const { return last_frame_format_; }

  // Host ticks per frame of the clip: the Time suite's ticks per second times vidSampleSize over
  // vidScale, truncated, so that frame n starts at n times this. 0 without a frame rate.
  // REQUIRES: GetInfo has been called.
  PrTime TicksPerFrame() const;

  // imGetPreferredFrameSize for size `index`; the sizes are written only on imNoErr.
  int32_t PreferredFrameSize(int32_t index, int32_t* width, int32_t* height);

  // imImportAudio7: `size` sample frames from `position` (negative: where the last read ended)
  // into `buffers`, one host buffer of at least `size` floats per channel.
  int32_t ReadAudio(PrAudioSample position, uint32_t size, float** buffers);

  // imCalcSize8 for `duration` (0: the whole file) from `trim_in`, counted in sample_size / scale
  // seconds. `file_handle` is passed beside the request as the open file: a real system handle, or
  // an invalid one. `*size_in_bytes` receives what the plug-in wrote.
  int32_t CalculateSize(int32_t trim_in, int32_t duration, int32_t scale, int32_t sample_size,
                        imFileRef file_handle, int64_t* size_in_bytes);

  // imCheckTrim8 proposing the whole clip with everything kept: in the video time base when the
  // clip has video, else in sample frames. REQUIRES: GetInfo has been called.
  int32_t CheckTrim();

  // imTrimFile8: writes `duration` (0: the whole clip) from `trim_in`, counted in sample_size /
  // scale seconds, to `destination` (UTF-8). The plug-in's progress calls reach `progress`, whose
  // true answer continues and false stops; an empty `progress` gives the plug-in no callback.
  int32_t Trim(int32_t trim_in, int32_t duration, bool keep_audio, bool keep_video,
               const std::string& destination, int32_t scale, int32_t sample_size,
               std::function<bool(int32_t part_done, int32_t total)> progress);

  // imQuietFile: the file-reference slot and the private data.
  int32_t Quiet();

  // imCloseFile: the file-reference slot and the private data, which the host then forgets.
  int32_t Close();

  const std::u16string& host_path() const { return host_path_; }
  int32_t importer_id() const { return importer_id_; }
  imFileRef file_ref() const { return file_ref_; }
  void* private_data() const { return private_data_; }
  // REQUIRES: GetInfo has been called.
  const FileInfoBlock& info() const { return *info_; }
  // Empty until GetPrefs has received a block.
  const std::vector<char>& prefs() const { return prefs_; }

  static constexpr int32_t kCodecTextCapacity = 256;

 private:
  imFileAccessRec8 AccessRecord();
  void* PrefsOrNull();
  int32_t PrefsSize() const;

  HostSession& session_;
  const std::u16string host_path_;  // what every record points at, alive as long as the file
  const int32_t file_type_;
  const int32_t importer_id_;
  imFileRef file_ref_;
  void* private_data_ = nullptr;
  std::unique_ptr<FileInfoBlock> info_;
  std::vector<char> prefs_;
  imFrameFormat last_frame_format_{};
};

}  // namespace host_sim
