// A process of its own in which one system call, or every one from there on, goes wrong.
#include "support/prelude.h"

#include "faults/calls.h"

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <signal.h>
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>

namespace {

const int MAX_CALLS = 4000;
const int MAX_FILES = 1024;
const unsigned LONGEST = 20; // seconds
// The sixth argument of the calls that the handler makes itself: none of those filtered has one.
const long OWN_CALL = 0x4D455254;

#if defined(__x86_64__)
const unsigned MACHINE = AUDIT_ARCH_X86_64;
greg_t *registers(ucontext_t *context) {
  return context->uc_mcontext.gregs;
}
long argument(ucontext_t *context, int i) {
  const int places[] = {REG_RDI, REG_RSI, REG_RDX, REG_R10, REG_R8};
  return (long)registers(context)[places[i]];
}
void set_result(ucontext_t *context, long result) {
  registers(context)[REG_RAX] = result;
}
#elif defined(__aarch64__)
const unsigned MACHINE = AUDIT_ARCH_AARCH64;
long argument(ucontext_t *context, int i) {
  return (long)context->uc_mcontext.regs[i];
}
void set_result(ucontext_t *context, long result) {
  context->uc_mcontext.regs[0] = (unsigned long long)result;
}
#else
const unsigned MACHINE = 0;
long argument(ucontext_t *, int) {
  return 0;
}
void set_result(ucontext_t *, long) {
}
#endif

// How a call tells its file.
enum Told_by { BY_FD, BY_PATH, BY_DIRECTORY_AND_PATH, BY_OPENING };

struct Filtered_call {
  long number;
  const char *name;
  Call_kind kind;
  Told_by told_by;
};

const Filtered_call FILTERED[] = {
    {SYS_write, "write", CALL_WRITE, BY_FD},
    {SYS_pwrite64, "pwrite", CALL_WRITE, BY_FD},
    {SYS_writev, "writev", CALL_WRITE, BY_FD},
    {SYS_fsync, "fsync", CALL_SYNC, BY_FD},
    {SYS_fdatasync, "fdatasync", CALL_SYNC, BY_FD},
    {SYS_ftruncate, "ftruncate", CALL_NAME, BY_FD},
    {SYS_fchmod, "fchmod", CALL_NAME, BY_FD},
    {SYS_close, "close", CALL_CLOSE, BY_FD},
    {SYS_read, "read", CALL_READ, BY_FD},
    {SYS_pread64, "pread", CALL_READ, BY_FD},
    {SYS_dup, "dup", CALL_READ, BY_FD},
    {SYS_openat, "openat", CALL_READ, BY_OPENING},
    {SYS_utimensat, "utimensat", CALL_NAME, BY_DIRECTORY_AND_PATH},
    {SYS_unlinkat, "unlinkat", CALL_NAME, BY_DIRECTORY_AND_PATH},
    {SYS_mkdirat, "mkdirat", CALL_NAME, BY_DIRECTORY_AND_PATH},
    {SYS_renameat2, "renameat2", CALL_NAME, BY_DIRECTORY_AND_PATH},
    {SYS_newfstatat, "stat", CALL_READ, BY_DIRECTORY_AND_PATH},
    {SYS_faccessat, "access", CALL_READ, BY_DIRECTORY_AND_PATH},
    {SYS_faccessat2, "access", CALL_READ, BY_DIRECTORY_AND_PATH},
#ifdef SYS_rename
    {SYS_rename, "rename", CALL_NAME, BY_PATH},
    {SYS_unlink, "unlink", CALL_NAME, BY_PATH},
    {SYS_mkdir, "mkdir", CALL_NAME, BY_PATH},
    {SYS_access, "access", CALL_READ, BY_PATH},
    {SYS_readlink, "readlink", CALL_READ, BY_PATH},
#endif
    {SYS_readlinkat, "readlink", CALL_READ, BY_DIRECTORY_AND_PATH},
    {SYS_renameat, "renameat", CALL_NAME, BY_DIRECTORY_AND_PATH},
};

// What the process shares with the one that started it.
struct Account {
  int nb = 0;
  bool fired = false; // the plan killed the process
  Call_made calls[MAX_CALLS];
};

// The process being spoiled.
struct {
  Fault_plan plan;
  Account *account;
  bool ours[MAX_FILES]; // descriptors of files in the current directory
  long bad_fd;          // the file in which a place cannot be written, and the place
  long bad_place;
} spoiled;

long do_call(long number, ucontext_t *context) {
  long result = syscall(number, argument(context, 0), argument(context, 1), argument(context, 2),
                        argument(context, 3), argument(context, 4), OWN_CALL);
  return result == -1 ? -errno : result;
}

// Writes the first half of the bytes.
long do_half(long number, ucontext_t *context) {
  long half = std::max(argument(context, 2) / 2, 1L);
  long result = syscall(number, argument(context, 0), argument(context, 1), half,
                        argument(context, 3), argument(context, 4), OWN_CALL);
  return result == -1 ? -errno : result;
}

[[noreturn]] void die() {
  spoiled.account->fired = true;
  kill(getpid(), SIGKILL);
  for (;;)
    pause();
}

// The path that a call names; null where it names none.
const char *path_of(const Filtered_call &call, ucontext_t *context) {
  if (call.told_by == BY_PATH)
    return (const char *)argument(context, 0);
  if (call.told_by == BY_FD)
    return nullptr;
  return (const char *)argument(context, 1);
}

bool is_file(long fd) {
  return fd >= 0 && fd < MAX_FILES;
}

bool opens_to_write(ucontext_t *context) {
  return (argument(context, 2) & (O_WRONLY | O_RDWR)) != 0;
}

// Whether the call is about a file of the current directory, or a nameless one.
bool is_ours(const Filtered_call &call, ucontext_t *context) {
  const char *path = path_of(call, context);
  if (call.told_by == BY_OPENING && (argument(context, 2) & O_TMPFILE) == O_TMPFILE)
    return true;
  if (path != nullptr && path[0] != '\0')
    return path[0] != '/';
  long fd = argument(context, 0);
  return is_file(fd) && spoiled.ours[fd];
}

Call_kind kind_of(const Filtered_call &call, ucontext_t *context) {
  return call.told_by == BY_OPENING && opens_to_write(context) ? CALL_OPEN_TO_WRITE : call.kind;
}

// Counts the call. Returns its number.
int note_call(const Filtered_call &call, Call_kind kind, ucontext_t *context) {
  Account *account = spoiled.account;
  if (account->nb >= MAX_CALLS)
    die();
  Call_made *made = &account->calls[account->nb];
  made->kind = kind;
  const char *path = path_of(call, context);
  strncpy(made->text, call.name, sizeof(made->text) - 1);
  if (path == nullptr)
    return ++account->nb;
  strncat(made->text, " ", sizeof(made->text) - strlen(made->text) - 1);
  strncat(made->text, path, sizeof(made->text) - strlen(made->text) - 1);
  return ++account->nb;
}

// Remembers what a call that was done did to the descriptors.
void follow(const Filtered_call &call, long result, ucontext_t *context) {
  if (call.number == SYS_close)
    spoiled.ours[argument(context, 0)] = false;
  if ((call.told_by == BY_OPENING || call.number == SYS_dup) && is_file(result))
    spoiled.ours[result] = true;
}

// A file is closed even where closing it fails.
long fail(const Filtered_call &call, ucontext_t *context) {
  if (call.number == SYS_close)
    follow(call, do_call(call.number, context), context);
  return -spoiled.plan.error;
}

// Writes the first half; what lies behind cannot be written.
long do_half_to_bad_place(const Filtered_call &call, ucontext_t *context) {
  long result = do_half(call.number, context);
  if (call.number == SYS_pwrite64) {
    spoiled.bad_fd = argument(context, 0);
    spoiled.bad_place = argument(context, 3) + result;
  }
  return result;
}

// Whether the call writes again what lies before the bad place.
bool is_before_bad_place(const Filtered_call &call, ucontext_t *context) {
  return call.number == SYS_pwrite64 && argument(context, 0) == spoiled.bad_fd &&
         argument(context, 3) + argument(context, 2) <= spoiled.bad_place;
}

long pass(const Filtered_call &call, ucontext_t *context) {
  long result = do_call(call.number, context);
  follow(call, result, context);
  return result;
}

// The call of the plan.
long spoil(const Filtered_call &call, ucontext_t *context) {
  switch (spoiled.plan.fault) {
  case FAIL_ONCE:
  case FAIL_FROM_THERE:
    return fail(call, context);
  case SHORT_ONCE:
    return do_half(call.number, context);
  case SHORT_THEN_FAIL:
    return do_half_to_bad_place(call, context);
  case KILLED_AFTER:
    pass(call, context);
    die();
  case KILLED_IN_BETWEEN:
    do_half(call.number, context);
    die();
  default:
    return pass(call, context);
  }
}

bool lasts(const Fault_plan &plan, Call_kind kind) {
  bool from_there = plan.fault == FAIL_FROM_THERE || plan.fault == SHORT_THEN_FAIL;
  return from_there && kind != CALL_READ && kind != CALL_CLOSE;
}

long answer(const Filtered_call &call, ucontext_t *context) {
  if (!is_ours(call, context))
    return do_call(call.number, context);
  Call_kind kind = kind_of(call, context);
  int number = note_call(call, kind, context);
  if (number == spoiled.plan.call)
    return spoil(call, context);
  if (number > spoiled.plan.call && lasts(spoiled.plan, kind) &&
      !is_before_bad_place(call, context))
    return fail(call, context);
  return pass(call, context);
}

void take_call(int, siginfo_t *about, void *data) {
  auto *context = static_cast<ucontext_t *>(data);
  int before = errno;
  const Filtered_call *call = std::find_if(
      std::begin(FILTERED), std::end(FILTERED),
      [about](const Filtered_call &filtered) { return filtered.number == about->si_syscall; });
  if (call != std::end(FILTERED))
    set_result(context, answer(*call, context));
  errno = before;
}

// The filter: own calls pass, the filtered ones are handed over, all others pass.
std::vector<sock_filter> filter_of_calls() {
  std::vector<sock_filter> filter = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(struct seccomp_data, arch)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, MACHINE, 1, 0),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(struct seccomp_data, args[5])),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, (unsigned)OWN_CALL, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(struct seccomp_data, nr))};
  for (const Filtered_call &call : FILTERED) {
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, (unsigned)call.number, 0, 1));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRAP));
  }
  filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  return filter;
}

