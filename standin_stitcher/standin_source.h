// What stands behind the stand-in's opaque PRSource: draws the test scene and sounds the test tones
// of one project file, and injects the faults that the file asks for. PRSource's exported calls
// forward here.
#pragma once

#include <cstdint>
#include <string>

#include "path_state.h"
#include "project_file.h"
#include "stitcher_api/media_info.h"
#include "stitcher_api/pr_source.h"

namespace omni_standin {

class StandinSource final : public PRSource {
 public:
  // `path_state` is the state of `path` and must outlive the source.
  StandinSource(std::string path, ProjectFile project, PathState* path_state);
  ~StandinSource();
  StandinSource(const StandinSource&) = delete;
  StandinSource& operator=(const StandinSource&) = delete;

  // Returns 1 for an index outside the clip, an injected fault, or a size, plane or stride the
  // picture cannot be written to. The faults of what is written (rows left unwritten, bytes past
  // the end, a picture that changes) still return 0, as a library that gets it wrong would.
  int32_t WriteVideo(int64_t frame_index, int32_t width, int32_t height, uint8_t** planes,
                     const int* strides);

  // Channel c is a sine of 220 * (c + 1) Hz at amplitude 0.25, a pure function of the absolute
  // sample number, so it is phase-continuous across calls and does not stop at the clip's end.
  // Returns 1, writing nothing, when a channel buffer is missing. The sound faults write one
  // sample frame fewer or more than `count`.
  int32_t WriteAudio(int64_t start, int64_t count, float** buffers);

  // Advances the path's update generation, which changes the scene's palette.
  bool AdvanceUpdate();

  void Describe(MediaInfo* info) const;

  const std::string& path() const { return path_; }
  const ProjectFile& project() const { return project_; }

  // Sources that exist now, in the whole process.
  static int64_t Live();

 private:
  // The faults that crash, hang or throw, when `frame_index` has one.
  void FailHard(int64_t frame_index) const;

  // The test scene, or the flat picture, of the frame into the caller's planes.
  void DrawPicture(int64_t frame_index, int32_t width, int32_t height, uint8_t** planes,
                   const int* strides) const;

  const std::string path_;
  const ProjectFile project_;
  PathState* const path_state_;
};

}  // namespace omni_standin
