// The machinery finds what is wrong, makes it short, and shows it in a program: here the wrong one
// is the model, in ways in which a plugin could be wrong.
#include <algorithm>

#include "model/failure_report.h"
#include "model/generator.h"
#include "model/hashed_model.h"
#include "model/ordered_model.h"
#include "model/program_runs.h"
#include "support/leak_sanitizer.h"
#include "support/plugin_test.h"

namespace {

using model::Entry;
using model::HashedModel;
using model::Model;
using model::ModelFactory;
using model::OrderedModel;
using model::Sequence;
using support::Storage;

constexpr int lost_key = 3;

/// Loses one of all keys.
template <class Base>
class Forgetful : public Base {
 public:
  void insert(const Entry& entry, std::uint32_t hash) override {
    if (entry.key->number == lost_key && Base::count() > 0) {
      hidden_ = entry;
    } else {
      Base::insert(entry, hash);
    }
  }
  Entry* find(int key) override {
    return key == lost_key && hidden_.key != nullptr ? &hidden_ : Base::find(key);
  }

 private:
  Entry hidden_;
};

/// Puts new keys at the end of their chains.
class Reversed : public HashedModel {
 public:
  std::vector<Entry> order() const override {
    std::vector<Entry> result = HashedModel::order();
    const auto bucket = [this](const Entry& entry) {
      return static_cast<std::uint32_t>(entry.key->content->number) %
             static_cast<std::uint32_t>(bucket_count());
    };
    for (auto from = result.begin(); from != result.end();) {
      const auto to = std::find_if(
          from, result.end(), [&](const Entry& entry) { return bucket(entry) != bucket(*from); });
      std::reverse(from, to);
      from = to;
    }
    return result;
  }
};

/// Grows one key too late.
class LateGrower : public HashedModel {
 public:
  void grow() override {
    if (count() > bucket_count()) HashedModel::grow();
  }
};

/// Leaves the last key of what should be empty after a Clear.
class Unclean : public OrderedModel {
 public:
  void erase(int key) override {
    if (count() != 20) OrderedModel::erase(key);
  }
};

template <class Wrong>
std::unique_ptr<Model> make_wrong(Storage) {
  return std::make_unique<Wrong>();
}

Sequence first_failing(const char* class_name, const ModelFactory& wrong, model::Size size) {
  for (unsigned seed = 1; seed < 20; ++seed) {
    Sequence sequence = model::generate(support::class_named(class_name), seed, size);
    if (model::run(sequence, {}, wrong).disagreement) return sequence;
  }
  ADD_FAILURE() << "no sequence disagrees with the wrong model";
  return {};
}

/// Finds, shrinks and prints; the program must show the disagreement, and only that.
model::FailureReport expect_found(const char* class_name, const ModelFactory& wrong,
                                  model::Size size, std::size_t most_steps) {
  const Sequence sequence = first_failing(class_name, wrong, size);
  if (sequence.steps.empty()) return {};
  model::FailureReport report = model::report_failure(sequence, wrong);
  EXPECT_LE(report.shrunk.steps.size(), most_steps) << report.text();
  const model::ProgramRun run = model::run_program(report.program);
  EXPECT_EQ(run.errors, "") << report.program;
  EXPECT_GE(run.bad, 1) << report.text() << run.output;
  EXPECT_LE(run.bad, 3) << report.text() << run.output;
  EXPECT_NE(report.text().find("ok "), std::string::npos);
  return report;
}

class WrongModels : public ::testing::Test {
  support::LeaksExpected abandoned_storage_;
};

constexpr model::Size small{.key_count = 25, .steps = 300, .largest_many = 12};

TEST_F(WrongModels, that_lose_a_key_are_found_in_hashed_containers) {
  expect_found("IntegerHashSetZRB", make_wrong<Forgetful<HashedModel>>, small, 2);
  expect_found("StringToVariantHashMapZRB", make_wrong<Forgetful<HashedModel>>, small, 2);
}

TEST_F(WrongModels, that_lose_a_key_are_found_in_ordered_containers) {
  expect_found("VariantOrderedSetZRB", make_wrong<Forgetful<OrderedModel>>, small, 2);
  expect_found("IntegerToStringOrderedMapZRB", make_wrong<Forgetful<OrderedModel>>, small, 2);
}

TEST_F(WrongModels, that_reverse_their_chains_are_found) {
  const auto report = expect_found("IntegerToIntegerHashMapZRB", make_wrong<Reversed>, small, 2);
  EXPECT_NE(report.disagreement.what.find("place"), std::string::npos) << report.text();
}

TEST_F(WrongModels, that_grow_too_late_are_found) {
  const auto report = expect_found("IntegerHashSetZRB", make_wrong<LateGrower>,
                                   {.key_count = 400, .steps = 200, .largest_many = 60}, 2);
  EXPECT_EQ(report.disagreement.what, "BinCount") << report.text();
  EXPECT_EQ(report.disagreement.expected, "193");
  EXPECT_EQ(report.disagreement.actual, "389");
}

TEST_F(WrongModels, are_shown_by_a_program_that_disagrees_in_the_console) {
  for (const char* class_name : {"IntegerHashSetZRB", "IntegerToIntegerHashMapZRB"}) {
    SCOPED_TRACE(class_name);
    const auto report = expect_found(class_name, make_wrong<Forgetful<HashedModel>>, small, 2);
    const model::ProgramRun run = model::run_in_console(report.program);
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_GE(run.good, 1) << run.output;
    EXPECT_GE(run.bad, 1) << run.output;
    // The same lines as without the console.
    EXPECT_EQ(run.output, model::run_program(report.program).output);
  }
}

TEST_F(WrongModels, that_keep_what_should_go_are_found) {
  expect_found("StringToStringOrderedMapZRB", make_wrong<Unclean>, small, 4);
}

}  // namespace
