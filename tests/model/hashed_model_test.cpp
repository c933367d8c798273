// The model's buckets against libstdc++'s own chained hash table, and the order of the contents.
#include "model/hashed_model.h"

#include <gtest/gtest.h>

#include <random>

#include "support/bucket_witness.h"

namespace {

using model::Content;
using model::Entry;
using model::Object;
using model::Scheme;

std::vector<int> keys_of(const std::vector<Entry>& entries) {
  std::vector<int> result;
  for (const Entry& entry : entries) result.push_back(entry.key->number);
  return result;
}

TEST(HashedModel, keeps_the_order_of_the_witness) {
  std::mt19937 random(17);
  model::HashedModel model;
  support::BucketWitness witness;
  std::vector<Object> objects;
  std::vector<std::uint32_t> hashes;
  for (int i = 0; i < 2000; ++i) {
    objects.push_back({i, nullptr, false, 0});
    hashes.push_back(static_cast<std::uint32_t>(random() % 5000));
  }
  for (int step = 0; step < 6000; ++step) {
    const std::size_t number = random() % objects.size();
    const int key = static_cast<int>(number);
    if (random() % 4 == 0) {
      model.erase(key);
      witness.erase(hashes[number], key);
    } else {
      model.grow();
      if (model.find(key) == nullptr) model.insert({&objects[number], nullptr}, hashes[number]);
      witness.insert(hashes[number], key);
    }
    if (step % 50 != 0) continue;
    ASSERT_EQ(keys_of(model.order()), witness.order()) << step;
    ASSERT_EQ(model.bucket_count(), witness.bucket_count()) << step;
  }
  EXPECT_EQ(model.bucket_count(), 1543);
}

TEST(HashedModel, finds_neighbours_as_its_order_says) {
  model::HashedModel model;
  std::vector<Object> objects;
  for (int i = 0; i < 30; ++i) objects.push_back({i, nullptr, false, 0});
  for (const Object& object : objects) {
    model.insert({&object, nullptr}, static_cast<std::uint32_t>(object.number * 77));
  }
  std::vector<int> walked;
  for (std::optional<int> key = model.first(); key; key = model.next(*key)) walked.push_back(*key);
  EXPECT_EQ(walked, keys_of(model.order()));
}

TEST(Contents, of_keys_are_distinct_and_ascend) {
  for (const Scheme scheme : {Scheme::dense, Scheme::colliding, Scheme::wide, Scheme::plain,
                              Scheme::rich, Scheme::halves}) {
    SCOPED_TRACE(model::name(scheme));
    const std::vector<Content> contents = model::keys(scheme, 3000);
    ASSERT_EQ(contents.size(), 3000u);
    for (std::size_t i = 1; i < contents.size(); ++i) {
      const Content& former = contents[i - 1];
      const Content& content = contents[i];
      ASSERT_TRUE(former.number < content.number ||
                  (former.number == content.number && former.text < content.text))
          << i;
    }
  }
}

TEST(Contents, of_mixed_and_of_odd_keys_are_distinct) {
  for (const Scheme scheme : {Scheme::mixed, Scheme::odd_mixed, Scheme::odd_texts}) {
    SCOPED_TRACE(model::name(scheme));
    const std::vector<Content> contents = model::keys(scheme, 1000);
    for (std::size_t i = 0; i < contents.size(); ++i) {
      for (std::size_t j = 0; j < i; ++j) ASSERT_FALSE(contents[i] == contents[j]) << i << " " << j;
    }
  }
}

}  // namespace
