// What a generator of sequences draws from: a random engine, or bytes that somebody else chose,
// such as a fuzzer.
#ifndef ZRB_TESTS_MODEL_CHOICES_H
#define ZRB_TESTS_MODEL_CHOICES_H

#include <cstdint>
#include <random>
#include <span>

namespace model {

class Choices {
 public:
  virtual ~Choices() = default;
  /// From 0 up to but not including the limit, which is at least 1.
  virtual int below(int limit) = 0;
  /// Whether there is nothing left to draw from; what is drawn then is 0.
  virtual bool are_over() const = 0;
};

class RandomChoices : public Choices {
 public:
  explicit RandomChoices(unsigned seed) : random_(seed) {}
  // std::mt19937 is the same everywhere; the standard distributions are not.
  int below(int limit) override {
    return static_cast<int>(random_() % static_cast<unsigned>(limit));
  }
  bool are_over() const override { return false; }

 private:
  std::mt19937 random_;
};

/// Takes a byte for a choice among up to 256, and two for one among more.
class GivenChoices : public Choices {
 public:
  explicit GivenChoices(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
  int below(int limit) override {
    int number = next();
    if (limit > 256) number += 256 * next();
    return number % limit;
  }
  bool are_over() const override { return bytes_.empty(); }

 private:
  int next() {
    if (bytes_.empty()) return 0;
    const int byte = bytes_.front();
    bytes_ = bytes_.subspan(1);
    return byte;
  }

  std::span<const std::uint8_t> bytes_;
};

}  // namespace model

#endif
