// Sequences of calls.
#include "loaded_host.h"
#include "model/failure_report.h"
#include "model/generator.h"
#include "targets.h"

namespace fuzz {
namespace {

using model::Choices;
using model::Sequence;
using model::Size;

model::Scheme choose_scheme(const support::ContainerClass& container_class, Choices& choices) {
  std::vector<model::Scheme> schemes = model::schemes_for(container_class);
  // Twice, so that they are as likely as the others together.
  for (int i = 0; i < 2; ++i) {
    for (const model::Scheme odd : model::odd_schemes_for(container_class)) schemes.push_back(odd);
  }
  return schemes[static_cast<std::size_t>(choices.below(static_cast<int>(schemes.size())))];
}

Size choose_size(Choices& choices) {
  // Of few keys many meet each other; only many make a table grow.
  constexpr Size sizes[] = {{.key_count = 5, .steps = 100, .largest_many = 5},
                            {.key_count = 25, .steps = 100, .largest_many = 12},
                            {.key_count = 60, .steps = 100, .largest_many = 30},
                            {.key_count = 400, .steps = 40, .largest_many = 200}};
  return sizes[choices.below(static_cast<int>(std::size(sizes)))];
}

Sequence sequence_of(Choices& choices) {
  const std::vector<support::ContainerClass>& classes = support::all_classes();
  const support::ContainerClass& container_class =
      classes[static_cast<std::size_t>(choices.below(static_cast<int>(classes.size())))];
  const model::Scheme scheme = choose_scheme(container_class, choices);
  const Size size = choose_size(choices);
  return model::generate(container_class, scheme, choices, size);
}

}  // namespace

std::string calls(Bytes bytes) {
  model::GivenChoices choices(bytes);
  const Sequence sequence = sequence_of(choices);
  standin::HostOptions options;
  options.instrument = true;
  options.strict_ledger = true;
  standin::Host& host = loaded_host(options);
  const std::size_t steps_between_full_checks = sequence.key_count > 100 ? 10 : 1;
  const model::Outcome outcome =
      model::run(sequence, {.steps_between_full_checks = steps_between_full_checks, .host = &host});
  host.ledger().forget_released();
  if (!outcome.disagreement) return "";
  // What remains of the sequence may be in any state, and the report needs hosts of its own.
  end_loaded_host();
  return std::string(sequence.container_class->name) + ", " + outcome.disagreement->text() +
         "Made short: " + model::report_failure(sequence).text();
}

}  // namespace fuzz
