#include "launch/isolation.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace board {
namespace {

namespace fs = std::filesystem;

// An own user namespace even for root: so the daemon has the same rights whoever starts it, those
// of the board's system user (1000), and may neither make device nodes nor override file modes. An
// own process namespace: when its first process ends, the kernel ends all others.
const std::vector<std::string> kBubblewrap = {"bwrap",          "--die-with-parent",
                                              "--unshare-user", "--uid",
                                              "1000",           "--gid",
                                              "1000",           "--unshare-pid",
                                              "--unshare-ipc",  "--as-pid-1",
                                              "--proc",         "/proc",
                                              "--dev",          "/dev",
                                              "--tmpfs",        "/tmp"};

// proot traces what it runs. It ends all of it on SIGQUIT, which it gets when the launcher dies.
const std::vector<std::string> kProot = {"setpriv", "--pdeathsig", "QUIT", "proot", "-v", "-1"};

// Folders that this machine's programs need to run: /lib and the like may be links into /usr.
void add_system_folders(std::vector<std::string>& command) {
  for (const char* folder : {"/usr", "/etc", "/bin", "/sbin", "/lib", "/lib32", "/lib64"}) {
    if (fs::is_symlink(folder)) {
      command.insert(command.end(), {"--symlink", fs::read_symlink(folder), folder});
    } else {
      command.insert(command.end(), {"--ro-bind-try", folder, folder});
    }
  }
}

// Empty when the command works, else what it says.
std::string try_command(const std::vector<std::string>& command) {
  std::string line;
  for (const auto& word : command)
    line += word + ' ';
  line += "/bin/true 2>&1";
  FILE* pipe = ::popen(line.c_str(), "r");
  if (pipe == nullptr) return "cannot start a shell";
  std::string output;
  std::array<char, 256> part{};
  while (std::fgets(part.data(), part.size(), pipe) != nullptr)
    output += part.data();
  if (::pclose(pipe) == 0) return "";
  while (output.ends_with('\n'))
    output.pop_back();
  return output.empty() ? command.front() + " failed" : output;
}

std::string try_private_root() {
  auto command = kBubblewrap;
  add_system_folders(command);
  return try_command(command);
}

Container private_root(const std::vector<Mount>& mounts, const std::vector<fs::path>& extra) {
  auto command = kBubblewrap;
  add_system_folders(command);
  for (const auto& path : extra) {
    command.insert(command.end(), {"--ro-bind", path, path});
  }
  for (const auto& mount : mounts) {
    command.insert(command.end(),
                   {mount.writable ? "--bind" : "--ro-bind", mount.on_host, mount.on_board});
  }
  command.insert(command.end(), {"--chdir", "/"});
  return {command, 0};
}

Container proot(const std::vector<Mount>& mounts) {
  auto command = kProot;
  for (const auto& mount : mounts) {
    const std::string binding = mount.on_host.string() + ":" + mount.on_board.string();
    if (mount.on_host.string().find(':') != std::string::npos) {
      throw std::runtime_error("cannot show " + mount.on_host.string() +
                               " with proot: its name holds a colon; choose another folder");
    }
    command.insert(command.end(), {"-b", binding});
  }
  command.insert(command.end(), {"-w", "/"});
  return {command, SIGQUIT};
}

}  // namespace

const std::string& private_root_obstacle() {
  static const std::string obstacle = try_private_root();
  return obstacle;
}

Isolation choose_isolation(Isolation wanted) {
  if (wanted != Isolation::kAuto) return wanted;
  if (private_root_obstacle().empty()) return Isolation::kNamespace;
  if (const std::string obstacle = try_command(kProot); !obstacle.empty()) {
    throw std::runtime_error("this machine allows neither a private root (" +
                             private_root_obstacle() + ") nor proot (" + obstacle +
                             "); install bubblewrap and allow user namespaces, or install proot");
  }
  return Isolation::kProot;
}

Container make_container(Isolation isolation, const std::vector<Mount>& mounts,
                         const std::vector<fs::path>& extra) {
  return isolation == Isolation::kProot ? proot(mounts) : private_root(mounts, extra);
}

}  // namespace board
