// Running programs.
#include <sstream>

#include "language/script.h"
#include "loaded_host.h"
#include "memory_limit.h"
#include "targets.h"

namespace fuzz {
namespace {

// Enough for tables that grow twice; a program that does not end, or that takes ever more, is no
// finding, and the next one waits.
constexpr std::uint64_t most_steps = 3000;
constexpr std::size_t largest_block = std::size_t{64} << 10U;
constexpr std::size_t most_memory = std::size_t{16} << 20U;

const char* const input = "first line\n42\n\xC3\xA9\n";

}  // namespace

std::string evaluator(Bytes bytes) {
  standin::Host& host = loaded_host();
  std::istringstream in(input);
  std::ostringstream out;
  std::ostringstream err;
  {
    const std::string text(bytes.begin(), bytes.end());
    const MemoryLimit limit(largest_block, most_memory);
    try {
      const standin::language::Script script("program.rbs", text, host);
      script.run({"one", "two"}, {in, out, err}, most_steps);
    } catch (const standin::language::CheckErrors& errors) {
      format(standin::language::SourceFile("program.rbs", text), errors);
      return "";
    } catch (const std::bad_alloc&) {
      return "";  // the text itself was too large
    }
  }
  // Whatever a program does, its mistakes are exceptions of the language.
  const std::string errors = err.str();
  if (errors.find("a C++ exception") != std::string::npos) return errors;
  if (host.has_pending_exception()) return "an exception is left pending";
  if (!host.destructor_errors().empty())
    return "a destructor failed: " + host.destructor_errors()[0];
  return "";
}

}  // namespace fuzz
