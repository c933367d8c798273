// Measures the plugin and its peers, through function pointers, on a fast host.
//
// Each benchmark is named STRUCTURE/KEY/CASE/SUBJECT and works on as many elements as `--n` says;
// `--benchmark_filter` picks what a process runs, and Google Benchmark's other options hold too.
// `tools/bench` runs them in processes of their own and makes sense of the figures.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "cases/cases.h"
#include "cases/loading.h"
#include "fasthost/entry_points.h"
#include "fasthost/plugin.h"
#include "subjects/held_string.h"

namespace {

struct Options {
  std::string plugin;
  std::string words;
  std::size_t n = 1000;
  std::int64_t iterations = 0;  // 0: as many as the number of elements suggests
  bool count_calls = false;
};

constexpr const char* usage =
    "usage: zrb_bench --plugin=FILE [--words=FILE] [--n=NUMBER] [--iterations=NUMBER]\n"
    "                 [--count-calls] [--benchmark_filter=REGEX] [--benchmark_list_tests]\n";

// The value of an option of the form --name=value; null if the argument is another.
const char* value_of(std::string_view argument, std::string_view name) {
  if (!argument.starts_with(name) || argument.size() <= name.size()) return nullptr;
  return argument[name.size()] == '=' ? argument.data() + name.size() + 1 : nullptr;
}

Options read_options(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (const char* value = value_of(argument, "--plugin")) {
      options.plugin = value;
    } else if (const char* words = value_of(argument, "--words")) {
      options.words = words;
    } else if (const char* n = value_of(argument, "--n")) {
      options.n = std::strtoull(n, nullptr, 10);
    } else if (const char* iterations = value_of(argument, "--iterations")) {
      options.iterations = std::strtoll(iterations, nullptr, 10);
    } else if (argument == "--count-calls") {
      options.count_calls = true;
    } else {
      std::fprintf(stderr, "zrb_bench: what is %s?\n%s", argv[i], usage);
      std::exit(2);
    }
  }
  if (options.plugin.empty() || options.n == 0) {
    std::fputs(usage, stderr);
    std::exit(2);
  }
  return options;
}

HostResolver resolver(const Options& options) {
  return options.count_calls ? &fasthost::resolve_counting : &fasthost::resolve;
}

// Enough for some hundred thousand operations; those on strings take several times as long.
template <class K>
std::int64_t iterations(const Options& options, bool once) {
  constexpr std::int64_t operations = std::is_same_v<K, REALstring> ? 200'000 : 500'000;
  if (options.iterations != 0) return options.iterations;
  if (once) return 1;
  return std::max<std::int64_t>(operations / static_cast<std::int64_t>(options.n), 1);
}

std::string_view word(Structure structure) {
  return structure == Structure::hashed ? "hashed" : "ordered";
}

template <class K>
void register_subject(const Options& options, std::string_view key, const SubjectEntry<K>& entry,
                      bool is_plugin, const std::function<Workload<K>()>& make_workload) {
  const auto bed = std::make_shared<Bed<K>>(entry.make, make_workload);
  for (const Case<K>& one : cases<K>()) {
    if (one.plugin_alone && !is_plugin) continue;
    std::string name(word(entry.structure));
    name.append("/").append(key).append("/").append(one.name).append("/").append(entry.name);
    benchmark::RegisterBenchmark(
        name.c_str(), [bed, run = one.run](benchmark::State& state) { run(state, *bed); })
        ->UseManualTime()
        ->Iterations(iterations<K>(options, one.once));
  }
}

template <class K>
void register_subjects(const Options& options, std::string_view key,
                       const std::vector<SubjectEntry<K>>& peers,
                       const std::function<Workload<K>()>& make_workload) {
  for (const Structure structure : {Structure::hashed, Structure::ordered}) {
    const auto make_plugin = [&options, structure] {
      if (fasthost::class_count() == 0) fasthost::load_plugin(options.plugin, resolver(options));
      return plugin_subject<K>(structure);
    };
    register_subject<K>(options, key, {"plugin", structure, make_plugin}, true, make_workload);
  }
  for (const auto& peer : peers) register_subject(options, key, peer, false, make_workload);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const Options options = read_options(argc, argv);
  StringServices::instance().look_up(resolver(options));
  register_loading(options.plugin);
  register_subjects<std::int32_t>(options, "integer", integer_peers(),
                                  [&] { return make_integer_workload(options.n); });
  register_subjects<REALstring>(options, "string", string_peers(),
                                [&] { return make_string_workload(options.n, options.words); });
  try {
    if (benchmark::RunSpecifiedBenchmarks() == 0) {
      std::fputs("zrb_bench: no benchmark of that name; --benchmark_list_tests lists them\n",
                 stderr);
      return EXIT_FAILURE;
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "zrb_bench: %s\n", error.what());
    return EXIT_FAILURE;
  }
  std::fflush(stdout);
  std::_Exit(EXIT_SUCCESS);  // the maps that are left die with the process
}
