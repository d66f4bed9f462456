// A complete host: it loads a plug-in library, lists its instructions, runs one and unloads it.
//
// usage: host PLUGIN-LIBRARY

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "host/instr_plugin_lib.h"
#include "host/services.h"

// clang-format off
#if defined(_WIN32)
#include <windows.h>
static HMODULE Load(const char* path) { return LoadLibraryA(path); }
static auto Find(HMODULE module) { return GetProcAddress(module, "NuvPluginLibGet"); }
static void Unload(HMODULE module) { FreeLibrary(module); }
#else
#include <dlfcn.h>
static void* Load(const char* path) { return dlopen(path, RTLD_NOW | RTLD_LOCAL); }
static auto Find(void* module) { return dlsym(module, "NuvPluginLibGet"); }
static void Unload(void* module) { dlclose(module); }
#endif
// clang-format on

/// Shows messages; drops program events.
class Messages final : public IXMessageService {
 public:
  void* DeletingDestructor(std::uint32_t) override { return this; }
  void Report(std::int32_t severity, const CStdStr& source, const CStdStr& text) override {
    std::printf("%s: %s: %s\n", severity == NUV_SEVERITY_ERROR ? "error" : "warning",
                source.c_str(), text.c_str());
  }
  void RaiseProgramEvent(std::int32_t, std::int32_t) override {}
};

/// The values of one instruction, and the services that it may ask for: messages alone.
class Context final : public IXInstrContext {
 public:
  explicit Context(const DescriptorRecord& descriptor) : results(descriptor.results.Size()) {
    for (const ConstantRecord& constant : descriptor.constants) {
      constants.push_back(constant.default_value);
    }
    for (const ParameterRecord& input : descriptor.inputs) inputs.push_back(input.default_value);
    for (CNuvObject& value : constants) constant_pointers_.push_back(&value);
    for (CNuvObject& value : inputs) input_pointers_.push_back(&value);
    for (CNuvObject& value : results) result_pointers_.push_back(&value);
  }

  std::vector<CNuvObject> constants, inputs, results;

  void* DeletingDestructor(std::uint32_t) override { return this; }
  CNuvObject** ConstantValues() override { return constant_pointers_.data(); }
  CNuvObject** InputValues() override { return input_pointers_.data(); }
  std::int32_t InputCount() override { return static_cast<std::int32_t>(inputs.size()); }
  CNuvObject** ResultValues() override { return result_pointers_.data(); }
  CNuvObject* ConstantValue(std::int32_t index) override { return constant_pointers_[index]; }
  CNuvObject* ResultValue(std::int32_t index) override { return result_pointers_[index]; }
  void MarkResult(std::int32_t, std::int32_t) override {}
  void* Service(std::int32_t number) override {
    return number == NUV_SERVICE_MESSAGE ? &messages_ : nullptr;
  }

 private:
  std::vector<CNuvObject*> constant_pointers_, input_pointers_, result_pointers_;
  Messages messages_;
};

static void Divide(IXInstrPlugin& instruction, double numerator, double denominator) {
  Context context(*instruction.GetDescriptor());
  context.inputs[0] = numerator;
  context.inputs[1] = denominator;
  const Status status = instruction.Execute(&context);
  std::printf("%g / %g: ", numerator, denominator);
  if (status == Status::kSuccess) {
    std::printf("%.15g\n", static_cast<double>(context.results[0]));
  } else {
    std::printf("status %d\n", static_cast<int>(status));
  }
}

int main(int argc, char** argv) {
  const auto module = argc == 2 ? Load(argv[1]) : nullptr;
  const auto address = module != nullptr ? Find(module) : nullptr;
  if (address == nullptr) {
    std::fprintf(stderr, "usage: host PLUGIN-LIBRARY\n");
    return 2;
  }
  IXInstrPluginLib* const library = reinterpret_cast<IXInstrPluginLib* (*)()>(address)();
  std::printf("%s\n", library->GetLibInfo()->text);
  library->InitPlugins();

  IXInstrPlugin* divide = nullptr;
  for (std::uint64_t i = 0; i < library->GetPluginCount(); ++i) {
    IXInstrPlugin* const prototype = library->GetPlugins()[i];
    const DescriptorRecord& descriptor = *prototype->GetDescriptor();
    std::printf("%s: %s\n", descriptor.category, descriptor.name);
    if (std::strcmp(descriptor.identifier, "_Nuv_Numeric_DivideNumbers_") == 0) {
      divide = prototype->Create();  // a working object, ours until Destroy
    }
  }
  if (divide != nullptr) {
    Divide(*divide, 22, 7);
    Divide(*divide, 1, 0);
    divide->Destroy(divide);
  }

  library->ReleasePlugins();
  Unload(module);
}
