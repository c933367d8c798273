// Peers that map host strings to host strings over the services of the host.
#include <ext/hash_map>
#include <map>
#include <unordered_map>

#include "subjects/held_string.h"
#include "subjects/map_subject.h"

namespace {

template <class Map>
SubjectEntry<REALstring> peer(std::string_view name, Structure structure) {
  return {name, structure, &MapSubject<Map, REALstring, StringElement>::make};
}

using String = HeldString;

}  // namespace

const std::vector<SubjectEntry<REALstring>>& string_peers() {
  static const std::vector<SubjectEntry<REALstring>> peers = {
      peer<std::unordered_map<String, String, HeldStringHash, HeldStringEqual>>(
          "std::unordered_map", Structure::hashed),
      peer<std::unordered_map<String, String, HeldStringPromisedHash, HeldStringEqual>>(
          "std::unordered_map-uncached", Structure::hashed),
      // Same bucket sizes and chains as the plugin, and no stored hash codes: the step-by-step
      // form.
      peer<__gnu_cxx::hash_map<String, String, HeldStringHash, HeldStringEqual>>("ext::hash_map",
                                                                                 Structure::hashed),
      peer<std::map<String, String, HeldStringLess>>("std::map", Structure::ordered),
  };
  return peers;
}
