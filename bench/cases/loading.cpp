#include "cases/loading.h"

#include <benchmark/benchmark.h>

#include "cases/meter.h"
#include "fasthost/entry_points.h"
#include "fasthost/plugin.h"

void register_loading(const std::string& plugin) {
  benchmark::RegisterBenchmark("loading/plugin",
                               [plugin](benchmark::State& state) {
                                 if (fasthost::class_count() != 0) {
                                   state.SkipWithError("the plugin is already loaded");
                                   return;
                                 }
                                 Meter meter(state);
                                 for (auto _ : state) {
                                   meter.start();
                                   fasthost::load_plugin(plugin, &fasthost::resolve);
                                   meter.stop(1, fasthost::class_count());
                                 }
                                 meter.report();
                               })
      ->UseManualTime()
      ->Iterations(1);
}
