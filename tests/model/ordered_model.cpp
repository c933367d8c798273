// A std::map, asked for neighbours.
#include "model/ordered_model.h"

#include <cstdlib>
#include <iterator>

namespace model {

Entry* OrderedModel::find(int key) {
  const auto found = entries_.find(key);
  return found == entries_.end() ? nullptr : &found->second;
}

void OrderedModel::insert(const Entry& entry, std::uint32_t /*hash*/) {
  entries_[entry.key->number] = entry;
}

void OrderedModel::erase(int key) {
  entries_.erase(key);
}

void OrderedModel::clear() {
  entries_.clear();
}

std::vector<Entry> OrderedModel::order() const {
  std::vector<Entry> result;
  for (const auto& [key, entry] : entries_) result.push_back(entry);
  return result;
}

std::optional<int> OrderedModel::at(Entries::const_iterator position) const {
  if (position == entries_.end()) return std::nullopt;
  return position->first;
}

std::optional<int> OrderedModel::first() const {
  return at(entries_.begin());
}

std::optional<int> OrderedModel::next(int key) const {
  return at(entries_.upper_bound(key));
}

std::optional<int> OrderedModel::last() const {
  return entries_.empty() ? std::nullopt : at(std::prev(entries_.end()));
}

std::optional<int> OrderedModel::previous(int key) const {
  const auto position = entries_.lower_bound(key);
  if (position == entries_.begin()) return std::nullopt;
  return std::prev(position)->first;
}

std::optional<int> OrderedModel::lower_bound(int key) const {
  return at(entries_.lower_bound(key));
}

std::vector<const Object*> OrderedModel::chain(std::uint32_t /*hash*/) const {
  std::abort();
}

}  // namespace model
