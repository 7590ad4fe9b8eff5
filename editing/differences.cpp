#include "editing/differences.h"

#include <algorithm>
#include <compare>
#include <functional>

#include "document/common_text.h"

namespace kelvane {

namespace {

constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

// The lines of a text with their ends, and where each of them stands.
class Lines {
 public:
  explicit Lines(std::string_view text) {
    while (!text.empty()) {
      const std::string_view line = text.substr(0, text.find('\n') + 1);  // all of it without an end
      lines_.push_back(line.empty() ? text : line);
      text.remove_prefix(lines_.back().size());
    }
  }
  std::size_t Count() const { return lines_.size(); }
  std::string_view operator[](std::size_t i) const { return lines_[i]; }
  // How far behind line `i` such a line stands next.
  std::size_t WayTo(std::string_view line, std::size_t i) {
    const std::hash<std::string_view> hash;
    if (places_.empty()) {
      places_.reserve(lines_.size());
      for (std::size_t at = 0; at < lines_.size(); ++at) places_.push_back({hash(lines_[at]), at});
      std::sort(places_.begin(), places_.end());
    }
    const Place from{hash(line), i + 1};
    for (auto next = std::lower_bound(places_.begin(), places_.end(), from);
         next != places_.end() && next->hash == from.hash; ++next) {
      if (lines_[next->at] == line) return next->at - i;
    }
    return kNowhere;
  }

 private:
  struct Place {
    std::size_t hash;
    std::size_t at;
    auto operator<=>(const Place&) const = default;
  };

  std::vector<std::string_view> lines_;
  std::vector<Place> places_;  // sorted: equal lines stand together
};

// Walks down two stretches of lines. If most lines are in their places, the others were changed. Otherwise,
// where the stretches part, the nearer of two ways to meet again is taken: lines that went, or lines that
// came. If there is neither, a line was changed.
class Walk {
 public:
  Walk(std::string_view before, std::string_view after, std::size_t at)
      : before_(before), after_(after), at_(at) {}

  Differences Differ() {
    const bool inPlace = MostInPlace();
    while (i_ < before_.Count() && j_ < after_.Count()) Step(inPlace);
    Note(before_.Count() - i_, after_.Count() - j_);
    return std::move(differences_);
  }

 private:
  bool MostInPlace() const {
    if (before_.Count() != after_.Count()) return false;
    std::size_t same = 0;
    for (std::size_t i = 0; i < before_.Count(); ++i) same += before_[i] == after_[i];
    return same > before_.Count() / 2;
  }

  void Step(bool inPlace) {
    if (before_[i_] == after_[j_]) {
      at_ += before_[i_].size();
      ++i_, ++j_;
      return;
    }
    const std::size_t gone = inPlace ? kNowhere : before_.WayTo(after_[j_], i_);
    const std::size_t come = inPlace ? kNowhere : after_.WayTo(before_[i_], j_);
    if (gone == kNowhere && come == kNowhere) {
      Note(1, 1);
    } else if (gone < come) {
      Note(gone, 0);
    } else {
      Note(0, come);
    }
  }

  // So many lines went and came; what touches the last difference is part of it.
  void Note(std::size_t gone, std::size_t come) {
    if (gone + come == 0) return;
    if (differences_.empty() || differences_.back().at + differences_.back().before.size() != at_)
      differences_.push_back({at_, {}, {}});
    Difference& last = differences_.back();
    for (; gone > 0; --gone) last.before += before_[i_++];
    for (; come > 0; --come) last.after += after_[j_++];
    at_ = last.at + last.before.size();
  }

  Lines before_;
  Lines after_;
  std::size_t at_;
  std::size_t i_ = 0;
  std::size_t j_ = 0;
  Differences differences_;
};

}  // namespace

Differences Compare(std::string_view before, std::string_view after) {
  const auto [front, back] = LinesInCommon(before, after);
  return Walk(before.substr(front, before.size() - back - front),
              after.substr(front, after.size() - back - front), front)
      .Differ();
}

void Replace(std::string& text, const Differences& differences, bool forward) {
  if (differences.empty()) return;
  if (differences.size() == 1) {  // in place, which costs what stands behind it
    const Difference& only = differences.front();
    const std::string& there = forward ? only.before : only.after;
    text.replace(only.at, there.size(), forward ? only.after : only.before);
    return;
  }
  std::string replaced;
  replaced.reserve(text.size());
  std::size_t done = 0;
  std::size_t come = 0;  // what the differences so far put in and took out
  std::size_t gone = 0;
  for (const Difference& difference : differences) {
    const std::size_t at = forward ? difference.at : difference.at + come - gone;
    replaced.append(text, done, at - done).append(forward ? difference.after : difference.before);
    done = at + (forward ? difference.before : difference.after).size();
    come += difference.after.size();
    gone += difference.before.size();
  }
  text = replaced.append(text, done);
}

}  // namespace kelvane
