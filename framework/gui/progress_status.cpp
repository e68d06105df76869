#include <algorithm>
#include <cmath>

#include "orvane/statusbar.h"

namespace Kf::StatusBar {

ProgressStatus::ProgressStatus() = default;

ProgressStatus::ProgressStatus(Priority priority) : priority_(priority), active_(true) {}

ProgressStatus::ProgressStatus(const ProgressStatus& other) { *this = other; }

ProgressStatus& ProgressStatus::operator=(const ProgressStatus& other) {
  if (this == &other) return *this;
  std::int64_t done, total;
  std::string text;
  bool finished, cancel, active;
  {
    IdeUtil::ScopedLock lock(other.mutex_);
    done = other.done_, total = other.total_, text = other.text_;
    finished = other.finished_, cancel = other.cancel_, active = other.active_;
  }
  IdeUtil::ScopedLock lock(mutex_);
  priority_ = other.priority_;
  done_ = done, total_ = total, text_ = std::move(text);
  finished_ = finished, cancel_ = cancel, active_ = active;
  return *this;
}

void ProgressStatus::SetSteps(std::int64_t done, std::int64_t total) volatile {
  ProgressStatus& self = Self();
  IdeUtil::ScopedLock lock(self.mutex_);
  self.total_ = std::max<std::int64_t>(total, 0);
  self.done_ = std::max<std::int64_t>(done, 0);
  if (self.total_ > 0) self.done_ = std::min(self.done_, self.total_);
}

void ProgressStatus::SetFraction(double fraction) volatile {
  if (!(fraction >= 0)) fraction = 0;  // also catches NaN
  fraction = std::min(fraction, 1.0);
  SetSteps(static_cast<std::int64_t>(std::lround(fraction * 10000)), 10000);
}

void ProgressStatus::SetText(const std::string& text) volatile {
  ProgressStatus& self = Self();
  IdeUtil::ScopedLock lock(self.mutex_);
  self.text_ = text;
}

void ProgressStatus::Finish() volatile {
  ProgressStatus& self = Self();
  IdeUtil::ScopedLock lock(self.mutex_);
  self.finished_ = true;
}

void ProgressStatus::RequestCancel() volatile {
  ProgressStatus& self = Self();
  IdeUtil::ScopedLock lock(self.mutex_);
  self.cancel_ = true;
}

std::int64_t ProgressStatus::StepsDone() const volatile {
  ProgressStatus& self = Self();
  IdeUtil::ScopedLock lock(self.mutex_);
  return self.done_;
}

std::int64_t ProgressStatus::StepsTotal() const volatile {
  ProgressStatus& self = Self();
  IdeUtil::ScopedLock lock(self.mutex_);
  return self.total_;
}

double ProgressStatus::Fraction() const volatile {
  ProgressStatus& self = Self();
  IdeUtil::ScopedLock lock(self.mutex_);
  return self.total_ > 0 ? static_cast<double>(self.done_) / static_cast<double>(self.total_) : 0.0;
}

std::string ProgressStatus::Text() const volatile {
  ProgressStatus& self = Self();
  IdeUtil::ScopedLock lock(self.mutex_);
  return self.text_;
}

bool ProgressStatus::IsFinished() const volatile {
  ProgressStatus& self = Self();
  IdeUtil::ScopedLock lock(self.mutex_);
  return self.finished_;
}

bool ProgressStatus::CancelRequested() const volatile {
  ProgressStatus& self = Self();
  IdeUtil::ScopedLock lock(self.mutex_);
  return self.cancel_;
}

ProgressStatus::Priority ProgressStatus::GetPriority() const volatile { return Self().priority_; }

bool ProgressStatus::IsActive() const volatile {
  ProgressStatus& self = Self();
  IdeUtil::ScopedLock lock(self.mutex_);
  return self.active_ && !self.finished_;
}

bool operator==(const ProgressStatus& a, const ProgressStatus& b) {
  if (&a == &b) return true;
  ProgressStatus left(a), right(b);  // copies, so that no two locks are held at once
  return left.priority_ == right.priority_ && left.done_ == right.done_ && left.total_ == right.total_ &&
         left.text_ == right.text_ && left.finished_ == right.finished_ && left.cancel_ == right.cancel_ &&
         left.active_ == right.active_;
}

}  // namespace Kf::StatusBar
