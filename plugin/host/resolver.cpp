#include "host/resolver.h"

namespace {

HostResolver host_resolver = nullptr;

}  // namespace

void keep_resolver(HostResolver resolver) {
  host_resolver = resolver;
}

void* find_entry_point(const char* name) {
  return host_resolver == nullptr ? nullptr : host_resolver(name);
}
