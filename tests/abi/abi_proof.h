// What a host built by any compiler relies on, checked byte by byte.
//
// Each host program is one file that includes this text, defines the calls declared first in its
// own compiler's way, and runs Prove. None includes a header of the system: the layouts are the
// offsets below. The text is C and C++ alike; printf, fflush, strcmp, strlen and memcmp are the
// program's.
#pragma once

#include <stdint.h>

typedef const unsigned char* Bytes;

static int Load(void);    // the plug-in and its export; true when both are there
static int Unload(void);  // true when the plug-in is gone from the process
static void* GetLibrary(void);
static void LibDestruct(void* library);  // slot 0, without freeing
static Bytes LibInfo(void* library);
static void** LibPlugins(void* library);
static uint64_t LibCount(void* library);
static uint64_t LibInit(void* library);
static void LibRelease(void* library);
static void LibEmptyObject(void* library, void* result);
static void Delete(void* instruction);  // slot 0, with freeing
static void Build(void* instruction);
static void Clear(void* instruction);
static Bytes Descriptor(void* instruction);
static int32_t Execute(void* instruction, void** inputs, int32_t count, void** results);
static void* Create(void* instruction);
static void Destroy(void* instruction, void* other);
static int CountTrueReserved(void* instruction);  // calls slots 3 and 8 to 15
static double NumberOf(const void* value);        // by the library of values, as is the next
static void ClearValue(void* value);

static const char* where = "";
static unsigned passed, failed, reports;

static void Check(int good, const char* what, int line) {
  if (good) {
    ++passed;
    return;
  }
  ++failed;
  printf("FAILED at line %d: %s, in %s\n", line, what, where);
  fflush(0);  // the next step may crash
}
#define CHECK(condition) Check((condition) ? 1 : 0, #condition, __LINE__)

static void Unexpected(void) {
  CHECK(!"a slot that no instruction calls was called");
}

static uint64_t U64(Bytes record, int offset) {
  uint64_t word = 0;
  for (int i = 7; i >= 0; --i) word = word << 8 | record[offset + i];
  return word;
}
static uint32_t U32(Bytes record, int offset) {
  uint32_t word = 0;
  for (int i = 3; i >= 0; --i) word = word << 8 | record[offset + i];
  return word;
}
static Bytes Pointer(Bytes record, int offset) {
  return (Bytes)(uintptr_t)U64(record, offset);
}
static const char* Text(Bytes record, int offset) {
  return (const char*)Pointer(record, offset);
}

static int IsZero(Bytes record, int from, int to) {
  while (from < to && record[from] == 0) ++from;
  return from == to;
}

static int IsReadable(const char* text) {
  const char* end = text;
  while (end != 0 && end - text < 1000 && ((unsigned char)*end >= ' ' || *end == '\n')) ++end;
  return end != 0 && *end == 0;
}

static uint64_t Mix(uint64_t hash, const void* data, uint64_t size) {
  for (Bytes byte = (Bytes)data; size > 0; --size) hash = (hash ^ *byte++) * 0x100000001b3U;
  return hash;
}

// A host string: the text, or its address when it is longer than 15, at 8; length at 24, capacity
// at 32.
static const char* StdText(Bytes string) {
  const uint64_t capacity = U64(string, 32);
  const char* text = capacity < 16 ? (const char*)string + 8 : Text(string, 8);
  CHECK(capacity >= 15 && U64(string, 24) <= capacity);
  CHECK(IsReadable(text) && strlen(text) == U64(string, 24));
  return text;
}

// Where the programs' message services end; only one failure is ever provoked.
static void OnReport(int32_t severity, Bytes source, Bytes text) {
  CHECK(severity == 2);
  CHECK(strcmp(StdText(source), "Numeric: Divide") == 0);
  CHECK(strcmp(StdText(text), "Division by zero") == 0);
  ++reports;
}

static Bytes NextNode(Bytes node) {
  Bytes next = Pointer(node, 16);
  if (!next[25]) {
    while (!Pointer(next, 0)[25]) next = Pointer(next, 0);
    return next;
  }
  for (next = Pointer(node, 8); !next[25] && Pointer(next, 16) == node; next = Pointer(next, 8)) {
    node = next;
  }
  return next;
}

