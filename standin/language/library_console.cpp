// Library routines for the console and the program itself.
#include <array>
#include <istream>
#include <iterator>
#include <ostream>
#include <string>

#include "language/library.h"
#include "language/machine.h"
#include "runtime/strings.h"

namespace standin::language {
namespace {

// Bytes go out as they are, but for wide encodings and others that a terminal does not have.
void write(std::ostream& out, REALstring text) {
  const std::uint32_t code = encoding(text);
  if (code == host_encoding::utf8 || code == host_encoding::ascii ||
      code == host_encoding::as_stored) {
    const std::string_view all = bytes(text);
    out.write(all.data(), static_cast<std::streamsize>(all.size()));
  } else {
    out << utf8(text);
  }
}

Value print(const RoutineCall& call) {
  write(call.machine.streams().out, call.string(0));
  call.machine.streams().out << '\n';
  return {};
}

Value write_out(const RoutineCall& call) {
  write(call.machine.streams().out, call.string(0));
  return {};
}

// Ordered with what was written to standard output, as on a terminal.
Value write_error_line(const RoutineCall& call) {
  call.machine.streams().out.flush();
  write(call.machine.streams().err, call.string(0));
  call.machine.streams().err << '\n';
  return {};
}

// Without its end; "" at the end of the input.
Value read_line(const RoutineCall& call) {
  call.machine.streams().out.flush();
  std::string line;
  std::getline(call.machine.streams().in, line);
  if (line.ends_with('\r')) line.pop_back();
  return Value::of_string(make_string(line));
}

Value read_all(const RoutineCall& call) {
  call.machine.streams().out.flush();
  std::string all;
  std::array<char, 65536> part{};
  std::istream& in = call.machine.streams().in;
  while (in.read(part.data(), part.size()) || in.gcount() > 0) {
    all.append(part.data(), static_cast<std::size_t>(in.gcount()));
  }
  return Value::of_string(make_string(all));
}

// Before it waits for more, what was written is shown.
Value at_end(const RoutineCall& call) {
  std::istream& in = call.machine.streams().in;
  if (in.good() && in.rdbuf()->in_avail() <= 0) call.machine.streams().out.flush();
  return Value::of_boolean(!in.good() || in.peek() == std::char_traits<char>::eof());
}

Value quit(const RoutineCall& call) {
  throw QuitProgram{call.has(0) ? call.integer(0) : 0};
}

}  // namespace

std::span<const RoutineRow> console_routines() {
  using enum RoutineForm;
  // clang-format off
  static constexpr auto rows = std::to_array<RoutineRow>({
      {"Print",            function, "String",    "",        print},
      {"Input",            function, "",          "String",  read_line},
      {"StdIn.ReadLine",   function, "",          "String",  read_line},
      {"StdIn.ReadAll",    function, "",          "String",  read_all},
      {"StdIn.EOF",        function, "",          "Boolean", at_end},
      {"StdOut.Write",     function, "String",    "",        write_out},
      {"StdOut.WriteLine", function, "String",    "",        print},
      {"StdErr.WriteLine", function, "String",    "",        write_error_line},
      {"Quit",             function, "[Integer]", "",        quit},
  });
  // clang-format on
  return rows;
}

}  // namespace standin::language
