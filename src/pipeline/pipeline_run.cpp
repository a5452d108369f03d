#include "pipeline/pipeline_run.h"

#include <algorithm>
#include <utility>

#include "base/large_image.h"
#include "pipeline/packed_rows.h"
#include "pipeline/stages/geometry.h"

namespace lumvik {
namespace {

// Relative to a point transform.
constexpr int kAreaCost = 4;

// Steps up to this cost are run again rather than their result kept, because memory is slow.
constexpr int kCheapCost = 4;

}  // namespace

PipelineRun::PipelineRun(const cv::Mat& source, const Adjustments& adjustments)
    : adjustments_(adjustments), image_(RowsOf(source)), pixels_(source), final_size_(source.size()) {}

void PipelineRun::Prepare(const View& view) {
  final_size_ = view.make(adjustments_, final_size_).area.size();
}

void PipelineRun::Prepare(const Drawn& drawn) {
  noise_ = drawn.draw(adjustments_, final_size_);
}

void PipelineRun::Add(const Point& point) {
  AddStep(point.make(adjustments_, FrameSize()));
}

void PipelineRun::Add(const Area& area) {
  AreaTransform transform = area.make(adjustments_);
  if (transform.blur.IsWide()) {
    AddStep(WideAreaTransform(transform, StoreHere()));
  } else {
    AddStep(std::move(transform));
  }
}

void PipelineRun::Add(const Whole& whole) {
  AddStep(whole.make(adjustments_, StoreHere()));
}

void PipelineRun::Add(const Frame& frame) {
  const FrameTransform transform = frame.make(adjustments_, FrameSize());
  const bool is_stored = !pixels_.empty() && steps_.empty();
  const auto streamed = is_stored || IsWorthStoring() ? std::nullopt : Streamed(transform, FrameSize());
  if (streamed) {
    steps_.emplace_back(*streamed);
    return;
  }
  if (!is_stored) KeepWorkingImage();
  image_ = Transformed(pixels_, transform);
  pixels_.release();
}

void PipelineRun::Add(const View& view) {
  steps_.emplace_back(view.make(adjustments_, FrameSize()));
}

void PipelineRun::Add(const Drawn& drawn) {
  AddStep(drawn.add(adjustments_, noise_.get()));
}

void PipelineRun::Finish(cv::Mat& developed, int type) const {
  cv::Mat target = IsReusable(developed, type) ? developed : LargeImage(FrameSize(), type);
  RunRowSteps(image_, steps_, StoreIn(target));
  developed = target;
}

void PipelineRun::AddStep(RowStep step) {
  const auto* transform = std::get_if<RowTransform>(&step);
  if (transform == nullptr || !transform->IsIdentity()) steps_.push_back(std::move(step));
}

// Stores the image as it is after the steps so far.
StoreRows PipelineRun::StoreHere() {
  return [this](int type, RowSink (*sink)(const cv::Mat&)) {
    cv::Mat stored = LargeImage(FrameSize(), type);
    StoreSteps(sink(stored));
    return stored;
  };
}

void PipelineRun::StoreSteps(const RowSink& sink) {
  int cost = 0;
  for (const RowStep& step : steps_) cost += std::holds_alternative<AreaTransform>(step) ? kAreaCost : 1;
  if (cost <= kCheapCost) {
    RunRowSteps(image_, steps_, sink);
  } else {
    steps_.emplace_back(RowTransform{sink.store});
    KeepWorkingImage();
  }
}

// Whether reading some rows twice costs more.
bool PipelineRun::IsWorthStoring() const {
  return std::any_of(steps_.begin(), steps_.end(), [](const RowStep& step) {
    return std::holds_alternative<AreaTransform>(step) || std::holds_alternative<StreamedFrame>(step);
  });
}

// The previous working image, from which this one is read, becomes the memory of the next.
void PipelineRun::KeepWorkingImage() {
  const cv::Size size = FrameSize();
  cv::Mat next = spare_.size() == size ? spare_ : LargeImage(size, CV_32FC4);
  RunRowSteps(image_, steps_, StoreIn(next));
  steps_.clear();
  spare_ = working_;
  working_ = next;
  pixels_ = next;
  image_ = RowsOf(next);
}

// The size and type fit, and nobody else holds the pixels.
bool PipelineRun::IsReusable(const cv::Mat& developed, int type) const {
  return developed.size() == FrameSize() && developed.type() == type && developed.u != nullptr &&
         developed.u->refcount == 1;
}

}  // namespace lumvik
