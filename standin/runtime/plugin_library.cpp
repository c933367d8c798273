// The dynamic loader hands out a library that it has already loaded, so each load gets a file of
// its own.
#include "runtime/plugin_library.h"

#include <dlfcn.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>

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
    std::ifstream in(original, std::ios::binary);
    if (!in) fail(original, std::string(std::strerror(errno)) + "; build it, or name another file");
    path_ = (std::filesystem::temp_directory_path() / "plugin-XXXXXX").string();
    const int file = ::mkstemp(path_.data());
    if (file < 0) {
      fail(original, "no temporary file " + path_ + ": " + std::strerror(errno) +
                         "; make room there, or set TMPDIR to another folder");
    }
    ::close(file);
    // The kernel copies; a plugin with debug information is large, and tests load it for each case.
    std::error_code failure;
    std::filesystem::copy_file(original, path_, std::filesystem::copy_options::overwrite_existing,
                               failure);
    if (failure) {
      ::unlink(path_.c_str());
      fail(original, "it cannot be copied to " + path_ + ": " + failure.message() +
                         "; is it a plugin file, and is there room for a copy?");
    }
  }
  ~TemporaryCopy() { ::unlink(path_.c_str()); }
  TemporaryCopy(const TemporaryCopy&) = delete;
  TemporaryCopy& operator=(const TemporaryCopy&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

// The loader names the copy, which means nothing to whoever reads the message.
std::string loader_error(const std::string& copy, const std::string& original) {
  std::string text = ::dlerror();
  for (std::size_t at = text.find(copy); at != text.npos; at = text.find(copy)) {
    text.replace(at, copy.size(), original);
  }
  return text;
}

}  // namespace

PluginLibrary open_plugin(const std::string& path) {
  if (std::filesystem::is_directory(path))
    fail(path, "that is a folder; name the plugin file in it");
  const TemporaryCopy copy(path);
  if (is_cut_short(copy.path())) {
    fail(path, "the file ends too early; copy or build it again");
  }
  void* handle = ::dlopen(copy.path().c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    fail(path, loader_error(copy.path(), path) + "; a " + std::to_string(pointer_bits) +
                   "-bit shared library with the entry REALPluginMain is needed");
  }
  void* plugin_main = ::dlsym(handle, "REALPluginMain");
  if (plugin_main == nullptr) {
    ::dlclose(handle);
    fail(path, "it is a library without the entry REALPluginMain; export it, or name another file");
  }
  return {handle, reinterpret_cast<PluginMainFunction>(plugin_main)};
}

void close_plugin([[maybe_unused]] void* handle) {
#ifndef ZRB_HAS_ADDRESS_SANITIZER
  ::dlclose(handle);
#endif
}

}  // namespace standin
