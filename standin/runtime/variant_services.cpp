// The entry points for variants.
#include "runtime/guarded.h"
#include "runtime/services.h"
#include "runtime/variants.h"

namespace standin::services {

REALobject string_to_variant(REALstring string) {
  return guarded([&] { return variant_from_string(string).release(); });
}
REALobject int32_to_variant(std::int32_t value) {
  return guarded([&] { return variant_from_integer(value).release(); });
}
std::int32_t variant_type_code(REALobject variant) {
  return static_cast<std::int32_t>(variant_type(variant));
}
REALobject variant_to_object(REALobject variant) {
  return to_object(variant);
}
REALstring variant_to_string(REALobject variant) {
  return guarded([&] { return to_string(variant).release(); });
}
std::uint32_t hash_of_variant(REALobject variant) {
  return variant_hash(variant);
}
std::int32_t variant_to_int32(REALobject variant) {
  return to_int32(variant);
}
std::int64_t variant_to_int64(REALobject variant) {
  return to_int64(variant);
}
float variant_to_single(REALobject variant) {
  return to_single(variant);
}
double variant_to_double(REALobject variant) {
  return to_double(variant);
}

}  // namespace standin::services
