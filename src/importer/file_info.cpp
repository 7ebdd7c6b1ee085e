#include "importer/file_info.h"

#include "host_sdk/host_assumptions.h"
#include "logging/log_sites.h"
#include "logging/plugin_log.h"
#include "open_files/file_context.h"
#include "open_files/host_suites.h"
#include "open_files/media_info_cache.h"
#include "open_files/private_file_record.h"
#include "platform/compiler.h"

namespace {

void WriteFixedAnswers(int32_t interface_version, imFileInfoRec8* info) {
  info->accessModes =
      interface_version < IMPORTMOD_VERSION_6 ? kRandomAccessImport : kSeparateSequentialAudio;
  info->vidInfo.supportsAsyncIO = 0;
  info->vidInfo.supportsGetSourceVideo = 1;
  info->vidInfo.hasPulldown = 0;
  info->hasDataRate = 1;
}

// Read without the context's mutex, as the design has it: a frame or sound request that re-creates
// a released source rewrites it meanwhile, with the same values from the same project file.
QUORVEL_NOINLINE MediaInfo MediaInfoWithoutMutex(const FileContext& context) {
  return context.media_info;
}

void DescribeVideo(const MediaInfo& media, SampleFileHeader* header, imFileInfoRec8* info) {
  header->has_video = 1;
  header->video_codec = kQuorvelSubTypeRle;
  header->width = media.width;
  header->height = media.height;
  header->depth = 32;
  header->pixel_format = kAnnouncedPixelFormat;
  header->frame_count = static_cast<uint32_t>(media.frame_count);
  header->aspect_numerator = 1;
  header->aspect_denominator = 1;
  header->field_type = prFieldsNone;
  info->ivProjectionType = kPrIVProjectionType_Equirectangular;
  info->ivFrameLayout = media.stereo != 0 ? kStereoscopicFrameLayout : kPrIVFrameLayout_Monoscopic;
  info->ivHorizontalCapturedView = kFullHorizontalCapturedView;
  info->ivVerticalCapturedView = kFullVerticalCapturedView;
}

void DescribeAudio(const MediaInfo& media, SampleFileHeader* header) {
  header->has_audio = 1;
  header->audio_codec = kQuorvelSubTypeRle;
  header->sample_rate = static_cast<double>(media.audio_sample_rate);
  header->sample_frames = static_cast<uint64_t>(media.audio_sample_frames);
}

void AcquireHostSuites(const imStdParms* std_parms, PrivateFileRecord* record,
                       FileContext* context) {
  record->memory_funcs = std_parms->piSuites->memFuncs;
  SPBasicSuite* basic = BasicSuiteOf(std_parms);
  record->basic_suite = basic;
  if (basic == nullptr) return;
  record->creator_suite = AcquireSuite<PrSDKPPixCreatorSuite>(basic, kPrSDKPPixCreatorSuite,
                                                              kPrSDKPPixCreatorSuiteVersion);
  record->cache_suite =
      AcquireSuite<PrSDKPPixCacheSuite>(basic, kPrSDKPPixCacheSuite, kPrSDKPPixCacheSuiteVersion);
  record->ppix_suite = AcquireSuite<PrSDKPPixSuite>(basic, kPrSDKPPixSuite, kPrSDKPPixSuiteVersion);
  record->time_suite = AcquireSuite<PrSDKTimeSuite>(basic, kPrSDKTimeSuite, kPrSDKTimeSuiteVersion);
  context->audio_suite =
      AcquireSuite<PrSDKAudioSuite>(basic, kPrSDKAudioSuite, kPrSDKAudioSuiteVersion);
  context->cache_suite = record->cache_suite;
}

// The duration of one frame in the host's ticks, truncated; 0 without a time suite or a rate.
uint64_t TicksPerFrame(const PrivateFileRecord* record, double fps) {
  PrTime ticks_per_second = 0;
  if (record->time_suite == nullptr || fps <= 0.0) return 0;
  record->time_suite->GetTicksPerSecond(&ticks_per_second);
  return static_cast<uint64_t>(static_cast<double>(ticks_per_second) / fps);
}

void FillPicturePart(PrivateFileRecord* record, double fps, imFileInfoRec8* info) {
  const SampleFileHeader& header = record->header;
  if (header.has_video == 0) {
    info->hasVideo = 0;
    info->vidInfo.imageWidth = 0;
    info->vidInfo.imageHeight = 0;
    return;
  }
  info->hasVideo = 1;
  info->vidInfo.imageWidth = header.width;
  info->vidInfo.imageHeight = header.height;
  info->vidInfo.depth = static_cast<int16_t>(header.depth);
  info->vidInfo.subType = static_cast<int32_t>(header.video_codec);
  info->vidInfo.fieldType = static_cast<char>(header.field_type);
  info->vidInfo.alphaType = header.depth == 32 ? alphaStraight : alphaNone;
  info->vidInfo.pixelAspectNum = header.aspect_numerator;
  info->vidInfo.pixelAspectDen = header.aspect_denominator;
  // The time base is the frame rate in hundredths: 29.97 frames per second is 2997 over 100.
  info->vidScale = static_cast<int32_t>(fps * 100.0);
  info->vidSampleSize = 100;
  info->vidDuration = static_cast<int32_t>(header.frame_count * 100);
  record->header.frame_duration = TicksPerFrame(record, fps);
}

uint32_t ChannelTypeOf(int32_t channels) {
  if (channels >= 4) return kPrAudioChannelType_MaxChannel;
  if (channels == 2) return kPrAudioChannelType_Stereo;
  return kPrAudioChannelType_Mono;
}

void FillSoundPart(const MediaInfo& media, SampleFileHeader* header, imFileInfoRec8* info) {
  if (header->has_audio == 0) {
    info->hasAudio = 0;
    return;
  }
  info->hasAudio = 1;
  info->audInfo.numChannels = media.audio_channels;
  header->channel_type = ChannelTypeOf(media.audio_channels);
  info->audInfo.sampleRate = static_cast<float>(header->sample_rate);
  info->audInfo.sampleType = kPrAudioSampleType_32BitFloat;
  info->audDuration = static_cast<PrAudioSample>(header->sample_frames);
}

}  // namespace

