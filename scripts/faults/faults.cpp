// Preloaded into a program (LD_PRELOAD): from main on, the n-th call of one kind fails, or the
// program is killed there.
//
//   MERIVANE_FAULT=KIND:N       KIND is write, sync, open, rename, read, map, allocation or start
//   (of a
//                               process or a thread). A write that fails is a full disk: all
//                               behind it fail too.
//   MERIVANE_FAULT=KIND:N:stay  all behind it fail too.
//   MERIVANE_FAULT=KIND:N:kill  the program is killed in place of the call.
//   MERIVANE_FAULT_COUNTS=FILE  gets a line "KIND COUNT" for each kind when the program ends.
//
// Standard output and standard error are left alone. Calls of child processes count with the
// others.
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
}

namespace {

enum Kind { kWrite, kSync, kOpen, kRename, kRead, kMap, kAllocation, kStart, kKinds };
constexpr const char* kNames[] = {"write", "sync", "open",       "rename",
                                  "read",  "map",  "allocation", "start"};

bool armed = false;
int kind = kKinds;
long at = 0;
bool killed = false;
bool stays = false;
long ownCounts[kKinds];
long* counts = ownCounts;  // shared with the child processes once main begins

void ReadWish() {
  const char* wish = std::getenv("MERIVANE_FAULT");
  if (wish == nullptr) return;
  for (int i = 0; i < kKinds; ++i) {
    const std::size_t length = std::strlen(kNames[i]);
    if (std::strncmp(wish, kNames[i], length) != 0 || wish[length] != ':') continue;
    kind = i;
    at = std::atol(wish + length + 1);
  }
  killed = std::strstr(wish, ":kill") != nullptr;
  stays = kind == kWrite || std::strstr(wish, ":stay") != nullptr;
}

// True where this call shall fail.
bool Fails(Kind called, int failure) {
  if (!armed) return false;
  const long count = ++counts[called];
  if (called != kind || at == 0) return false;
  if (count != at && !(stays && count > at)) return false;
  if (killed) raise(SIGKILL);
  errno = failure;
  return true;
}

template <typename Function>
Function* Real(Function* /*type*/, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

template <typename Function, typename... Arguments>
auto CallReal(Function* type, const char* name, Arguments... arguments) {
  return Real(type, name)(arguments...);
}

bool IsStandard(int file) { return file <= STDERR_FILENO; }

int (*programMain)(int, char**, char**) = nullptr;

int ArmedMain(int argc, char** argv, char** environment) {
  ReadWish();
  void* shared =
      mmap(nullptr, sizeof ownCounts, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared != MAP_FAILED) counts = static_cast<long*>(shared);
  armed = true;
  return programMain(argc, argv, environment);
}

struct AtEnd {
  ~AtEnd() {
    armed = false;
    const char* path = std::getenv("MERIVANE_FAULT_COUNTS");
    if (path == nullptr) return;
    std::FILE* file = std::fopen(path, "w");
    for (int i = 0; file != nullptr && i < kKinds; ++i) {
      std::fprintf(file, "%s %ld\n", kNames[i], counts[i]);
    }
    if (file != nullptr) std::fclose(file);
  }
} atEnd;

}  // namespace

extern "C" {

int __libc_start_main(int (*start)(int, char**, char**), int argc, char** argv, void (*init)(),
                      void (*fini)(), void (*loaderFini)(), void* stack) {
  programMain = start;
  return CallReal(&__libc_start_main, "__libc_start_main", ArmedMain, argc, argv, init, fini,
                  loaderFini, stack);
}

ssize_t write(int file, const void* bytes, size_t size) {
  if (!IsStandard(file) && Fails(kWrite, ENOSPC)) return -1;
  return CallReal(&write, "write", file, bytes, size);
}

ssize_t writev(int file, const iovec* pieces, int count) {
  if (!IsStandard(file) && Fails(kWrite, ENOSPC)) return -1;
  return CallReal(&writev, "writev", file, pieces, count);
}

ssize_t pwrite(int file, const void* bytes, size_t size, off_t offset) {
  if (Fails(kWrite, ENOSPC)) return -1;
  return CallReal(&pwrite, "pwrite", file, bytes, size, offset);
}

ssize_t pwrite64(int file, const void* bytes, size_t size, off64_t offset) {
  if (Fails(kWrite, ENOSPC)) return -1;
  return CallReal(&pwrite64, "pwrite64", file, bytes, size, offset);
}

size_t fwrite(const void* bytes, size_t size, size_t count, FILE* stream) {
  if (!IsStandard(fileno(stream)) && Fails(kWrite, ENOSPC)) return 0;
  return CallReal(&fwrite, "fwrite", bytes, size, count, stream);
}

ssize_t read(int file, void* bytes, size_t size) {
  if (!IsStandard(file) && Fails(kRead, EIO)) return -1;
  return CallReal(&read, "read", file, bytes, size);
}

ssize_t pread(int file, void* bytes, size_t size, off_t offset) {
  if (Fails(kRead, EIO)) return -1;
  return CallReal(&pread, "pread", file, bytes, size, offset);
}

ssize_t pread64(int file, void* bytes, size_t size, off64_t offset) {
  if (Fails(kRead, EIO)) return -1;
  return CallReal(&pread64, "pread64", file, bytes, size, offset);
}

size_t fread(void* bytes, size_t size, size_t count, FILE* stream) {
  if (!IsStandard(fileno(stream)) && Fails(kRead, EIO)) {
    stream->_flags |= _IO_ERR_SEEN;
    return 0;
  }
  return CallReal(&fread, "fread", bytes, size, count, stream);
}

void* mmap(void* place, size_t size, int protection, int flags, int file, off_t offset) {
  if (file >= 0 && Fails(kMap, ENODEV)) return MAP_FAILED;
  return CallReal(&mmap, "mmap", place, size, protection, flags, file, offset);
}

void* mmap64(void* place, size_t size, int protection, int flags, int file, off64_t offset) {
  if (file >= 0 && Fails(kMap, ENODEV)) return MAP_FAILED;
  return CallReal(&mmap64, "mmap64", place, size, protection, flags, file, offset);
}

int fsync(int file) {
  if (Fails(kSync, EIO)) return -1;
  return CallReal(&fsync, "fsync", file);
}

int fdatasync(int file) {
  if (Fails(kSync, EIO)) return -1;
  return CallReal(&fdatasync, "fdatasync", file);
}

int open(const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = va_arg(more, mode_t);
  va_end(more);
  if (Fails(kOpen, EMFILE)) return -1;
  return CallReal(&open, "open", path, flags, mode);
}

int open64(const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = va_arg(more, mode_t);
  va_end(more);
  if (Fails(kOpen, EMFILE)) return -1;
  return CallReal(&open64, "open64", path, flags, mode);
}

FILE* fopen(const char* path, const char* mode) {
  if (Fails(kOpen, EMFILE)) return nullptr;
  return CallReal(&fopen, "fopen", path, mode);
}

FILE* fopen64(const char* path, const char* mode) {
  if (Fails(kOpen, EMFILE)) return nullptr;
  return CallReal(&fopen64, "fopen64", path, mode);
}

int rename(const char* from, const char* to) {
  if (Fails(kRename, EACCES)) return -1;
  return CallReal(&rename, "rename", from, to);
}

pid_t fork() {
  if (Fails(kStart, EAGAIN)) return -1;
  return CallReal(&fork, "fork");
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*),
                   void* argument) {
  if (Fails(kStart, EAGAIN)) return EAGAIN;
  return CallReal(&pthread_create, "pthread_create", thread, attributes, run, argument);
}

void* malloc(size_t size) {
  if (Fails(kAllocation, ENOMEM)) return nullptr;
  return __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
  if (Fails(kAllocation, ENOMEM)) return nullptr;
  return __libc_calloc(count, size);
}

void* realloc(void* block, size_t size) {
  if (Fails(kAllocation, ENOMEM)) return nullptr;
  return __libc_realloc(block, size);
}

}  // extern "C"
