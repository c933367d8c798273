// The console's command line.
#ifndef ZRB_CONSOLE_OPTIONS_H
#define ZRB_CONSOLE_OPTIONS_H

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace console {

struct Options {
  std::string plugin;  // a file
  bool lists_classes = false;
  bool traces = false;
  bool shows_ledger = false;
  double host_version = 2012.1;
  std::vector<std::string> without;    // entry points
  std::optional<std::string> program;  // a file
  std::vector<std::string> arguments;  // of the program
};

// What there is to do instead of running anything: `--help`, or what is wrong with the options.
struct Answer {
  std::string text;
  int status;  // 0, or 2 for wrong options
};

// Options end where the program file is named: what follows is the program's, also when it begins
// with a dash. `default_plugin` is used without `--plugin`.
std::variant<Options, Answer> parse_options(int count, const char* const* words,
                                            const std::string& default_plugin);

// The plugin that was built together with this executable.
std::string default_plugin_file();

}  // namespace console

#endif
