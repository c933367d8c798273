// Prints what operations cost with ordinary and with adversarial keys, from n to 8 n, as
// comma-separated values: comparisons and calls of the host on average for each operation. Counts
// are the same on every machine.
//
// Usage: cost_curves [N]     n is 125 unless told otherwise
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>

#include "adversary.h"

namespace {

using support::Element;
using support::ElementType;

struct Keys {
  const char* name;
  ElementType type;
  const char* missing;  // in the host
  std::function<std::vector<Element>(int count)> make;
};

std::unique_ptr<standin::Host> host_without(const char* entry_point) {
  standin::HostOptions options;
  options.instrument = true;
  if (entry_point != nullptr) options.without.insert(entry_point);
  auto host = std::make_unique<standin::Host>(options);
  host->load_plugin(ZRB_PLUGIN_PATH);
  return host;
}

void print(const char* class_name, const char* keys, int n, const char* operation,
           const hostile::Cost& cost) {
  std::printf("%s,%s,%s,%d,%.2f,%.2f\n", class_name, keys, operation, n, cost.comparisons,
              cost.host_calls);
}

}  // namespace

int main(int argument_count, char** arguments) {
  const int n = argument_count > 1 ? std::atoi(arguments[1]) : 125;
  if (n < 1 || n > 2000) {
    std::fprintf(stderr, "usage: %s [N], N from 1 to 2000\n", arguments[0]);
    return 2;
  }
  const Keys all_keys[] = {
      {"ordinary texts", ElementType::string, nullptr,
       [](int count) { return hostile::ordinary_texts(ElementType::string, count); }},
      {"texts of one hash", ElementType::string, nullptr,
       [](int count) { return hostile::colliding_texts(ElementType::string, count); }},
      {"integers in variants", ElementType::variant, nullptr, hostile::integer_variants},
      {"integers in variants without a hash service", ElementType::variant, "VariantHash",
       hostile::integer_variants},
  };
  std::printf("class,keys,operation,n,comparisons,host calls\n");
  for (const Keys& keys : all_keys) {
    for (const support::ContainerClass& c : support::classes_with_key(keys.type)) {
      if (!c.is_set()) continue;
      for (int count = n; count <= 8 * n; count *= 2) {
        const auto host = host_without(keys.missing);
        const hostile::Costs costs = hostile::costs(c, keys.make(count));
        print(c.name, keys.name, count, "insert", costs.insert);
        print(c.name, keys.name, count, "find", costs.find);
        print(c.name, keys.name, count, "remove", costs.remove);
      }
    }
  }
}
