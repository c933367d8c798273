// Shrinking, without any host.
#include "model/shrinker.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "model/generator.h"

namespace {

using model::Operation;
using model::Sequence;
using model::Step;

Sequence random_sequence() {
  return model::generate(support::class_named("StringToStringHashMapZRB"), 1,
                         {.key_count = 100, .steps = 400, .largest_many = 50});
}

bool has(const Sequence& sequence, Operation operation, int least_number = 0) {
  return std::any_of(sequence.steps.begin(), sequence.steps.end(), [&](const Step& step) {
    return step.operation == operation && step.number >= least_number;
  });
}

TEST(Shrinker, leaves_the_steps_that_matter_with_the_smallest_numbers) {
  const auto fails = [](const Sequence& sequence) {
    return has(sequence, Operation::put_many, 7) && has(sequence, Operation::count_key);
  };
  ASSERT_TRUE(fails(random_sequence()));
  const Sequence shrunk = model::shrink(random_sequence(), fails);
  ASSERT_EQ(shrunk.steps.size(), 2u);
  for (const Step& step : shrunk.steps) {
    EXPECT_EQ(step.number, step.operation == Operation::put_many ? 7 : 0);
    EXPECT_EQ(step.key + step.value + step.variation, 0);
  }
}

TEST(Shrinker, gathers_what_takes_many_steps) {
  const auto fails = [](const Sequence& sequence) {
    int sum = 0;
    for (const Step& step : sequence.steps) {
      if (step.operation == Operation::put_many) sum += step.number;
    }
    return sum >= 90;
  };
  ASSERT_TRUE(fails(random_sequence()));
  const Sequence shrunk = model::shrink(random_sequence(), fails);
  ASSERT_EQ(shrunk.steps.size(), 1u);
  EXPECT_EQ(shrunk.steps[0].number, 90);
}

TEST(Shrinker, keeps_the_order_of_the_steps) {
  const auto place = [](const Sequence& sequence, Operation operation) {
    const auto found =
        std::find_if(sequence.steps.begin(), sequence.steps.end(),
                     [operation](const Step& step) { return step.operation == operation; });
    return found - sequence.steps.begin();
  };
  const auto fails = [&](const Sequence& sequence) {
    return has(sequence, Operation::keys) && has(sequence, Operation::remove_key) &&
           place(sequence, Operation::remove_key) < place(sequence, Operation::keys);
  };
  Sequence sequence = random_sequence();
  sequence.steps.insert(sequence.steps.begin(), {Operation::remove_key, 1, 1, 1, 1});
  const Sequence shrunk = model::shrink(sequence, fails);
  ASSERT_EQ(shrunk.steps.size(), 2u);
  EXPECT_EQ(shrunk.steps[0].operation, Operation::remove_key);
  EXPECT_EQ(shrunk.steps[1].operation, Operation::keys);
}

TEST(Shrinker, stops_after_the_runs_it_was_given) {
  int runs = 0;
  const auto fails = [&](const Sequence&) {
    ++runs;
    return runs % 3 == 0;
  };
  const Sequence shrunk = model::shrink(random_sequence(), fails, 40);
  EXPECT_EQ(runs, 40);
  EXPECT_LT(shrunk.steps.size(), 400u);
}

}  // namespace
