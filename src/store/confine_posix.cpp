#include <fcntl.h>
#include <linux/landlock.h>
#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>

#include "access_copy.h"

namespace merivane::store {

namespace {

constexpr std::uint64_t kLooks = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t kWrites =
    LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_REG;
constexpr std::uint64_t kOthers = LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                                  LANDLOCK_ACCESS_FS_MAKE_CHAR | LANDLOCK_ACCESS_FS_MAKE_DIR |
                                  LANDLOCK_ACCESS_FS_MAKE_SOCK | LANDLOCK_ACCESS_FS_MAKE_FIFO |
                                  LANDLOCK_ACCESS_FS_MAKE_BLOCK | LANDLOCK_ACCESS_FS_MAKE_SYM;

// The C library has no functions for these calls.
void Allow(int rules, const std::filesystem::path& place, std::uint64_t access) {
  const int file = open(place.c_str(), O_PATH | O_CLOEXEC);
  if (file < 0) return;
  struct stat status {};
  const bool isFolder = fstat(file, &status) == 0 && S_ISDIR(status.st_mode);
  landlock_path_beneath_attr rule{};
  rule.parent_fd = file;
  rule.allowed_access =
      isFolder ? access : access & (LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_WRITE_FILE);
  syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
  close(file);
}

// Character sets lie in the system's folders.
void ConfineFiles(const std::string& source, const std::string& copy) {
  landlock_ruleset_attr handled{};
  handled.handled_access_fs = kLooks | kWrites | kOthers;
  const auto rules =
      static_cast<int>(syscall(SYS_landlock_create_ruleset, &handled, sizeof handled, 0));
  if (rules < 0) return;
  for (const char* place : {"/usr", "/lib", "/lib64", "/etc"}) {
    Allow(rules, place, kLooks);
  }
  Allow(rules, "/dev/null", kLooks | kWrites);
  Allow(rules, source, kLooks);
  Allow(rules, std::filesystem::path(copy).parent_path(), kLooks | kWrites);
  syscall(SYS_landlock_restrict_self, rules, 0);
  close(rules);
}

void ConfineCalls() {
  const scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ALLOW);
  if (filter == nullptr) return;
  for (const int call : {SCMP_SYS(execve),
                         SCMP_SYS(execveat),
                         SCMP_SYS(fork),
                         SCMP_SYS(vfork),
                         SCMP_SYS(clone),
                         SCMP_SYS(clone3),
                         SCMP_SYS(socket),
                         SCMP_SYS(socketpair),
                         SCMP_SYS(connect),
                         SCMP_SYS(bind),
                         SCMP_SYS(kill),
                         SCMP_SYS(ptrace),
                         SCMP_SYS(process_vm_readv),
                         SCMP_SYS(process_vm_writev),
                         SCMP_SYS(mount),
                         SCMP_SYS(umount2),
                         SCMP_SYS(pivot_root),
                         SCMP_SYS(unshare),
                         SCMP_SYS(setns),
                         SCMP_SYS(bpf),
                         SCMP_SYS(keyctl),
                         SCMP_SYS(io_uring_setup),
                         SCMP_SYS(userfaultfd),
                         SCMP_SYS(perf_event_open)}) {
    seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), call, 0);
  }
  seccomp_load(filter);
  seccomp_release(filter);
}

}  // namespace

void Confine(const std::string& source, const std::string& copy) {
  prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  ConfineFiles(source, copy);
  ConfineCalls();
}

}  // namespace merivane::store
