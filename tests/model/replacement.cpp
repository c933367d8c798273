// Replacing containers.
#include "model/replacement.h"

namespace model {

using support::Container;

void replace(Playthrough& playthrough, Container container, const std::vector<Entry>& former) {
  released(playthrough, former);
  playthrough.replace_container(std::move(container));
}

void released(Playthrough& playthrough, const std::vector<Entry>& entries) {
  for (const Entry& entry : entries) {
    playthrough.book().add(entry.key->element, -1);
    if (entry.value != nullptr) playthrough.book().add(entry.value->element, -1);
  }
}

std::unique_ptr<Model> filled(Playthrough& playthrough, const std::vector<Entry>& entries) {
  std::unique_ptr<Model> result = playthrough.new_model();
  for (const Entry& entry : entries) playthrough.stored(*result, *entry.key, entry.value);
  return result;
}

std::string counts(const Container& container) {
  std::string result = std::to_string(container.count());
  if (container.container_class().is_hashed()) {
    result += " in " + std::to_string(container.bin_count());
  }
  return result;
}

std::string counts(const Model& model) {
  std::string result = std::to_string(model.count());
  if (model.bucket_count() > 0) result += " in " + std::to_string(model.bucket_count());
  return result;
}

}  // namespace model
