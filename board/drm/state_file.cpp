#include "drm/state_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <concepts>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>
#include <system_error>
#include <type_traits>

#include "drm/file_descriptor.h"

namespace board::drm {
namespace {

// Changes whenever the layout does.
constexpr uint64_t kImageMark = 0x31'6d72'6475'7071;

// Padding would carry whatever the memory held into the file.
template <typename T>
concept Flat = std::is_trivially_copyable_v<T> && std::has_unique_object_representations_v<T>;

class Writer {
 public:
  void value(const Flat auto& item) { bytes(&item, sizeof(item)); }
  template <Flat T>
  void values(const std::vector<T>& list) {
    value(uint64_t{list.size()});
    bytes(list.data(), list.size() * sizeof(T));
  }
  template <typename T, typename Each>
  void list(const std::vector<T>& items, Each each) {
    value(uint64_t{items.size()});
    for (const T& item : items)
      each(item);
  }
  std::vector<uint8_t> image;

 private:
  void bytes(const void* data, size_t size) {
    const auto* first = static_cast<const uint8_t*>(data);
    image.insert(image.end(), first, first + size);
  }
};

class Reader {
 public:
  explicit Reader(const std::vector<uint8_t>& image) : image_(image) {}
  void value(Flat auto& item) { bytes(&item, sizeof(item)); }
  template <Flat T>
  void values(std::vector<T>& list) {
    list.resize(count(sizeof(T)));
    bytes(list.data(), list.size() * sizeof(T));
  }
  template <typename T, typename Each>
  void list(std::vector<T>& items, Each each) {
    items.resize(count(1));
    for (T& item : items)
      each(item);
  }

 private:
  size_t count(size_t item_size) {
    uint64_t wanted = 0;
    value(wanted);
    if (wanted > (image_.size() - position_) / item_size) fail();
    return wanted;
  }
  void bytes(void* data, size_t size) {
    if (size > image_.size() - position_) fail();
    if (size > 0) std::memcpy(data, image_.data() + position_, size);
    position_ += size;
  }
  [[noreturn]] static void fail() {
    throw std::runtime_error("the display device's state is cut short or not of this build");
  }
  const std::vector<uint8_t>& image_;
  size_t position_ = 0;
};

// One walk for both directions: what is written and what is read can't differ.
template <typename Archive, typename State>
requires std::same_as<std::remove_const_t<State>, DeviceState>
void transfer(Archive& archive, State& state) {
  const auto properties = [&](auto& list) {
    archive.values(list.ids);
    archive.values(list.values);
  };
  archive.value(state.settings);
  archive.list(state.crtcs, [&](auto& crtc) {
    archive.value(crtc.id);
    properties(crtc.properties);
  });
  archive.values(state.encoders);
  archive.list(state.connectors, [&](auto& connector) {
    archive.value(connector.id);
    archive.value(connector.type);
    archive.value(connector.type_id);
    archive.value(connector.connected);
    archive.value(connector.encoder_id);
    properties(connector.properties);
  });
  archive.list(state.blobs, [&](auto& blob) {
    archive.value(blob.id);
    archive.value(blob.owner);
    archive.values(blob.data);
  });
  archive.values(state.open_files);
  archive.value(state.last_file_number);
  archive.value(state.commits);
  archive.value(state.property_writes);
  archive.value(state.last_nonblocking_commit);
}

std::filesystem::path state_path(const std::filesystem::path& board_folder) {
  return board_folder / "drm" / "state";
}

FileDescriptor open_file(const std::filesystem::path& path, int flags) {
  FileDescriptor file(::open(path.c_str(), flags | O_CLOEXEC, 0644));
  if (file.get() < 0) throw std::system_error(errno, std::generic_category(), path.string());
  return file;
}

// read and write alike: again after a signal, on until everything went through or the end.
template <typename Call, typename Byte>
size_t transfer_all(Call call, int file, Byte* data, size_t size, const std::string& name) {
  size_t done = 0;
  while (done < size) {
    const ssize_t count = call(file, data + done, size - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw std::system_error(errno, std::generic_category(), name);
    if (count == 0) break;
    done += static_cast<size_t>(count);
  }
  return done;
}

}  // namespace

std::filesystem::path node_folder(const std::filesystem::path& board_folder) {
  return board_folder / "drm" / "dri";
}

std::filesystem::path node(const std::filesystem::path& board_folder) {
  return node_folder(board_folder) / "card0";
}

std::vector<uint8_t> encode(const DeviceState& state) {
  Writer writer;
  writer.value(kImageMark);
  transfer(writer, state);
  return std::move(writer.image);
}

DeviceState decode(const std::vector<uint8_t>& image) {
  Reader reader(image);
  uint64_t mark = 0;
  reader.value(mark);
  if (mark != kImageMark) {
    throw std::runtime_error("the display device's state is not of this build");
  }
  DeviceState state;
  transfer(reader, state);
  return state;
}

std::vector<uint8_t> read_image(const std::filesystem::path& board_folder) {
  const std::filesystem::path path = state_path(board_folder);
  const FileDescriptor file = open_file(path, O_RDONLY);
  struct stat status = {};
  if (::fstat(file.get(), &status) != 0) {
    throw std::system_error(errno, std::generic_category(), path.string());
  }
  // The file is never written in place, so its size is final.
  std::vector<uint8_t> image(static_cast<size_t>(status.st_size));
  image.resize(transfer_all(::read, file.get(), image.data(), image.size(), path.string()));
  return image;
}

void write_image(const std::filesystem::path& board_folder, const std::vector<uint8_t>& image) {
  const std::filesystem::path path = state_path(board_folder);
  const std::filesystem::path fresh = path.string() + ".new";
  {
    const FileDescriptor file = open_file(fresh, O_WRONLY | O_CREAT | O_TRUNC);
    transfer_all(::write, file.get(), image.data(), image.size(), fresh.string());
  }
  std::filesystem::rename(fresh, path);
}

}  // namespace board::drm
