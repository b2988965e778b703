// libboardproot.so: preloaded into every program of a board that runs under proot, whose version
// 5.1, the newest in Debian, falls behind today's systems in two ways. Both are put right while the
// library is loaded, before the program has threads.
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <iterator>

namespace {

// proot does not know these system calls. It passes their paths on untranslated, and takes a thread
// that clone3 made for a process with a heap of its own, whose paths it then cannot read (EFAULT).
// Where they do not exist the C library uses older ones.
void hide_new_system_calls() {
  constexpr sock_filter kRefuse =
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | (ENOSYS & SECCOMP_RET_DATA));
  constexpr sock_filter kAllow = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
  // Each test jumps over the rest of them and over kAllow when it finds its call.
  sock_filter program[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_clone3, 4, 0),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_statx, 3, 0),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_faccessat2, 2, 0),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat2, 1, 0),
      kAllow,
      kRefuse,
  };
  const sock_fprog filter{std::size(program), program};
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0) {
    std::perror("board: cannot keep new system calls from proot");
  }
}

// proot puts translated paths below the stack. Since Linux 6.5 it can't grow a stack that way, so
// the pages have to be there already.
__attribute__((noinline)) void grow_stack() {
  constexpr size_t kMaxUse = size_t{1} << 20;  // of a board's program, on its first thread
  [[maybe_unused]] volatile char room[kMaxUse];
  for (size_t i = 0; i < kMaxUse; i += 4096)
    room[i] = 0;
}

__attribute__((constructor)) void work_around_proot() {
  grow_stack();
  hide_new_system_calls();
}

}  // namespace
