// Drawing steps.
#include "model/generator.h"

namespace model {
namespace {

enum class Phase { growing, living, shrinking };

Phase phase_of(int step, int phase_length) {
  // Twice as long growing as shrinking, so that large containers are met as well as empty ones.
  constexpr Phase cycle[] = {Phase::growing, Phase::living, Phase::growing, Phase::living,
                             Phase::shrinking};
  return cycle[static_cast<std::size_t>(step / phase_length) % std::size(cycle)];
}

class Generator {
 public:
  Generator(const support::ContainerClass& container_class, Choices& choices)
      : class_(container_class), choices_(choices), may_abandon_(below(3) == 0) {}

  int below(int limit) { return choices_.below(limit); }

  Operation operation(Phase phase) {
    int total = 0;
    for (const Weights& row : weights()) total += weight(row, phase);
    int drawn = below(total);
    for (const Weights& row : weights()) {
      drawn -= weight(row, phase);
      if (drawn < 0) return row.operation;
    }
    return Operation::put;
  }

 private:
  int weight(const Weights& row, Phase phase) const {
    if (!applies(row.operation, class_)) return 0;
    if (abandons_storage(row.operation) && !may_abandon_) return 0;
    switch (phase) {
      case Phase::growing:
        return row.growing;
      case Phase::living:
        return row.living;
      case Phase::shrinking:
        return row.shrinking;
    }
    return 0;
  }

  const support::ContainerClass& class_;
  Choices& choices_;
  bool may_abandon_;
};

}  // namespace

Sequence generate(const support::ContainerClass& container_class, unsigned seed, Size size) {
  RandomChoices choices(seed);
  const std::vector<Scheme> schemes = schemes_for(container_class);
  return generate(container_class, schemes[seed % schemes.size()], choices, size);
}

Sequence generate(const support::ContainerClass& container_class, Scheme scheme, Choices& choices,
                  Size size) {
  Generator generator(container_class, choices);
  Sequence sequence{&container_class, scheme, size.key_count, 50, {}};
  for (int i = 0; i < size.steps && !choices.are_over(); ++i) {
    Step step;
    step.operation = generator.operation(phase_of(i, size.steps / 10 + 1));
    step.key = generator.below(size.key_count);
    step.value = generator.below(sequence.value_count);
    step.number = 1 + generator.below(size.largest_many);
    step.variation = generator.below(12);
    sequence.steps.push_back(step);
  }
  return sequence;
}

}  // namespace model
