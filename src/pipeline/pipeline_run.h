// One run of the pipeline: the operations of its stages, carried out in as few passes over the rows as
// possible.
#ifndef LUMVIK_PIPELINE_PIPELINE_RUN_H_
#define LUMVIK_PIPELINE_PIPELINE_RUN_H_

#include <future>

#include "base/adjustments.h"
#include "pipeline/row_steps.h"
#include "pipeline/stages/film_grain.h"

namespace lumvik {

// What an operation does to the image is one of six kinds.

// Each pixel depends on itself and its position alone.
struct Point {
  RowTransform (*make)(const Adjustments&, cv::Size frame);
};

// It depends on the blur of its surroundings.
struct Area {
  AreaTransform (*make)(const Adjustments&);
};

// It depends on the whole image, which the operation stores as far as it needs it.
struct Whole {
  RowStep (*make)(const Adjustments&, const StoreRows& store);
};

// Pixels move.
struct Frame {
  FrameTransform (*make)(const Adjustments&, cv::Size frame);
};

// The pixels are those of a part of the image, or mirrored.
struct View {
  FrameView (*make)(const Adjustments&, cv::Size frame);
};

// Something that is drawn in sequence while the stages before it run is added.
struct Drawn {
  std::future<GrainNoise> (*draw)(const Adjustments&, cv::Size frame);
  RowTransform (*add)(const Adjustments&, const GrainNoise& noise);
};

// Steps are held back until an operation needs their result or the run ends, and then pass over the rows
// together. Only frame operations need the image in memory.
class PipelineRun {
 public:
  // `source` is CV_16UC4 or CV_32FC4. Both must outlive the run.
  PipelineRun(const cv::Mat& source, const Adjustments& adjustments);

  // To be called for every active operation before the first Add: starts what runs concurrently.
  void Prepare(const View& view);
  void Prepare(const Drawn& drawn);
  template <typename Kind>
  void Prepare(const Kind& /*kind*/) {}

  // To be called for every active operation in order.
  void Add(const Point& point);
  void Add(const Area& area);
  void Add(const Whole& whole);
  void Add(const Frame& frame);
  void Add(const View& view);
  void Add(const Drawn& drawn);

  // Overwrites an earlier result of `type` where it can, because fresh memory is slow. Nothing can fail after
  // the first pixel is written.
  void Finish(cv::Mat& developed, int type) const;

 private:
  void AddStep(RowStep step);
  StoreRows StoreHere();
  void StoreSteps(const RowSink& sink);
  void KeepWorkingImage();
  bool IsWorthStoring() const;
  cv::Size FrameSize() const { return SizeAfter(image_.size, steps_); }
  bool IsReusable(const cv::Mat& developed, int type) const;

  const Adjustments& adjustments_;
  RowSource image_;  // before the steps
  cv::Mat pixels_;   // of that image, or empty if it is computed
  RowSteps steps_;
  cv::Mat working_;  // the last one kept
  cv::Mat spare_;
  cv::Size final_size_;
  std::future<GrainNoise> noise_;
};

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_PIPELINE_RUN_H_
