// Reading declarations.
#include "runtime/declarations.h"

#include <optional>

#include "loaded_host.h"
#include "targets.h"

namespace fuzz {
namespace {

using standin::Declaration;
using standin::Parameter;

std::optional<Declaration> read(const std::string& text, const standin::TypeResolver& resolver) {
  try {
    return standin::parse_declaration(text, resolver);
  } catch (const standin::DeclarationError&) {
    return std::nullopt;
  }
}

bool same(const Parameter& a, const Parameter& b) {
  return standin::same_name(a.name, b.name) && a.type == b.type && a.by_ref == b.by_ref &&
         a.assigns == b.assigns && a.optional == b.optional &&
         standin::same_name(a.default_text, b.default_text);
}

bool same(const Declaration& a, const Declaration& b) {
  if (!standin::same_name(a.name, b.name) || a.result != b.result) return false;
  if (a.parameters.size() != b.parameters.size()) return false;
  for (std::size_t i = 0; i < a.parameters.size(); ++i) {
    if (!same(a.parameters[i], b.parameters[i])) return false;
  }
  return true;
}

}  // namespace

std::string declarations(Bytes bytes) {
  const std::string text(bytes.begin(), bytes.end());
  const standin::TypeResolver resolver = loaded_host().type_resolver();
  const std::optional<Declaration> declaration = read(text, resolver);
  const std::string normal = standin::normalized(text);
  if (standin::normalized(normal) != normal) return "normalised twice, it is \"" + normal + "\"";
  if (!declaration) return "";
  if (declaration->text != text) return "the text was changed to \"" + declaration->text + "\"";
  const std::optional<Declaration> again = read(normal, resolver);
  if (!again) return "normalised, it cannot be read: \"" + normal + "\"";
  if (!same(*declaration, *again)) return "normalised, it reads differently: \"" + normal + "\"";
  return "";
}

}  // namespace fuzz
