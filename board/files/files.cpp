#include "files/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace board {
namespace {

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  ~Descriptor() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  operator int() const { return descriptor_; }

 private:
  int descriptor_;
};

int write_all(int descriptor, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written = ::write(descriptor, content.data(), content.size());
    if (written >= 0) {
      content.remove_prefix(static_cast<size_t>(written));
    } else if (errno != EINTR) {
      return -errno;
    }
  }
  return 0;
}

using Publish = int (*)(const char* hidden, const char* file);

int write_hidden(const std::filesystem::path& file, std::string_view content, Publish publish) {
  // The random name, made with O_EXCL, keeps writers apart that live in process namespaces of their
  // own and may have the same process id.
  std::string hidden = (file.parent_path() / ".write-XXXXXX").string();
  const Descriptor descriptor(::mkostemp(hidden.data(), O_CLOEXEC));
  if (descriptor < 0) return -errno;
  int result = write_all(descriptor, content);
  if (result == 0 && ::fchmod(descriptor, 0644) != 0) result = -errno;
  if (result == 0 && publish(hidden.c_str(), file.c_str()) != 0) result = -errno;
  if (result != 0) ::unlink(hidden.c_str());
  return result;
}

}  // namespace

int replace_file(const std::filesystem::path& file, std::string_view content) {
  return write_hidden(file, content, ::rename);
}

void replace_file_or_throw(const std::filesystem::path& file, std::string_view content) {
  if (const int result = replace_file(file, content); result != 0) {
    throw std::runtime_error("cannot write " + file.string() + ": " + std::strerror(-result));
  }
}

int create_file(const std::filesystem::path& file, std::string_view content) {
  return write_hidden(file, content, [](const char* hidden, const char* name) {
    if (::link(hidden, name) != 0) return -1;
    ::unlink(hidden);
    return 0;
  });
}

int append_line(const std::filesystem::path& file, std::string_view line) {
  const Descriptor descriptor(
      ::open(file.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644));
  if (descriptor < 0) return -errno;
  return write_all(descriptor, std::string(line) + '\n');
}

std::optional<std::string> read_file(const std::filesystem::path& file) {
  const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
  if (descriptor < 0) return std::nullopt;
  std::string content;
  std::array<char, 4096> part{};
  for (;;) {
    const ssize_t count = ::read(descriptor, part.data(), part.size());
    if (count == 0) return content;
    if (count > 0) {
      content.append(part.data(), static_cast<size_t>(count));
    } else if (errno != EINTR) {
      return std::nullopt;
    }
  }
}

}  // namespace board
