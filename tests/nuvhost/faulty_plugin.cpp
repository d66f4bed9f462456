// A small plug-in library with one fault: the one that the environment variable NUV_FAULT names,
// none without it. What is at fault in what it does stands in faults.cpp.

#include <cmath>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

#include "host/instr_plugin_lib.h"
#include "host/services.h"
#include "tests/nuvhost/faults.h"

namespace {

template <class Record>
Record& Add(TStdVector<Record>& records, NuvParamType type, const char* name) {
  Record record;
  record.type = type;
  record.name = name;
  record.index = static_cast<std::uint32_t>(records.Size());
  records.PushBack(std::move(record));
  return records[records.Size() - 1];
}

void Head(DescriptorRecord& record, const char* category, const char* name, const char* identifier,
          std::uint32_t help) {
  record.format = 17;
  record.name = name;
  record.category = category;
  record.identifier = identifier;
  record.help = help;
}

Status Report(IXInstrContext& context, std::int32_t severity, Status status) {
  auto* messages = static_cast<IXMessageService*>(context.Service(NUV_SERVICE_MESSAGE));
  if (messages != nullptr || Fault("needs messages")) {
    messages->Report(severity, CStdStr("Faulty"), CStdStr("out of range"));
  } else if (Fault("fails unheard")) {
    return Status::kFailure;
  }
  return status;
}

/// Runs out of stack.
[[gnu::noinline]] int Recurse(volatile int* above) {
  volatile int here[1000] = {*above};
  return *above < 0 ? 0 : Recurse(here) + here[0];
}

/// A number whose virtual functions go with this library.
class OwnNumber final : public CNuvBaseType {
 public:
  explicit OwnNumber(double number) : number_(number) {}
  CNuvBaseType* Clone() const override { return new OwnNumber(*this); }
  bool Copy(const CNuvBaseType& /*other*/) override { return false; }
  bool Compare(const CNuvBaseType& /*other*/) const override { return false; }
  NUV_OBJ_TYPE GetType() const noexcept override { return NUV_OBJ_DOUBLE; }

 private:
  double number_;
};

/// The slots, over a class's Fill and Run.
template <class Self>
class Slots : public IXInstrPlugin {
 public:
  void* DeletingDestructor(std::uint32_t flags) override {
    const bool frees = Fault("frees always") || ((flags & 1U) != 0 && !Fault("frees never"));
    if (frees) ::operator delete(static_cast<Self*>(this));
    return Fault("destroyed nowhere") ? nullptr : this;
  }
  void BuildDescriptor() override {
    const bool grows = Fault("grows") && !record_.results.Empty();
    DescriptorRecord fresh;
    Self::Fill(fresh);
    if (grows) Add(fresh.results, NUV_PARAM_NUMBER, "one more");
    record_ = std::move(fresh);
  }
  void ClearDescriptor() override {
    if (Fault("clears nothing")) return;
    record_.constants.Release();
    record_.inputs.Release();
    record_.results.Release();
    if (Fault("clears texts")) record_.name = nullptr;
  }
  DescriptorRecord* GetDescriptor() override { return Fault("no descriptor") ? nullptr : &record_; }
  Status Execute(IXInstrContext* context) override { return Self::Run(*context); }
  IXInstrPlugin* Create() override {
    Misbehave(Place::kCreate);
    if (Fault("creates null")) return nullptr;
    return Fault("creates itself") ? this : new Self;
  }
  void Destroy(IXInstrPlugin* instruction) override {
    if (instruction != nullptr || Fault("destroys null")) instruction->DeletingDestructor(1);
  }
  bool Reserved13() override { return Fault("reserved slot"); }

  static inline DescriptorRecord record_;
};

/// Twice a number.
struct Double final : Slots<Double> {
  static void Fill(DescriptorRecord& r) {
    Head(r, "Numeric", "Double", "_Faulty_Double_", 460000);
    Add(r.inputs, NUV_PARAM_NUMBER, "number").default_value = 0.0;
    Add(r.results, NUV_PARAM_NUMBER, "double");

    if (Fault("no name")) r.name = nullptr;
    if (Fault("no input name")) r.inputs[0].name = nullptr;
    if (Fault("control character")) r.name = "Dou\bble";
    if (Fault("blank name")) r.inputs[0].name = " ";
    if (Fault("odd text")) r.identifier = "\xFF\xFE\"{";
    if (Fault("same identifier")) r.identifier = "_Faulty_Join_";
    if (Fault("same help number")) r.help = 460001;
    if (Fault("low help number")) r.help = 459999;
    if (Fault("category")) r.category = "numeric";
    if (Fault("format")) r.format = 19;
    if (Fault("extension word")) r.extension_b = 1;
    if (Fault("padding")) r.padding58[1] = 0xCD;
    if (Fault("index")) r.inputs[0].index = 1;
    if (Fault("input type")) r.inputs[0].type = 262;
    if (Fault("result type")) r.results[0].type = NUV_PARAM_INTEGER;
    if (Fault("default type")) r.inputs[0].default_value = "0";
    if (Fault("repeatable twice")) r.repeatable = 2;
  }

