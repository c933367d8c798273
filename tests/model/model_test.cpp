// Long random sequences of every operation of every class, beside a model, with the accounts of all
// locks.
//
// After every step are compared: its result, Count, Empty and BinCount, the locks of every object
// that it should have changed, that the container still holds the arrays it gave and keeps (or has
// let them go), the number of living handles, and that nothing is pending and no handle was used
// wrongly. Whether an array is the very one given before, and what it holds, is compared when a
// step asks for it, since asking makes one. The whole order of iteration with all values, and the
// locks of all objects, are compared after every step where keys are few or tables grow, and after
// every thirtieth (and the last) where keys are many: there the other steps compare the ten first
// elements and, in ordered containers, the ten last.
//
// A sequence that fails is shrunk, and shown as steps and as a program in the host's language that
// does the same in the console.
//
// Longer runs are set by the environment:
//   ZRB_MODEL_SEEDS       how many seeds for each class and size, instead of the few built in
//   ZRB_MODEL_FIRST_SEED  the first of them (1)
//   ZRB_MODEL_STEPS       multiplies the length of every sequence (1)
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>

#include "model/failure_report.h"
#include "model/generator.h"
#include "model/runner.h"
#include "support/called_members.h"
#include "support/plugin_test.h"

namespace {

using model::Operation;
using model::Reach;
using model::Sequence;
using model::Size;
using model::Step;

int number_from_environment(const char* name, int otherwise) {
  const char* const value = std::getenv(name);
  return value == nullptr ? otherwise : std::atoi(value);
}

class RandomSequences : public ::testing::TestWithParam<support::ContainerClass> {
 protected:
  /// Runs sequences of a size; those that fail are reported.
  void run_all(Size size, int usual_seeds, std::size_t steps_between_full_checks) {
    const int first = number_from_environment("ZRB_MODEL_FIRST_SEED", 1);
    const int seeds = number_from_environment("ZRB_MODEL_SEEDS", usual_seeds);
    size.steps *= number_from_environment("ZRB_MODEL_STEPS", 1);
    for (int seed = first; seed < first + seeds && !HasFatalFailure(); ++seed) {
      SCOPED_TRACE("seed " + std::to_string(seed));
      run(model::generate(GetParam(), static_cast<unsigned>(seed), size),
          steps_between_full_checks);
    }
  }

  void run(const Sequence& sequence, std::size_t steps_between_full_checks) {
    const model::Outcome outcome =
        model::run(sequence, {steps_between_full_checks, /*keep_performed=*/false});
    reach_.add(outcome.reach);
    if (outcome.disagreement) FAIL() << model::report_failure(sequence).text();
  }

  const Reach& reach() const { return reach_; }

 private:
  Reach reach_;
};
class GrowingTables : public RandomSequences {};
ZRB_FOR_CLASSES(RandomSequences, support::all_classes());
ZRB_FOR_CLASSES(GrowingTables, support::hashed_classes());

constexpr Size few_keys{.key_count = 25, .steps = 500, .largest_many = 12};
constexpr int seeds_of_few_keys = 12;

TEST_P(RandomSequences, of_few_keys_agree_with_the_model_in_every_operation) {
  run_all(few_keys, seeds_of_few_keys, 1);
  for (const model::Weights& row : model::weights()) {
    if (!model::applies(row.operation, GetParam())) continue;
    EXPECT_TRUE(reach().performed.contains(row.operation)) << model::name(row.operation);
  }
}

TEST_P(RandomSequences, that_cross_growth_steps_agree_with_the_model) {
  run_all({.key_count = 1000, .steps = 400, .largest_many = 60}, 2, 1);
  if (!GetParam().is_hashed()) return;
  for (const int bucket_count : {193, 389, 769}) {
    EXPECT_TRUE(reach().bucket_counts.contains(bucket_count)) << bucket_count;
  }
}

TEST_P(RandomSequences, of_many_keys_agree_with_the_model) {
  run_all({.key_count = 8000, .steps = 200, .largest_many = 2000}, 1, 30);
  EXPECT_GT(reach().largest_count, 3079);
  EXPECT_GT(*reach().bucket_counts.rbegin(), GetParam().is_hashed() ? 3079 : -1);
}

class OddContents : public RandomSequences {};
ZRB_FOR_CLASSES(OddContents, support::classes_where([](const support::ContainerClass& its_class) {
                  return !model::odd_schemes_for(its_class).empty();
                }));

TEST_P(OddContents, agree_with_the_model) {
  for (const model::Scheme scheme : model::odd_schemes_for(GetParam())) {
    SCOPED_TRACE(model::name(scheme));
    for (unsigned seed = 1; seed <= 4; ++seed) {
      model::RandomChoices choices(seed);
      run(model::generate(GetParam(), scheme, choices,
                          {.key_count = 60, .steps = 300, .largest_many = 30}),
          1);
    }
  }
}

class RegisteredMembers : public RandomSequences {
 protected:
  /// Every routine of the tables that a class and its iterator register.
  static std::set<std::string> all() {
    standin::Host host;
    host.load_plugin(ZRB_PLUGIN_PATH);
    std::set<std::string> result;
    for (const char* name : {GetParam().name, GetParam().iterator_name}) {
      result.merge(support::CalledMembers::members(*host.find_class(name)->definition()));
    }
    return result;
  }
};
ZRB_FOR_CLASSES(RegisteredMembers, support::all_classes());

TEST_P(RegisteredMembers, all_occur_in_the_sequences_of_few_keys) {
  const std::set<std::string> registered = all();
  const support::ContainerClass& its_class = GetParam();
  const int destructors = 1;  // iterators have none
  const int setters = its_class.is_map() ? 2 : 0;
  ASSERT_EQ(static_cast<int>(registered.size()),
            its_class.method_count() + its_class.iterator_method_count() +
                its_class.property_count() + setters + destructors);
  support::CalledMembers members;
  const auto missing = [&] {
    std::set<std::string> result = registered;
    for (const std::string& member : members.called()) result.erase(member);
    return result;
  };
  for (unsigned seed = 1; seed <= seeds_of_few_keys && !missing().empty(); ++seed) {
    const model::Outcome outcome =
        model::run(model::generate(GetParam(), seed, few_keys),
                   {.steps_between_full_checks = 50, .trace = seed == 1 ? &members : nullptr});
    ASSERT_FALSE(outcome.disagreement) << outcome.disagreement->text();
  }
  EXPECT_THAT(missing(), ::testing::IsEmpty());
}

TEST_P(GrowingTables, agree_with_the_model_before_at_and_after_each_growth_step) {
  for (const model::Scheme scheme : model::schemes_for(GetParam())) {
    SCOPED_TRACE(model::name(scheme));
    Sequence sequence{&GetParam(), scheme, 1600, 50, {}};
    int present = 0;
    for (const int buckets : {193, 389, 769, 1543}) {
      const Operation look = Operation::keys;
      sequence.steps.push_back({Operation::put_many, present, 1, buckets - 1 - present, 0});
      sequence.steps.push_back({look});
      sequence.steps.push_back({Operation::put, buckets - 1, 1, 0, 0});  // fills the table
      sequence.steps.push_back({look});
      sequence.steps.push_back({Operation::put, 5, 2, 0, 1});  // is there already
      sequence.steps.push_back({look});
      sequence.steps.push_back({Operation::put, buckets, 1, 0, 0});  // one more than buckets
      sequence.steps.push_back({look});
      present = buckets + 1;
    }
    run(sequence, 1);
  }
}

}  // namespace