int32_t GetFileInfo(const imStdParms* std_parms, const imFileAccessRec8* access,
                    imFileInfoRec8* info) {
  if (info == nullptr) return imBadFile;
  WriteFixedAnswers(std_parms->imInterfaceVer, info);
  const PlugMemoryFuncs* memory = std_parms->piSuites->memFuncs;
  void* slot = info->privatedata;
  bool created = false;
  PrMemoryHandle handle = LockPrivateHandle(memory, &slot, &created);
  info->privatedata = slot;
  PrivateFileRecord* record = RecordOf(handle);
  FileContext* context = record->context;
  if (context == nullptr) {
    PluginLog::Get()->Write(kLogError, kLogSource, log_site::kGetFileInfoError,
                            "Error occured while get file info");
    return imBadFile;
  }
  if (record->header.version != kSampleFileVersion) return imBadFile;

  const MediaInfo media = MediaInfoWithoutMutex(*context);
  if (media.has_video != 0) {
    DescribeVideo(media, &record->header, info);
  } else {
    record->header.has_video = 0;
  }
  if (media.has_audio != 0) {
    DescribeAudio(media, &record->header);
  } else {
    record->header.has_audio = 0;
  }
  // The first description of a path stays: a later request does not replace it.
  PublishMediaInfo(context->utf8_path, media);

  AcquireHostSuites(std_parms, record, context);
  CopyHostPath(access->filepath, record->path);
  record->importer_id = static_cast<uint32_t>(info->vidInfo.importerID);
  record->audio_position = 0;

  FillPicturePart(record, media.fps, info);
  FillSoundPart(media, &record->header, info);
  memory->unlockHandle(handle);
  return imNoErr;
}
