// Declarations, steps with their checks, and functions.
#include "model/program_printer.h"

#include "model/literals.h"
#include "model/program_functions.h"
#include "model/statements.h"

namespace model {
namespace {

class Printer {
 public:
  explicit Printer(const support::ContainerClass& container_class) : class_(container_class) {}

  std::string program(const std::vector<Performed>& steps, const std::string& heading);

 private:
  void step(const Performed& performed);
  void checks(const Performed& performed);

  const support::ContainerClass& class_;
  std::string text_;
};

std::string bracketed(const std::vector<std::string>& items) {
  std::string result;
  for (const std::string& item : items) result += "[" + item + "]";
  return result;
}

void Printer::step(const Performed& performed) {
  text_ += "\n' " + std::to_string(performed.number) + ": " + name(performed.operation) + "\n";
  text_ += "got = \"\"\nTry\n";
  text_ += Statements(class_, performed).text();
  text_ += "Catch e As RuntimeException\n  got = Raised(e)\nEnd Try\n";
  checks(performed);
}

void Printer::checks(const Performed& performed) {
  const std::string label = std::to_string(performed.number) + " " + name(performed.operation);
  const bool needs_no_storage = performed.operation == Operation::use_uninitialised ||
                                performed.operation == Operation::copy_uninitialised;
  if (performed.expected && !needs_no_storage) {
    text_ +=
        "Check " + string_literal(label) + ", " + string_literal(*performed.expected) + ", got\n";
  }
  std::string counts = std::to_string(performed.count);
  if (class_.is_hashed()) counts += " in " + std::to_string(performed.bucket_count);
  text_ += "Check " + string_literal(label + ", counts") + ", " + string_literal(counts) +
           ", Counts(c)\n";
  text_ += "Check " + string_literal(label + ", order") + ", " +
           string_literal(bracketed(performed.order)) + ", Order(c)\n";
}

std::string Printer::program(const std::vector<Performed>& steps, const std::string& heading) {
  text_ = comment(heading) + "\n";
  std::string declarations = "Dim c As New {Class}\nDim at0, at1, at2, nowhere As {Iterator}\n";
  declarations += "Dim formerKeys(), heldKeys() As {K}\n";
  if (class_.is_map()) declarations += "Dim formerValues() As {V}\n";
  replace_all(declarations, "{Class}", class_.name);
  replace_all(declarations, "{Iterator}", class_.iterator_name);
  replace_all(declarations, "{K}", type_name(class_.key));
  if (class_.is_map()) replace_all(declarations, "{V}", type_name(*class_.value));
  text_ += declarations + "Dim got As String\n";
  for (const Performed& performed : steps) step(performed);
  text_ += program_functions(class_);
  return text_;
}

}  // namespace

std::string program(const support::ContainerClass& container_class,
                    const std::vector<Performed>& steps, const std::string& heading) {
  return Printer(container_class).program(steps, heading);
}

}  // namespace model
