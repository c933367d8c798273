// The dynamic loader hands out a library that it has already loaded, variables and all. So a file
// that is loaded already is loaded from a copy.
#include "runtime/plugin_library.h"

#include <dlfcn.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <system_error>
#include <utility>

#include "runtime/address_sanitizer.h"
#include "runtime/host.h"
#include "runtime/library_file.h"

namespace standin {
namespace {

constexpr int pointer_bits = static_cast<int>(sizeof(void*) * 8);

[[noreturn]] void fail(const std::string& path, const std::string& problem) {
  throw PluginLoadError("cannot load the plugin " + path + ": " + problem);
}

// A file that is gone when its scope ends; the loader keeps what it has mapped.
class TemporaryCopy {
 public:
  explicit TemporaryCopy(const std::string& original) {
    path_ = (std::filesystem::temp_directory_path() / "plugin-XXXXXX").string();
    const int file = ::mkstemp(path_.data());
    if (file < 0) {
      fail(original, "no temporary file " + path_ + ": " + std::strerror(errno) +
                         "; make room there, or set TMPDIR to another folder");
    }
    ::close(file);
    // The kernel copies; a plugin with debug information is large.
    std::error_code failure;
    std::filesystem::copy_file(original, path_, std::filesystem::copy_options::overwrite_existing,
                               failure);
    if (failure) {
      ::unlink(path_.c_str());
      fail(original, "it cannot be copied to " + path_ + ": " + failure.message() +
                         "; is there room for a copy?");
    }
  }
  ~TemporaryCopy() { ::unlink(path_.c_str()); }
  TemporaryCopy(const TemporaryCopy&) = delete;
  TemporaryCopy& operator=(const TemporaryCopy&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

// The loader names the file as it was given to it, which can be a copy that means nothing to
// whoever reads the message.
std::string loader_error(const std::string& loaded, const std::string& original) {
  std::string text = ::dlerror();
  for (std::size_t at = text.find(loaded); at != text.npos;
       at = text.find(loaded, at + original.size())) {
    text.replace(at, loaded.size(), original);
  }
  return text;
}

// An error number; 0 when the file can be read.
int reading_error(const std::string& path) {
  errno = 0;
  const std::ifstream in(path, std::ios::binary);
  return in ? 0 : errno;
}

bool is_loaded(const std::string& path) {
  void* const handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) ::dlclose(handle);
  return handle != nullptr;
}

#ifdef ZRB_HAS_ADDRESS_SANITIZER
// Reports name what is in loaded libraries only, and leaks are reported when the process ends: the
// library that was closed last stays until the next one is opened, which takes its place.
void* closed_last = nullptr;
#endif

}  // namespace

PluginLibrary open_plugin(const std::string& path) {
  if (std::filesystem::is_directory(path))
    fail(path, "that is a folder; name the plugin file in it");
  if (std::filesystem::is_other(path)) fail(path, "that is a device or a pipe; name a plugin file");
  if (const int error = reading_error(path); error != 0)
    fail(path, std::string(std::strerror(error)) + "; build it, or name another file");
  if (is_cut_short(path)) fail(path, "the file ends too early; copy or build it again");
#ifdef ZRB_HAS_ADDRESS_SANITIZER
  if (void* const closed = std::exchange(closed_last, nullptr); closed != nullptr)
    ::dlclose(closed);
#endif
  // The loader looks for a name without a folder in folders of its own.
  std::string file = std::filesystem::absolute(path).string();
  std::optional<TemporaryCopy> copy;
  if (is_loaded(file)) file = copy.emplace(path).path();
  void* handle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    fail(path, loader_error(file, path) + "; a " + std::to_string(pointer_bits) +
                   "-bit shared library with the entry REALPluginMain is needed");
  }
  void* plugin_main = ::dlsym(handle, "REALPluginMain");
  if (plugin_main == nullptr) {
    ::dlclose(handle);
    fail(path, "it is a library without the entry REALPluginMain; export it, or name another file");
  }
  return {handle, reinterpret_cast<PluginMainFunction>(plugin_main)};
}

void close_plugin(void* handle) {
#ifdef ZRB_HAS_ADDRESS_SANITIZER
  handle = std::exchange(closed_last, handle);
  if (handle == nullptr) return;
#endif
  ::dlclose(handle);
}

}  // namespace standin
