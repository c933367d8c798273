// Peers that map integers to integers, each with its own default hash or order. Boost's and
// abseil's open-addressing tables and B-trees move their elements about and keep no fixed order,
// which the plugin must not do; they show what that freedom is worth.
#include <absl/container/btree_map.h>
#include <absl/container/flat_hash_map.h>
#include <absl/container/node_hash_map.h>

#include <boost/unordered/unordered_flat_map.hpp>
#include <boost/unordered_map.hpp>
#include <ext/hash_map>
#include <map>
#include <unordered_map>

#include "subjects/map_subject.h"

namespace {

template <class Map>
SubjectEntry<std::int32_t> peer(std::string_view name, Structure structure) {
  return {name, structure, &MapSubject<Map, std::int32_t, IntegerElement>::make};
}

using Int = std::int32_t;

}  // namespace

const std::vector<SubjectEntry<std::int32_t>>& integer_peers() {
  static const std::vector<SubjectEntry<std::int32_t>> peers = {
      peer<std::unordered_map<Int, Int>>("std::unordered_map", Structure::hashed),
      peer<__gnu_cxx::hash_map<Int, Int>>("ext::hash_map", Structure::hashed),
      peer<boost::unordered_map<Int, Int>>("boost::unordered_map", Structure::hashed),
      peer<boost::unordered_flat_map<Int, Int>>("boost::unordered_flat_map", Structure::hashed),
      peer<absl::flat_hash_map<Int, Int>>("absl::flat_hash_map", Structure::hashed),
      peer<absl::node_hash_map<Int, Int>>("absl::node_hash_map", Structure::hashed),
      peer<std::map<Int, Int>>("std::map", Structure::ordered),
      peer<absl::btree_map<Int, Int>>("absl::btree_map", Structure::ordered),
  };
  return peers;
}
