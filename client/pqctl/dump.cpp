#include <cerrno>
#include <fstream>
#include <iostream>
#include <string>
#include <system_error>

#include "commands.h"
#include "pqclient/dump.h"
#include "pqclient/error.h"
#include "pqclient/png.h"

namespace {

void write_file(const std::string& path, pqclient::ByteView bytes) {
  const auto* data = reinterpret_cast<const char*>(bytes.data());
  const auto size = static_cast<std::streamsize>(bytes.size());
  if (path == "-") {
    std::cout.write(data, size);
    return;
  }
  std::ofstream file(path, std::ios::binary);
  if (!file.write(data, size).flush()) {
    throw pqclient::Error(pqclient::ErrorKind::kFile,
                          "cannot write " + path + ": " + std::generic_category().message(errno));
  }
}

}  // namespace

void save_dump(const GlobalOptions& options, pqclient::DumpSide side, const std::string& file) {
  const pqclient::Dump dump = options.client().request_dump(side);
  write_file(file, pqclient::encode_png(pqclient::decode(dump)));
  std::cerr << dump.width << 'x' << dump.height << ' ' << pqclient::format_name(dump.format)
            << '\n';
}
