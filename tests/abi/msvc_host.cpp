// A host built for the Microsoft binary interface, where a virtual destructor takes one slot and
// a class is returned by value through a pointer behind `this`.
//
// Freestanding: it declares the interfaces in its own words, and the system functions it calls.
#include <stddef.h>
#include <stdint.h>

extern "C" {
void* LoadLibraryA(const char* path);
void* GetModuleHandleA(const char* name);
void* GetProcAddress(void* module, const char* name);
int FreeLibrary(void* module);
int printf(const char* format, ...);
int fflush(void* stream);
int strcmp(const char* a, const char* b);
size_t strlen(const char* text);
int memcmp(const void* a, const void* b, size_t size);
[[noreturn]] void exit(int code);
int _fltused = 0;  // the compiler refers to it wherever floating-point numbers are used
}

#include "abi_proof.h"

class Library;
static Library* (*get_library)();
static double (*read_number)(const void* value);
static void (*clear_value)(void* value);

/// A value of the host; what it holds is another module's business.
class Value {
 public:
  Value(const Value&);
  ~Value() { clear_value(this); }
  static void* operator new(size_t, void* place) { return place; }

 private:
  uint64_t words_[2];
};

class MessageService {
 public:
  virtual ~MessageService() = default;
  virtual void Report(int severity, const unsigned char& source, const unsigned char& text) {
    OnReport(severity, &source, &text);
  }
  virtual void Slot2() { Unexpected(); }
  virtual void Slot3() { Unexpected(); }
  virtual void Slot4() { Unexpected(); }
  virtual void RaiseProgramEvent(int, int) { Unexpected(); }
};

class Context {
 public:
  Context(void** inputs, int count, void** results)
      : inputs_(inputs), count_(count), results_(results) {}
  virtual ~Context() = default;
  virtual void Slot1() { Unexpected(); }
  virtual void** Constants() { return nullptr; }
  virtual void** Inputs() { return inputs_; }
  virtual int InputCount() { return count_; }
  virtual void** Results() { return results_; }
  virtual void* Constant(int) { return nullptr; }
  virtual void Slot7() { Unexpected(); }
  virtual void* Result(int index) { return results_[index]; }
  virtual void Slot9() { Unexpected(); }
  virtual void MarkResult(int, int) { Unexpected(); }
  virtual void* Service(int number) { return number == 4105 ? &messages_ : nullptr; }

 private:
  void** inputs_;
  int count_;
  void** results_;
  MessageService messages_;
};
void operator delete(void*, size_t) {}  // what the tables of the two refer to

class Instruction {
 public:
  virtual ~Instruction() = 0;
  virtual void Build() = 0;
  virtual void Clear() = 0;
  virtual void Slot3() = 0;
  virtual Bytes Descriptor() = 0;
  virtual int Execute(Context* context) = 0;
  virtual Instruction* Create() = 0;
  virtual void Destroy(Instruction* other) = 0;
  virtual bool Slot8() = 0;
  virtual void Slot9() = 0;
  virtual void Slot10() = 0;
  virtual void Slot11() = 0;
  virtual bool Slot12() = 0;
  virtual bool Slot13() = 0;
  virtual bool Slot14() = 0;
  virtual bool Slot15() = 0;
};

class Library {
 public:
  virtual ~Library() = 0;
  virtual Bytes Info() = 0;
  virtual void** Plugins() = 0;
  virtual uint64_t Count() = 0;
  virtual uint64_t Init() = 0;
  virtual void Release() = 0;
  virtual Value EmptyObject() = 0;
};

template <class Function>
static bool Get(const char* module, const char* name, Function*& function) {
  function = reinterpret_cast<Function*>(GetProcAddress(GetModuleHandleA(module), name));
  return function != nullptr;
}
static int Load() {
  return LoadLibraryA("NuvFormula.dll") != nullptr &&
         Get("NuvFormula.dll", "NuvPluginLibGet", get_library) &&
         Get("NuvObject.dll", "_ZNK10CNuvObjectcvdEv", read_number) &&
         Get("NuvObject.dll", "_ZN10CNuvObject5ClearEv", clear_value);
}
static int Unload() {
  return FreeLibrary(GetModuleHandleA("NuvFormula.dll")) != 0 &&
         GetModuleHandleA("NuvFormula.dll") == nullptr;
}
static int32_t Execute(void* instruction, void** inputs, int32_t count, void** results) {
  Context context(inputs, count, results);
  return static_cast<Instruction*>(instruction)->Execute(&context);
}
static int CountTrueReserved(void* instruction) {
  Instruction& i = *static_cast<Instruction*>(instruction);
  i.Slot3(), i.Slot9(), i.Slot10(), i.Slot11();
  return i.Slot8() + i.Slot12() + i.Slot13() + i.Slot14() + i.Slot15();
}
// clang-format off
static Library* L(void* library) { return static_cast<Library*>(library); }
static void* GetLibrary() { return get_library(); }
static void LibDestruct(void* library) { L(library)->~Library(); }
static Bytes LibInfo(void* library) { return L(library)->Info(); }
static void** LibPlugins(void* library) { return L(library)->Plugins(); }
static uint64_t LibCount(void* library) { return L(library)->Count(); }
static uint64_t LibInit(void* library) { return L(library)->Init(); }
static void LibRelease(void* library) { L(library)->Release(); }
static Instruction* I(void* instruction) { return static_cast<Instruction*>(instruction); }
static void Delete(void* instruction) { delete I(instruction); }
static void Build(void* instruction) { I(instruction)->Build(); }
static void Clear(void* instruction) { I(instruction)->Clear(); }
static Bytes Descriptor(void* instruction) { return I(instruction)->Descriptor(); }
static void* Create(void* instruction) { return I(instruction)->Create(); }
static void Destroy(void* instruction, void* other) { I(instruction)->Destroy(I(other)); }
static double NumberOf(const void* value) { return read_number(value); }
static void ClearValue(void* value) { static_cast<Value*>(value)->~Value(); }
// clang-format on
static void LibEmptyObject(void* library, void* result) {
  new (result) Value(L(library)->EmptyObject());
}

extern "C" void Start() {
  exit(Prove());
}
