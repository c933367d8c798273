// Making, keeping and recognising the objects of a sequence.
#include "model/objects.h"

#include <algorithm>
#include <functional>

#include "runtime/host.h"
#include "support/bucket_witness.h"

namespace model {
using support::Element;
using support::ElementType;

Objects::Objects(const support::ContainerClass& container_class, Scheme scheme, int key_count,
                 int value_count, LockBook& book)
    : class_(container_class),
      book_(book),
      key_contents_(keys(scheme, key_count)),
      value_contents_((is_odd(scheme) ? odd_values : values)(
          container_class.value.value_or(ElementType::integer), value_count)) {
  if (scheme == Scheme::unlike) make_keys_in_order_of_handles();
}

void Objects::make_keys_in_order_of_handles() {
  const std::size_t before = standin::Host::current().ledger().live_count();
  std::vector<std::pair<Element, Content>> made_keys;
  for (const Content& its_content : key_contents_) {
    made_keys.emplace_back(make_element(class_.key, its_content, 0), its_content);
  }
  std::sort(made_keys.begin(), made_keys.end(), [](const auto& a, const auto& b) {
    return std::less<>()(support::handle(a.first), support::handle(b.first));
  });
  for (std::size_t i = 0; i < made_keys.size(); ++i) {
    const int number = static_cast<int>(i);
    key_contents_[i] = made_keys[i].second;
    keys_[{number, 0}] =
        &remember({number, &key_contents_[i], false, std::move(made_keys[i].first)}, true);
  }
  live_handles_ += standin::Host::current().ledger().live_count() - before;
}

const Object& Objects::key(int number, int copy) {
  return made(keys_, class_.key, key_contents_, number, copy, true);
}

const Object& Objects::value(int number, int copy) {
  const ElementType type = class_.value.value_or(ElementType::integer);
  return made(values_, type, value_contents_, number, copy, false);
}

const Object& Objects::key_text(int number) {
  return made(texts_, ElementType::string, key_contents_, number, 0, false);
}

const Object& Objects::made(Made& among, ElementType type, const std::vector<Content>& contents,
                            int number, int copy, bool is_key) {
  const Content& its_content = contents[static_cast<std::size_t>(number)];
  if (its_content.is_single && is_key) copy = 0;
  const Object*& object = among[{number, copy}];
  if (object == nullptr) {
    const std::size_t before = standin::Host::current().ledger().live_count();
    const bool other_form = copy == copies - 1;
    object = &remember({number, &its_content, other_form, make_element(type, its_content, copy)},
                       is_key);
    live_handles_ += standin::Host::current().ledger().live_count() - before;
  }
  return *object;
}

const Object& Objects::adopt_key(int number, Element element) {
  ++live_handles_;
  return remember({number, &content(number), false, std::move(element)}, true);
}

const Object& Objects::remember(Object object, bool is_key) {
  const Object& kept = objects_.emplace_back(std::move(object));
  book_.open(kept.element, is_key && class_.is_ordered());
  return kept;
}

std::uint32_t Objects::hash(int key_number) {
  const auto [position, is_new] = hashes_.try_emplace(key_number);
  if (is_new) {
    const Content& its_content = content(key_number);
    position->second = its_content.kind == ContentKind::odd_text
                           ? support::elf_hash(its_content.text)
                           : support::expected_hash(key(key_number, 0).element);
  }
  return position->second;
}

}  // namespace model
