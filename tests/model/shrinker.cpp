// Delta debugging over steps and their numbers.
#include "model/shrinker.h"

#include <algorithm>

namespace model {
namespace {

class Shrinker {
 public:
  Shrinker(Sequence sequence, const Fails& fails, int most_runs)
      : best_(std::move(sequence)), fails_(fails), runs_left_(most_runs) {}

  Sequence shrink() {
    bool is_smaller = true;
    while (is_smaller && runs_left_ > 0) {
      is_smaller = drop_chunks();
      is_smaller = gather() || is_smaller;
      is_smaller = simplify_numbers() || is_smaller;
    }
    return best_;
  }

 private:
  /// Keeps the candidate if it fails.
  bool keep(Sequence candidate) {
    if (runs_left_ == 0) return false;
    --runs_left_;
    if (!fails_(candidate)) return false;
    best_ = std::move(candidate);
    return true;
  }

  bool drop_chunks() {
    bool is_smaller = false;
    for (std::size_t size = best_.steps.size(); size > 0; size /= 2) {
      // From the end: what comes after the failure goes first, and positions before it stay.
      for (std::size_t end = best_.steps.size(); end > 0; end -= std::min(end, size)) {
        const std::size_t begin = end - std::min(end, size);
        is_smaller = keep(without(begin, std::min(end, best_.steps.size()))) || is_smaller;
      }
    }
    return is_smaller;
  }

  /// One step that does a lot, instead of several that do a little: with as many keys as there are,
  /// or with as many as make a table grow.
  bool gather() {
    bool is_smaller = false;
    for (std::size_t i = 0; i < best_.steps.size(); ++i) {
      for (const int number : {best_.key_count, 194, 390, 770, 1544, 3080}) {
        if (number > best_.key_count || !keep_gathered(i, number)) continue;
        is_smaller = true;
        i = 0;
        break;
      }
    }
    return is_smaller;
  }

  bool keep_gathered(std::size_t step, int number) {
    Sequence candidate = with(step, &Step::number, number);
    const Operation operation = best_.steps[step].operation;
    for (std::size_t i = best_.steps.size(); i > 0; --i) {
      if (i - 1 == step || best_.steps[i - 1].operation != operation) continue;
      candidate.steps.erase(candidate.steps.begin() + static_cast<std::ptrdiff_t>(i - 1));
    }
    return candidate.steps.size() < best_.steps.size() && keep(std::move(candidate));
  }

  Sequence without(std::size_t begin, std::size_t end) const {
    Sequence result = best_;
    result.steps.erase(result.steps.begin() + static_cast<std::ptrdiff_t>(begin),
                       result.steps.begin() + static_cast<std::ptrdiff_t>(end));
    return result;
  }

  bool simplify_numbers() {
    bool is_smaller = false;
    for (std::size_t i = 0; i < best_.steps.size(); ++i) {
      for (int Step::*const number : {&Step::number, &Step::variation, &Step::value, &Step::key}) {
        is_smaller = simplify(i, number) || is_smaller;
      }
    }
    return is_smaller;
  }

  bool simplify(std::size_t step, int Step::*number) {
    bool is_smaller = false;
    while (true) {
      const int present = best_.steps[step].*number;
      const bool did =
          present > 0 && (keep(with(step, number, 0)) || keep(with(step, number, present / 2)) ||
                          keep(with(step, number, present - 1)));
      if (!did) return is_smaller;
      is_smaller = true;
    }
  }

  Sequence with(std::size_t step, int Step::*number, int value) const {
    Sequence result = best_;
    result.steps[step].*number = value;
    return result;
  }

  Sequence best_;
  const Fails& fails_;
  int runs_left_;
};

}  // namespace

Sequence shrink(Sequence sequence, const Fails& fails, int most_runs) {
  return Shrinker(std::move(sequence), fails, most_runs).shrink();
}

}  // namespace model
