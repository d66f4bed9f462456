// Loaded into programs that QEMU emulates: what they start is run by the emulator, too. The kernel
// would start it so only where root has registered that.

#define _GNU_SOURCE
#include <dlfcn.h>
#include <spawn.h>
#include <stdlib.h>
#include <string.h>

typedef int Spawn(pid_t*, const char*, const posix_spawn_file_actions_t*, const posix_spawnattr_t*,
                  char* const*, char* const*);

// The emulator itself must not be handed this library, which is not for its processor.
__attribute__((constructor)) static void LeaveEnvironment(void) {
  unsetenv("LD_PRELOAD");
}

int posix_spawn(pid_t* child, const char* program, const posix_spawn_file_actions_t* actions,
                const posix_spawnattr_t* attributes, char* const* words, char* const* environment) {
  size_t count = 1;  // behind the last, with the null pointer
  while (words[count - 1] != NULL) ++count;
  char* all[count + 1];
  all[0] = EMULATOR;
  all[1] = (char*)program;
  memcpy(all + 2, words + 1, (count - 1) * sizeof *all);
  Spawn* spawn = NULL;
  *(void**)&spawn = dlsym(RTLD_NEXT, "posix_spawn");
  return spawn(child, EMULATOR, actions, attributes, all, environment);
}