// An ordered map: head at 8, size at 16. A node: left, parent and right at 0, 8 and 16, at 25
// whether it is the head, key at 32, label at 40.
static uint64_t WalkChoices(Bytes map, uint64_t hash) {
  const uint64_t size = U64(map, 16);
  Bytes head = Pointer(map, 8);
  CHECK(head != 0);
  if (head == 0) return hash;
  CHECK(head[25] == 1 && Pointer(Pointer(head, 8), 8) == head);
  Bytes last = head;
  Bytes node = Pointer(head, 0);
  uint64_t visited = 0;
  for (; !node[25] && visited < size; ++visited, last = node, node = NextNode(node)) {
    const char* label = StdText(node + 40);
    CHECK(last == head || (int32_t)U32(last, 32) < (int32_t)U32(node, 32));
    hash = Mix(Mix(hash, node + 32, 4), label, strlen(label));
  }
  CHECK(node == head && visited == size && Pointer(head, 16) == last);
  return hash;
}

// A vector of records: begin, end and capacity at 8, 16 and 24. Every record has its type at 0,
// `texts` pointers from 8 on and its index near its end. Returns a hash of what it saw.
static uint64_t WalkRecords(Bytes vector, int size, int texts, int index_at, uint64_t hash) {
  const uint64_t bytes = U64(vector, 16) - U64(vector, 8);
  CHECK(bytes <= U64(vector, 24) - U64(vector, 8) && bytes % (unsigned)size == 0);
  Bytes record = Pointer(vector, 8);
  for (uint32_t index = 0; record != Pointer(vector, 16); ++index, record += size) {
    const uint32_t type = U32(record, 0), kind = type & 0xffU;
    for (int i = 1; i <= texts; ++i) CHECK(!Text(record, 8 * i) || IsReadable(Text(record, 8 * i)));
    CHECK(U32(record, index_at) == index);
    CHECK(IsZero(record, 4, 8) && IsZero(record, index_at + 4, size));
    hash = Mix(hash, record, 8 + 8 * (unsigned)texts);
    if (size == 112) {  // a constant parameter
      CHECK(type == 256 || type == 257 || type == 263);
      CHECK((type == 263) == (U64(record, 96) > 0));
      hash = WalkChoices(record + 80, hash);
    } else {
      CHECK((type >> 8 == 1 || type >> 8 == 2) && kind <= 5 && kind != 1);
      CHECK(Text(record, 8) != 0);
    }
  }
  return Mix(hash, &bytes, sizeof bytes);
}

static uint64_t WalkDescriptor(Bytes record) {
  where = Text(record, 24);
  CHECK(U32(record, 0) == 17);
  for (int offset = 8; offset < 40; offset += 8) CHECK(IsReadable(Text(record, offset)));
  CHECK(U32(record, 40) >= 460000);
  CHECK(record[57] == 0 || (record[57] == 1 && U64(record, 128) > U64(record, 120)));
  CHECK(IsZero(record, 4, 8) && IsZero(record, 44, 57));
  CHECK(IsZero(record, 58, 80) && IsZero(record, 176, 184));
  uint64_t hash = Mix(0xcbf29ce484222325U, record, 80);
  hash = WalkRecords(record + 80, 112, 3, 104, hash);
  hash = WalkRecords(record + 112, 48, 2, 40, hash);
  return WalkRecords(record + 144, 32, 2, 24, hash);
}

static Bytes descriptors[INSTRUCTIONS];

static void ProveCatalogue(void* library) {
  static uint64_t hashes[INSTRUCTIONS];
  void** plugins = LibPlugins(library);
  for (int i = 0; i < INSTRUCTIONS; ++i) {
    descriptors[i] = Descriptor(plugins[i]);
    CHECK(IsZero(descriptors[i], 0, 184));
  }
  CHECK(LibInit(library) == INSTRUCTIONS);
  for (int i = 0; i < INSTRUCTIONS; ++i) {
    hashes[i] = WalkDescriptor(descriptors[i]);
    Clear(plugins[i]);
    CHECK(IsZero(descriptors[i], 80, 184) && Text(descriptors[i], 24) == where);
    Build(plugins[i]);
    CHECK(WalkDescriptor(descriptors[i]) == hashes[i]);
  }
  CHECK(LibInit(library) == INSTRUCTIONS);
  for (int i = 0; i < INSTRUCTIONS; ++i) CHECK(WalkDescriptor(descriptors[i]) == hashes[i]);
  CHECK(strcmp(Text(descriptors[0], 24), "_Nuv_Numeric_Set_") == 0);
  CHECK(strcmp(Text(descriptors[INSTRUCTIONS - 1], 24), "_Nuv_TestAnyChar_") == 0);
}

