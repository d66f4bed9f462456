// A host that knows no class: the first word of an object is the address of its table, and each
// operation is a word in that table.
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

#include "abi_proof.h"

typedef void (*Slot)(void);

static const char* path;
static void* plugin;
static Slot get_library, read_number, clear_value;

static int Get(const char* name, Slot* function) {
  void* symbol = dlsym(plugin, name);
  memcpy(function, &symbol, sizeof symbol);
  return symbol != NULL;
}
static int Load(void) {
  plugin = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (plugin == NULL) printf("%s\n", dlerror());
  return plugin != NULL && Get("NuvPluginLibGet", &get_library) &&
         Get("_ZNK10CNuvObjectcvdEv", &read_number) && Get("_ZN10CNuvObject5ClearEv", &clear_value);
}
static int Unload(void) {
  return dlclose(plugin) == 0 && dlopen(path, RTLD_NOW | RTLD_NOLOAD) == NULL;
}

// The call of a slot that takes nothing but the object, and of one that takes one word more.
#define AT(object, slot) (*(Slot**)(object))[slot]
#define CALL(type, object, slot) ((type(*)(void*))AT(object, slot))(object)
#define CALL1(type, object, slot, word) ((type(*)(void*, void*))AT(object, slot))(object, word)
#define DESTRUCT(object, flags) ((void* (*)(void*, uint32_t))AT(object, 0))(object, flags)

// clang-format off
static void* GetLibrary(void) { return ((void* (*)(void))get_library)(); }
static void LibDestruct(void* library) { CHECK(DESTRUCT(library, 0) == library); }
static Bytes LibInfo(void* library) { return CALL(Bytes, library, 1); }
static void** LibPlugins(void* library) { return CALL(void**, library, 2); }
static uint64_t LibCount(void* library) { return CALL(uint64_t, library, 3); }
static uint64_t LibInit(void* library) { return CALL(uint64_t, library, 4); }
static void LibRelease(void* library) { CALL(void, library, 5); }
static void Delete(void* instruction) { CHECK(DESTRUCT(instruction, 1) == instruction); }
static void Build(void* instruction) { CALL(void, instruction, 1); }
static void Clear(void* instruction) { CALL(void, instruction, 2); }
static Bytes Descriptor(void* instruction) { return CALL(Bytes, instruction, 4); }
static void* Create(void* instruction) { return CALL(void*, instruction, 6); }
static void Destroy(void* instruction, void* other) { CALL1(void, instruction, 7, other); }
static double NumberOf(const void* value) { return ((double (*)(const void*))read_number)(value); }
static void ClearValue(void* value) { ((void (*)(void*))clear_value)(value); }
// clang-format on
static void LibEmptyObject(void* library, void* result) {
  CHECK(CALL1(void*, library, 6, result) == result);
}
static int CountTrueReserved(void* instruction) {
  int count = CALL(_Bool, instruction, 8);
  CALL(void, instruction, 3);
  for (int slot = 9; slot <= 11; ++slot) CALL(void, instruction, slot);
  for (int slot = 12; slot <= 15; ++slot) count += CALL(_Bool, instruction, slot);
  return count;
}

// The context and the message service, with tables made by hand.
typedef struct {
  const Slot* table;
  void** inputs;
  int32_t count;
  void** results;
  const Slot* messages;  // the message service: its table alone
} Context;

static void Report(const Slot** self, int32_t severity, Bytes source, Bytes text) {
  CHECK((*self)[1] == (Slot)Report);
  OnReport(severity, source, text);
}
// clang-format off
static void* Nothing(void) { return NULL; }
static void** Inputs(Context* self) { return self->inputs; }
static int32_t InputCount(Context* self) { return self->count; }
static void** Results(Context* self) { return self->results; }
static void* Result(Context* self, int32_t index) { return self->results[index]; }
// clang-format on
static void* Service(Context* self, int32_t number) {
  return number == 4105 ? &self->messages : NULL;
}

static int32_t Execute(void* instruction, void** inputs, int32_t count, void** results) {
  static const Slot kMessages[] = {Unexpected, (Slot)Report, Unexpected,
                                   Unexpected, Unexpected,   Unexpected};
  static const Slot kContext[] = {Unexpected,       Unexpected,    (Slot)Nothing, (Slot)Inputs,
                                  (Slot)InputCount, (Slot)Results, (Slot)Nothing, Unexpected,
                                  (Slot)Result,     Unexpected,    Unexpected,    (Slot)Service};
  Context context = {kContext, inputs, count, results, kMessages};
  return CALL1(int32_t, instruction, 5, &context);
}

int main(int argc, char** argv) {
  if (argc != 2) {
    printf("usage: %s PLUGIN\n", argv[0]);
    return 2;
  }
  path = argv[1];
  return Prove();
}