  static Status Run(IXInstrContext& context) {
    CNuvObject& input = *context.InputValues()[0];
    CNuvObject& result = *context.ResultValues()[0];
    const auto number = static_cast<double>(input);
    Misbehave(Place::kDouble, &context);
    if (Fault("result pointer") || Fault("counts calls") || Fault("stack garbage") ||
        Fault("heap garbage") || Fault("address") || Fault("shared scratch")) {
      return Status::kSuccess;
    }
    if (Fault("descriptor changed")) record_.description = "changed";
    if (Fault("writes and fails") && std::isnan(number)) {
      result = 1.0;
      return Status::kFailure;
    }
    if (Fault("crash") && std::isnan(number)) Crash();
    if (volatile int depth = 0; Fault("recursion") && std::isnan(number)) Recurse(&depth);
    for (volatile bool on = Fault("hang") && number == 1e300; on;) {
    }
    if (Fault("crash between") && number > 10 && number < 20) Crash();
    if (Fault("odd text") && std::isnan(number)) throw std::runtime_error("<&\"'\x01\xFF]]>");
    if (Fault("exception") && std::isinf(number)) throw std::runtime_error("number too large");
    if (Fault("odd exception") && std::isinf(number)) throw 7;
    if (Fault("status 7")) return static_cast<Status>(7);
    if (Fault("wrong type") && input.GetType() == NUV_OBJ_POINT) return static_cast<Status>(1);
    if (Fault("text result") && result.GetType() == NUV_OBJ_STRING) {
      result = "double";
    } else if (Fault("own value")) {
      result = OwnNumber(2 * number);
    } else {
      result = 2 * number;
    }
    return Status::kSuccess;
  }
};

/// Any number of texts, joined.
struct Join final : Slots<Join> {
  static void Fill(DescriptorRecord& r) {
    Head(r, "String", "Join", "_Faulty_Join_", 460001);
    Add(r.inputs, NUV_PARAM_STRING, "text").default_value = "";
    r.repeatable = 1;
    Add(r.results, NUV_PARAM_STRING, "joined");
  }

  static Status Run(IXInstrContext& context) {
    Misbehave(Place::kJoin, &context);
    std::string joined;
    for (std::int32_t i = 0; i < context.InputCount(); ++i) {
      joined += static_cast<const char*>(*context.InputValues()[i]);
    }
    if (Fault("long text") && joined.size() > 1000) return static_cast<Status>(-1);
    if (Fault("no inputs") && context.InputCount() == 0) {
      return Report(context, NUV_SEVERITY_ERROR, Status::kSuccess);
    }
    *context.ResultValues()[0] = joined.c_str();
    return Status::kSuccess;
  }
};

/// One element of an array, counted from the order's end.
struct Pick final : Slots<Pick> {
  static void Fill(DescriptorRecord& r) {
    Head(r, "Array: Number", "Pick", "_Faulty_Pick_", 460002);
    ConstantRecord& order = Add(r.constants, NUV_PARAM_CHOICE, "order");
    order.default_value = Fault("default choice") ? 2 : 0;
    if (!Fault("no choices")) order.choices.Insert(0, "forward");
    if (!Fault("no choices")) order.choices.Insert(1, Fault("no label") ? "" : "backward ");
    ConstantRecord& offset = Add(r.constants, NUV_PARAM_INTEGER, "offset");
    offset.default_value = Fault("default range") ? 11 : 0;
    offset.minimum = 0;
    if (!Fault("half a range")) offset.maximum = 10;
    if (Fault("constant type")) r.constants[0].type = NUV_PARAM_NUMBER;
    if (Fault("odd boolean")) {
      r.constants[0].type = NUV_PARAM_BOOLEAN;
      r.constants[0].default_value = 7;
    }
    if (Fault("range of a choice")) r.constants[0].minimum = 0;
    if (Fault("range of numbers")) offset.minimum = 0.5;
    if (Fault("label with control")) r.constants[0].choices.Insert(2, "a\nb");
    Add(r.inputs, NUV_PARAM_NUMBER_ARRAY, "array").default_value.SetType(NUV_OBJ_DOUBLE_VECTOR);
    Add(r.inputs, NUV_PARAM_NUMBER, Fault("same name") ? "array" : "index").default_value = 0.0;
    Add(r.results, NUV_PARAM_NUMBER, "element");
  }