static void ProveInstances(void* library) {
  for (int i = 0; i < INSTRUCTIONS; ++i) {
    void* prototype = LibPlugins(library)[i];
    void* one = Create(prototype);
    void* other = Create(one);
    where = Text(descriptors[i], 24);
    CHECK(one != 0 && one != prototype && other != 0 && other != one);
    CHECK(Descriptor(one) == descriptors[i] && Descriptor(other) == descriptors[i]);
    CHECK(CountTrueReserved(one) == 0);
    Destroy(prototype, one);
    Destroy(prototype, 0);
    Delete(other);
    CHECK(Descriptor(prototype) == descriptors[i]);
  }
}

static int Find(const char* identifier) {
  int i = 0;
  where = identifier;
  while (i < INSTRUCTIONS - 1 && strcmp(Text(descriptors[i], 24), identifier) != 0) ++i;
  CHECK(strcmp(Text(descriptors[i], 24), identifier) == 0);
  return i;
}

static void ProveExecution(void* library) {
  const int add = Find("_Nuv_Numeric_AddNumbers_");
  Bytes input = Pointer(descriptors[add], 120), output = Pointer(descriptors[add], 152);
  CHECK(Pointer(descriptors[add], 128) == input + 48 && descriptors[add][57] == 1);
  CHECK(U32(input, 0) == 258 && strcmp(Text(input, 8), "number") == 0);
  CHECK(NumberOf(input + 24) == 0.0);
  CHECK(Pointer(descriptors[add], 160) == output + 32);
  CHECK(U32(output, 0) == 258 && strcmp(Text(output, 8), "sum") == 0);

  const int divide = Find("_Nuv_Numeric_DivideNumbers_");
  input = Pointer(descriptors[divide], 120);
  void* zero = (void*)(uintptr_t)(input + 24);
  void* one = (void*)(uintptr_t)(input + 48 + 24);
  void* zeros[] = {zero, zero};
  void* ones[] = {one, one, one, one};
  unsigned char result[16], empty[16];
  void* results[] = {result};
  LibEmptyObject(library, result);
  LibEmptyObject(library, empty);
  CHECK(memcmp(result, empty, 16) == 0);
  reports = 0;
  void* instance = Create(LibPlugins(library)[divide]);
  CHECK(Execute(instance, zeros, 2, results) == 3);
  CHECK(reports == 1 && memcmp(result, empty, 16) == 0);
  CHECK(Execute(instance, ones, 2, results) == 0);
  CHECK(NumberOf(result) == 1.0);
  CHECK(Execute(LibPlugins(library)[add], ones, 4, results) == 0);
  CHECK(NumberOf(result) == 4.0);
  CHECK(NumberOf(zero) == 0.0 && NumberOf(one) == 1.0 && reports == 1);
  Destroy(instance, instance);
  ClearValue(result);
  ClearValue(empty);
}

static void ProveLibrary(int release) {
  void* library = GetLibrary();
  CHECK(library != 0 && GetLibrary() == library);
  CHECK(U32(LibInfo(library), 0) == 1);
  CHECK(strcmp(Text(LibInfo(library), 8),
               "Formula Library\nThis is the very first version of it") == 0);
  CHECK(LibCount(library) == INSTRUCTIONS);
  if (LibCount(library) != INSTRUCTIONS) return;
  ProveCatalogue(library);
  ProveInstances(library);
  ProveExecution(library);

  where = "the end of the library";
  void** plugins = LibPlugins(library);
  if (release) {
    LibRelease(library);
    for (int i = 0; i < INSTRUCTIONS; ++i) CHECK(IsZero(descriptors[i], 80, 184));
    CHECK(LibPlugins(library) == plugins);
  } else {  // unloading is left to free the descriptors, as a leak check sees
    LibDestruct(library);
    CHECK(LibPlugins(library) == 0);
  }
  CHECK(LibCount(library) == 0 && LibInit(library) == 0);
}

static int Prove(void) {
  for (int load = 1; load <= 2; ++load) {
    where = load == 1 ? "the first load" : "the second load";
    const int loaded = Load();
    CHECK(loaded);
    if (!loaded) break;
    ProveLibrary(load == 1);
    CHECK(Unload());
  }
  printf("%u checks passed, %u failed\n", passed, failed);
  return failed > 0;
}
