#include "subjects/held_string.h"

#include <algorithm>
#include <cstring>

namespace {

// A string read as UTF-8.
class View {
 public:
  explicit View(REALstring string) : string_(string) {
    if (string_ == nullptr) return;
    const StringServices& services = StringServices::instance();
    services.get_encoding(string_);  // a string without an encoding would be rebuilt
    services.lock(string_);
    filled_ = services.get_data(string_, host_encoding::utf8, &record_);
  }
  View(const View&) = delete;
  View& operator=(const View&) = delete;
  ~View() {
    const StringServices& services = StringServices::instance();
    if (filled_) services.dispose_data(&record_);
    if (string_ != nullptr) services.unlock(string_);
  }

  const char* text() const { return filled_ ? static_cast<const char*>(record_.data) : ""; }
  std::size_t length() const { return filled_ ? record_.length : 0; }

 private:
  REALstring string_;
  REALstringData record_{};
  bool filled_ = false;
};

int compare(const HeldString& a, const HeldString& b) {
  const StringServices& services = StringServices::instance();
  if (a.get() != nullptr) services.lock(a.get());
  if (b.get() != nullptr) services.lock(b.get());
  const View view_a(a.get());
  const View view_b(b.get());
  const std::size_t shorter = std::min(view_a.length(), view_b.length());
  return std::strncmp(view_a.text(), view_b.text(), shorter + 1);
}

}  // namespace

StringServices& StringServices::instance() {
  static constinit StringServices services{};
  return services;
}

void StringServices::look_up(HostResolver resolver) {
  const auto find = [&](auto& slot, const char* name) {
    slot = reinterpret_cast<std::remove_reference_t<decltype(slot)>>(resolver(name));
  };
  find(lock, "REALLockString");
  find(unlock, "REALUnlockString");
  find(get_encoding, "REALGetStringEncoding");
  find(get_data, "PluginGetStringData");
  find(dispose_data, "PluginDisposeStringData");
}

// The ELF hash over the bytes taken as signed.
std::size_t HeldStringHash::operator()(const HeldString& string) const {
  const View view(string.get());
  std::uint32_t hash = 0;
  for (std::size_t i = 0; i < view.length(); ++i) {
    const auto byte = static_cast<signed char>(view.text()[i]);
    hash = (hash << 4) + static_cast<std::uint32_t>(std::int32_t{byte});
    const std::uint32_t top = hash & 0xF0000000U;
    hash ^= top ^ (top >> 24);
  }
  return hash;
}

bool HeldStringEqual::operator()(const HeldString& a, const HeldString& b) const {
  return compare(a, b) == 0;
}

bool HeldStringLess::operator()(const HeldString& a, const HeldString& b) const {
  return compare(a, b) < 0;
}
