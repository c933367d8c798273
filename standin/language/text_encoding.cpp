// TextEncoding: what `Encodings.UTF8` and `s.Encoding` are.
#include "language/text_encoding.h"

#include <utility>
#include <vector>

#include "runtime/encodings.h"
#include "runtime/strings.h"

namespace standin::language {
namespace {

struct Data {
  std::uint32_t code;
};

Value internet_name(REALobject self) {
  return Value::of_string(make_string(encodings::name(encoding_code(self))));
}

}  // namespace

const ClassInfo& text_encoding_class() {
  static ClassInfo* const class_info = [] {
    auto* made = new ClassInfo("TextEncoding", nullptr, NativeData{sizeof(Data), nullptr, nullptr});
    PropertyInfo name;
    name.name = "InternetName";
    name.type = Type::of(TypeKind::string);
    name.native_getter = internet_name;
    std::vector<PropertyInfo> properties;
    properties.push_back(std::move(name));
    made->set_members({}, std::move(properties));
    return made;
  }();
  return *class_info;
}

ObjectRef make_text_encoding(std::uint32_t code) {
  ObjectRef object = make_instance(text_encoding_class());
  static_cast<Data*>(instance_data(object.get(), text_encoding_class()))->code = code;
  return object;
}

std::uint32_t encoding_code(REALobject text_encoding) {
  if (text_encoding == nullptr) return host_encoding::as_stored;
  return static_cast<const Data*>(instance_data(text_encoding, text_encoding_class()))->code;
}

}  // namespace standin::language