bool filter_calls() {
  struct sigaction action = {};
  action.sa_sigaction = take_call;
  action.sa_flags = SA_SIGINFO | SA_NODEFER;
  std::vector<sock_filter> filter = filter_of_calls();
  struct sock_fprog program = {(unsigned short)filter.size(), filter.data()};
  return sigaction(SIGSYS, &action, nullptr) == 0 && prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

[[noreturn]] void be_spoiled(int output, const std::function<void()> &work) {
  dup2(output, 1);
  dup2(output, 2);
  close(output);
  alarm(LONGEST);
  if (!filter_calls())
    _exit(99);
  work();
  exit(0);
}

std::string read_from_start(int fd) {
  std::string text((size_t)std::max<off_t>(lseek(fd, 0, SEEK_END), 0), '\0');
  ssize_t nb = pread(fd, text.data(), text.size(), 0);
  text.resize(nb > 0 ? (size_t)nb : 0);
  return text;
}

void take_end(int wait_status, Faulty_run *run) {
  const Account *account = spoiled.account;
  run->killed = account->fired && WIFSIGNALED(wait_status) && WTERMSIG(wait_status) == SIGKILL;
  run->signal = WIFSIGNALED(wait_status) && !run->killed ? WTERMSIG(wait_status) : 0;
  run->status = WIFEXITED(wait_status) ? WEXITSTATUS(wait_status) : -1;
  run->calls.assign(account->calls, account->calls + account->nb);
}

} // namespace

bool CAN_FILTER_CALLS() {
  return MACHINE != 0 && RUN_WITH_FAULT(Fault_plan(), [] {}).status == 0;
}

Faulty_run RUN_WITH_FAULT(const Fault_plan &plan, const std::function<void()> &work) {
  static void *shared =
      mmap(nullptr, sizeof(Account), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  spoiled = {plan, new (shared) Account(), {}, -1, 0};
  Faulty_run run;
  int output = memfd_create("output", 0);
  fflush(nullptr);
  pid_t child = fork();
  if (child == 0)
    be_spoiled(output, work);
  int wait_status = 0;
  waitpid(child, &wait_status, 0);
  take_end(wait_status, &run);
  run.output = read_from_start(output);
  close(output);
  return run;
}

std::string NAME_OF_FAULT(const Fault_plan &plan) {
  const char *const names[NB_FAULTS] = {"nothing",
                                        "fails",
                                        "fails, and all behind it",
                                        "writes half",
                                        "writes half, then all fail",
                                        "killed after",
                                        "killed half way in"};
  std::string error = plan.error == 0 ? "" : std::string(" (") + strerror(plan.error) + ")";
  return "call " + std::to_string(plan.call) + " " + names[plan.fault] + error;
}
