// The console's command line.
#include "options.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <filesystem>
#include <memory>
#include <sstream>
#include <system_error>

namespace console {
namespace {

class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_usage(const CLI::App*, std::string) const override {
    return "Usage: console [OPTIONS] PROGRAM [ARGUMENTS]\n       console [OPTIONS] --classes\n";
  }
};

Answer wrong(const std::string& problem) {
  return {"console: " + problem + "\nRun console --help for the options.\n", 2};
}

Answer wrong_version() {
  return wrong("a host's version is a positive number, such as 2012.1");
}

}  // namespace

std::string default_plugin_file() {
  std::error_code error;
  const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
  const std::filesystem::path folder = error ? std::filesystem::path(".") : self.parent_path();
  for (const std::filesystem::path& place : {folder, folder.parent_path()}) {
    const std::filesystem::path file = place / "ZRBContainers.so";
    if (std::filesystem::exists(file, error)) return file.string();
  }
  return (folder.parent_path() / "ZRBContainers.so").string();
}

std::variant<Options, Answer> parse_options(int count, const char* const* words,
                                            const std::string& default_plugin) {
  Options options;
  options.plugin = default_plugin;
  CLI::App app("Runs a program in the host language, with a plugin loaded into a stand-in host.",
               "console");
  app.formatter(std::make_shared<HelpFormatter>());
  app.prefix_command();
  app.set_version_flag("--version", std::string("console ") + ZRB_VERSION);
  app.add_option("--plugin", options.plugin, "The plugin's binary")->type_name("FILE");
  app.add_flag("--classes", options.lists_classes,
               "Lists the registered classes with their declarations");
  app.add_flag("--trace", options.traces,
               "Shows every plugin call with its host calls and results, on standard error");
  app.add_flag("--ledger", options.shows_ledger,
               "Shows what is still locked at the end, and every misuse of a handle, on standard "
               "error; misuse makes the exit status 1");
  app.add_option("--host-version", options.host_version, "What the host calls its version")
      ->type_name("YEAR.RELEASE");
  app.add_option("--without", options.without,
                 "An entry point that the host lacks, by its name or declaration; may be repeated")
      ->type_name("ENTRY")
      ->allow_extra_args(false);

  try {
    app.parse(count, words);
  } catch (const CLI::ConversionError&) {
    return wrong_version();  // the one option with a number
  } catch (const CLI::ParseError& error) {
    std::ostringstream out;
    std::ostringstream err;
    const bool wanted = app.exit(error, out, err) == 0;
    return wanted ? Answer{out.str(), 0} : wrong(error.what());
  }
  if (!std::isfinite(options.host_version) || options.host_version <= 0) return wrong_version();
  std::vector<std::string> rest = app.remaining();
  if (!rest.empty() && rest.front() == "--") {
    rest.erase(rest.begin());
  } else if (!rest.empty() && rest.front().starts_with("-") && rest.front() != "-") {
    return wrong("there is no option " + rest.front());
  }
  if (!rest.empty()) {
    options.program = rest.front();
    options.arguments.assign(rest.begin() + 1, rest.end());
  } else if (!options.lists_classes) {
    return wrong("name a program file to run, or --classes.");
  }
  return options;
}

}  // namespace console