  static Status Run(IXInstrContext& context) {
    Misbehave(Place::kPick, &context);
    if (Fault("element before")) return Status::kSuccess;
    const CNuvObject& input = *context.InputValues()[0];
    const auto& array = static_cast<const CNuvDoubleVector&>(input);
    const CNuvObject& offset = *context.ConstantValue(1);
    if (Fault("constant changed") && static_cast<int>(offset) == 10) {
      *context.ConstantValues()[1] = 9;
    }
    if (Fault("odd offset") && static_cast<int>(offset) % 10 > 6) return static_cast<Status>(7);
    if (Fault("array changed") && array.Size() == 1000) {
      static_cast<CNuvDoubleVector&>(*context.InputValues()[0])[999] = 0.5;
    }
    if (array.Size() == 0) {
      return Report(context, Fault("severity") ? 0 : NUV_SEVERITY_WARNING,
                    Fault("warning fails") ? Status::kFailure : Status::kSuccess);
    }
    const double index = static_cast<double>(*context.InputValues()[1]) + static_cast<int>(offset);
    const bool inside = index >= 0 && index < static_cast<double>(array.Size());
    if (!inside) return Report(context, NUV_SEVERITY_ERROR, Status::kFailure);
    const auto position = static_cast<std::size_t>(index);
    const bool backward = static_cast<int>(*context.ConstantValue(0)) == 1;
    *context.ResultValues()[0] = array[backward ? array.Size() - 1 - position : position];
    return Status::kSuccess;
  }
};

/// What nobody may call just to try it.
struct Danger final : Slots<Danger> {
  static void Fill(DescriptorRecord& r) {
    Head(r, "IO: System", "Danger", "_Faulty_Danger_", 460003);
    if (Fault("nothing to repeat")) {
      r.repeatable = 1;
    } else {
      Add(r.inputs, NUV_PARAM_BOOLEAN, "really").default_value = false;
    }
  }
  static Status Run(IXInstrContext& /*context*/) {
    Crash();
    return Status::kSuccess;
  }
};

/// Whether this is every other time that the library is loaded.
bool EveryOtherLoad() {
  const bool other = std::getenv("NUV_LOADED") != nullptr;
#if defined(_WIN32)
  _putenv(other ? "NUV_LOADED=" : "NUV_LOADED=1");
#else
  other ? unsetenv("NUV_LOADED") : setenv("NUV_LOADED", "1", 1);
#endif
  return other;
}

class Library final : public IXInstrPluginLib {
 public:
  Library() {
    Misbehave(Place::kLoad);
    if (Fault("crash on load")) Crash();
    if (Fault("filled early")) Double::record_.format = 17;
    if (Fault("null prototype")) prototypes_[1] = nullptr;
    if (Fault("prototype twice")) prototypes_[1] = prototypes_[0];
    if (Fault("other reload") && EveryOtherLoad()) count_ = 3;
    if (Fault("no instructions")) count_ = 0;
  }

  ~Library() { Misbehave(Place::kUnload); }

  void* DeletingDestructor(std::uint32_t /*flags*/) override {
    if (!Fault("library stays")) count_ = 0;
    return Fault("library nowhere") ? nullptr : this;
  }
  const LibraryInfo* GetLibInfo() override {
    static LibraryInfo info{1, 0, "A library at fault"};
    static LibraryInfo other = info;
    if (Fault("other information") && std::exchange(asked_, !asked_)) return &other;
    if (Fault("version")) info.version = 2;
    if (Fault("no text")) info.text = "";
    return &info;
  }
  IXInstrPlugin** GetPlugins() override {
    if (Fault("array moves")) return std::exchange(asked_, !asked_) ? moved_ : prototypes_;
    return Fault("no array") ? nullptr : prototypes_;
  }
  std::uint64_t GetPluginCount() override { return count_; }
  std::uint64_t InitPlugins() override {
    Misbehave(Place::kInit);
    const std::uint64_t first = Fault("one not built") ? 1 : 0;
    for (std::uint64_t i = first; i < count_; ++i) prototypes_[i]->BuildDescriptor();
    return Fault("count too high") && count_ > 0 ? count_ + 1 : count_;
  }
  void ReleasePlugins() override {
    for (std::uint64_t i = 0; i < count_; ++i) {
      if (!Fault("not cleared")) prototypes_[i]->ClearDescriptor();
    }
    if (!Fault("not released")) count_ = 0;
  }
  CNuvObject* GetEmptyObject(CNuvObject* result) override {
    return new (result) CNuvObject(Fault("full object") ? NUV_OBJ_DOUBLE : NUV_OBJ_EMPTY);
  }

 private:
  Double double_;
  Join join_;
  Pick pick_;
  Danger danger_;
  IXInstrPlugin* prototypes_[4] = {&double_, &join_, &pick_, &danger_};
  IXInstrPlugin* moved_[4] = {&double_, &join_, &pick_, &danger_};
  std::uint64_t count_ = 4;
  bool asked_ = false;
};

Library library;

}  // namespace

IXInstrPluginLib* NuvPluginLibGet() {
  if (Fault("null library")) return nullptr;
  if (!Fault("other library")) return &library;
  static bool asked = false;
  static Library other;
  return std::exchange(asked, true) ? &other : &library;
}
