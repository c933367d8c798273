// Printed programs do what the steps do: for each class a sequence of all its operations becomes a
// program that the language accepts, and that finds everything as the model says.
#include "model/program_printer.h"

#include "model/generator.h"
#include "model/program_runs.h"
#include "model/runner.h"
#include "support/leak_sanitizer.h"
#include "support/plugin_test.h"

namespace {

using model::Operation;
using model::Outcome;
using model::Sequence;

class PrintedPrograms : public ::testing::TestWithParam<support::ContainerClass> {
 protected:
  /// Every operation that applies, between puts that keep something to work on; in every
  /// so many of twice the twelve variations.
  static Sequence all_operations(model::Scheme scheme, int first_variation, int distance) {
    Sequence sequence{&GetParam(), scheme, 30, 30, {}};
    int number = 0;
    for (int variation = first_variation; variation < 24; variation += distance) {
      for (const model::Weights& row : model::weights()) {
        if (!model::applies(row.operation, GetParam())) continue;
        if (number % 7 == 0) {
          sequence.steps.push_back({Operation::put_many, number, number, 5, 0});
          sequence.steps.push_back({Operation::point_to_first, 0, 0, number, 0});
        }
        sequence.steps.push_back(
            {row.operation, 3 * number + 1, 2 * number + 1, number % 10 + 1, variation});
        ++number;
      }
    }
    return sequence;
  }
};
ZRB_FOR_CLASSES(PrintedPrograms, support::all_classes());

TEST_P(PrintedPrograms, of_all_operations_find_everything_as_the_model_says) {
  const support::LeaksExpected abandoned_storage;
  model::Reach reach;
  const std::vector<model::Scheme> schemes = model::schemes_for(GetParam());
  for (std::size_t i = 0; i < schemes.size(); ++i) {
    SCOPED_TRACE(model::name(schemes[i]));
    // The schemes share the variations among themselves.
    const Outcome outcome = model::run(
        all_operations(schemes[i], static_cast<int>(i), static_cast<int>(schemes.size())),
        {.steps_between_full_checks = 1, .keep_performed = true});
    ASSERT_FALSE(outcome.disagreement) << outcome.disagreement->text();
    reach.add(outcome.reach);
    const std::string text = model::program(GetParam(), outcome.performed, "All operations.");
    const model::ProgramRun run = model::run_program(text);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.bad, 0) << run.output << text;
    // Each step is checked for its result, where it has one, its counts and its order.
    EXPECT_GE(run.good, 2 * static_cast<int>(outcome.performed.size()));
  }
  for (const model::Weights& row : model::weights()) {
    if (!model::applies(row.operation, GetParam())) continue;
    EXPECT_TRUE(reach.performed.contains(row.operation)) << model::name(row.operation);
  }
}

}  // namespace
