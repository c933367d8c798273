// Making contents and host objects of them.
#include "model/contents.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <random>

#include "model/odd_contents.h"
#include "runtime/encodings.h"
#include "runtime/strings.h"
#include "runtime/variants.h"

namespace model {
namespace {

using support::Element;
using support::ElementType;

Content integer(std::int64_t number) {
  return {ContentKind::integer, number, ""};
}
Content text(std::string bytes) {
  return {ContentKind::text, 0, std::move(bytes)};
}

std::string plain_text(int index) {
  return "k" + std::to_string(100000 + index);
}

/// Every text over the letters once, shorter ones first.
std::string rich_text(int index) {
  static const char* const letters[] = {"a", "B", "\xC3\xA9", "\xE6\x97\xA5", "0", " ", "b"};
  constexpr int count = static_cast<int>(std::size(letters));
  std::string result;
  for (; index > 0; index = (index - 1) / count) result += letters[(index - 1) % count];
  return result;
}

std::int64_t wide_number(int index, std::mt19937& random) {
  constexpr auto lowest = std::numeric_limits<std::int32_t>::min();
  constexpr auto highest = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t first[] = {lowest, highest, 0, -1, 1, lowest + 1, highest - 1};
  if (index < static_cast<int>(std::size(first))) return first[index];
  return static_cast<std::int32_t>(random());
}

Content mixed_content(int index) {
  const int part = index / 5;
  switch (index % 5) {
    case 0:
      return integer(part - 20);
    case 1:
      return {ContentKind::int64, part - 20, ""};
    case 2:
      return {ContentKind::half, 2 * part - 39, ""};
    case 3:
      return text(rich_text(part));
    default:
      if (part == 0) return {};
      if (part <= 2) return {ContentKind::boolean, part - 1, ""};
      return text(plain_text(part));
  }
}

Content odd_text(std::size_t row) {
  return {ContentKind::odd_text, 0, odd_texts()[row].text, row, false};
}
Content odd_variant(std::size_t row) {
  return {ContentKind::odd_variant, 0, "", row, odd_variants()[row].has_identity};
}

/// A text, one of each other type, and objects.
std::vector<Content> unlike_keys(std::size_t most) {
  std::vector<Content> result = {odd_text(1)};
  for (std::size_t row = 0; row < odd_variants().size(); ++row) {
    if (odd_variants()[row].is_unlike) result.push_back(odd_variant(row));
  }
  result.resize(std::min(result.size(), most));
  for (Content& content : result) content.is_single = true;
  return result;
}

Content odd_text_key(int index) {
  const auto row = static_cast<std::size_t>(index);
  return row < odd_texts().size() ? odd_text(row) : text(plain_text(index));
}

/// Texts and variants by turns, so that even few keys are of both.
Content odd_mixed_key(int index) {
  if (index % 2 != 0) return odd_text_key(index / 2);
  const auto row = static_cast<std::size_t>(index / 2);
  return row < odd_variants().size() ? odd_variant(row) : integer(index);
}

Content key_content(Scheme scheme, int index, int count, std::mt19937& random) {
  switch (scheme) {
    case Scheme::dense:
      return integer(index - count / 3);
    case Scheme::colliding:
      return integer((index - count / 3) * 193);
    case Scheme::wide:
      return integer(wide_number(index, random));
    case Scheme::plain:
      return text(plain_text(index));
    case Scheme::rich:
      return text(rich_text(index));
    case Scheme::halves:
      return {ContentKind::half, 2 * (index - count / 3) + 1, ""};
    case Scheme::mixed:
      return mixed_content(index);
    case Scheme::odd_texts:
      return odd_text_key(index);
    case Scheme::odd_reals:
      return odd_variant(static_cast<std::size_t>(index));
    case Scheme::odd_mixed:
      return odd_mixed_key(index);
    case Scheme::unlike:
      break;  // has a list of its own
  }
  std::abort();
}

bool sorts_before(const Content& a, const Content& b) {
  if (a.number != b.number) return a.number < b.number;
  if (a.text != b.text) return a.text < b.text;  // by unsigned bytes
  return a.row < b.row;
}

std::string halves_text(std::int64_t halves) {
  const std::string sign = halves < 0 ? "-" : "";
  const std::int64_t size = std::abs(halves);
  return sign + std::to_string(size / 2) + (size % 2 == 0 ? "" : ".5");
}

std::string text_of(const Content& content) {
  switch (content.kind) {
    case ContentKind::nil:
      return "";
    case ContentKind::integer:
    case ContentKind::int64:
      return std::to_string(content.number);
    case ContentKind::half:
      return halves_text(content.number);
    case ContentKind::boolean:
      return content.number != 0 ? "True" : "False";
    case ContentKind::text:
      return content.text;
    case ContentKind::odd_text:
    case ContentKind::odd_variant:
      break;
  }
  std::abort();
}

VariantType type_of(ContentKind kind) {
  switch (kind) {
    case ContentKind::nil:
      return VariantType::nil;
    case ContentKind::integer:
      return VariantType::integer;
    case ContentKind::int64:
      return VariantType::int64;
    case ContentKind::half:
      return VariantType::double_;
    case ContentKind::boolean:
      return VariantType::boolean;
    case ContentKind::text:
      return VariantType::string;
    case ContentKind::odd_text:
    case ContentKind::odd_variant:
      break;
  }
  std::abort();
}

std::string shown_variant(VariantType type, const std::string& its_text) {
  return std::to_string(static_cast<int>(type)) + ":" + its_text;
}

standin::StringRef make_text(const Content& content, int copy) {
  if (content.kind == ContentKind::odd_text) {
    const std::vector<EncodedText>& forms = odd_texts()[content.row].forms;
    const EncodedText& form = forms[static_cast<std::size_t>(copy) % forms.size()];
    return standin::make_string(form.bytes, form.encoding);
  }
  if (copy != copies - 1) return standin::make_string(content.text);
  if (content.text.empty()) return nullptr;
  return standin::convert(standin::make_string(content.text).get(), host_encoding::utf16);
}

standin::ObjectRef make_variant(const Content& content, int copy) {
  switch (content.kind) {
    case ContentKind::nil:
      return nullptr;
    case ContentKind::integer:
      return standin::variant_from_integer(static_cast<std::int32_t>(content.number));
    case ContentKind::int64:
      return standin::variant_from_int64(content.number);
    case ContentKind::half:
      return standin::variant_from_double(static_cast<double>(content.number) / 2);
    case ContentKind::boolean:
      return standin::variant_from_boolean(content.number != 0);
    case ContentKind::text:
      return standin::variant_from_string(
          make_text(content, content.text.empty() ? 0 : copy).get());
    case ContentKind::odd_text:
      return standin::variant_from_string(make_text(content, copy).get());
    case ContentKind::odd_variant:
      return odd_variants()[content.row].make(copy == copies - 1);
  }
  std::abort();
}

std::size_t most_keys(Scheme scheme, int count) {
  const auto wanted = static_cast<std::size_t>(count);
  if (scheme != Scheme::odd_reals) return wanted;
  return std::min(wanted, static_cast<std::size_t>(odd_real_count()));
}

bool is_sorted(Scheme scheme) {
  return scheme != Scheme::mixed && scheme != Scheme::odd_mixed;
}

}  // namespace

const char* name(Scheme scheme) {
  switch (scheme) {
    case Scheme::dense:
      return "dense";
    case Scheme::colliding:
      return "colliding";
    case Scheme::wide:
      return "wide";
    case Scheme::plain:
      return "plain";
    case Scheme::rich:
      return "rich";
    case Scheme::halves:
      return "halves";
    case Scheme::mixed:
      return "mixed";
    case Scheme::odd_texts:
      return "odd texts";
    case Scheme::odd_reals:
      return "odd reals";
    case Scheme::odd_mixed:
      return "odd mixed";
    case Scheme::unlike:
      return "unlike";
  }
  std::abort();
}

bool is_odd(Scheme scheme) {
  return scheme >= Scheme::odd_texts;
}

std::vector<Scheme> schemes_for(const support::ContainerClass& container_class) {
  using enum Scheme;
  switch (container_class.key) {
    case ElementType::integer:
      return {dense, colliding, wide};
    case ElementType::string:
      return {plain, rich};
    case ElementType::variant:
      // Variants of unlike types have an order by identity, which a model cannot foretell.
      if (container_class.is_ordered()) return {dense, plain, rich, wide, halves};
      return {dense, mixed, rich, wide, halves, mixed};
  }
  std::abort();
}

std::vector<Scheme> odd_schemes_for(const support::ContainerClass& container_class) {
  using enum Scheme;
  if (container_class.key == ElementType::integer) return {};
  if (container_class.key == ElementType::string) return {odd_texts};
  if (container_class.is_ordered()) return {odd_texts, odd_reals, unlike};
  return {odd_mixed, odd_texts};
}

std::vector<Content> keys(Scheme scheme, int count) {
  if (scheme == Scheme::unlike) return unlike_keys(static_cast<std::size_t>(count));
  std::mt19937 random(20120517);
  std::vector<Content> result;
  while (result.size() < most_keys(scheme, count)) {
    const int next = static_cast<int>(result.size());
    Content content = key_content(scheme, next, count, random);
    const bool is_new =
        scheme != Scheme::wide || std::find(result.begin(), result.end(), content) == result.end();
    if (is_new) result.push_back(std::move(content));
  }
  if (is_sorted(scheme)) std::sort(result.begin(), result.end(), sorts_before);
  return result;
}

std::vector<Content> values(ElementType type, int count) {
  std::vector<Content> result;
  for (int i = 0; i < count; ++i) {
    switch (type) {
      case ElementType::integer:
        result.push_back(integer(i * 7 - 3));
        break;
      case ElementType::string:
        result.push_back(text(rich_text(i)));
        break;
      case ElementType::variant:
        result.push_back(mixed_content(i + 4));
        break;
    }
  }
  return result;
}

std::vector<Content> odd_values(ElementType type, int count) {
  if (type == ElementType::integer) return values(type, count);
  std::vector<Content> result;
  for (int i = 0; i < count; ++i) {
    result.push_back(type == ElementType::string ? odd_text_key(i) : odd_mixed_key(i));
  }
  return result;
}

Element make_element(ElementType type, const Content& content, int copy) {
  switch (type) {
    case ElementType::integer:
      return static_cast<std::int32_t>(content.number);
    case ElementType::string:
      return make_text(content, copy);
    case ElementType::variant:
      return make_variant(content, copy);
  }
  std::abort();
}

bool is_nan(const Content& content) {
  return content.kind == ContentKind::odd_variant && odd_variants()[content.row].is_nan;
}

std::string shown(ElementType type, const Content& content) {
  if (content.kind == ContentKind::odd_text || content.kind == ContentKind::odd_variant) {
    return shown(make_element(type, content, 0));
  }
  if (type != ElementType::variant) return text_of(content);
  return shown_variant(type_of(content.kind), text_of(content));
}

std::string shown(const Element& element) {
  if (const auto* number = std::get_if<std::int32_t>(&element)) return std::to_string(*number);
  if (const auto* string = std::get_if<standin::StringRef>(&element)) {
    return standin::utf8(string->get());
  }
  const REALobject variant = std::get<standin::ObjectRef>(element).get();
  const VariantType type = standin::variant_type(variant);
  if (type == VariantType::nil) return shown_variant(type, "");
  return shown_variant(type, standin::utf8(standin::to_string(variant).get()));
}

}  // namespace model
