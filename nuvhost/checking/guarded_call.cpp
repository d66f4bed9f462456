#include "nuvhost/checking/guarded_call.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <span>

namespace nuvhost::check {
namespace {

/// Where an array or a text keeps its elements, as the host's layout has it.
struct Storage {
  const std::byte** begin;  ///< of an array followed by its end and its capacity
  std::size_t size;         ///< in bytes
  bool is_array;
};

/// The storage of an array or of a text that does not stand inline; empty for other values.
Storage StorageOf(const CNuvObject& value) {
  constexpr std::size_t kBegin = 16;
  constexpr std::size_t kLength = 32;
  constexpr std::size_t kCapacity = 40;
  constexpr std::uint64_t kInline = 15;
  auto* held = reinterpret_cast<std::byte*>(const_cast<CNuvBaseType*>(value.Get()));
  if (held == nullptr) return {};
  auto* begin = reinterpret_cast<const std::byte**>(held + kBegin);
  if (value.GetType() >= NUV_OBJ_BOOL_VECTOR) {
    return {begin, static_cast<std::size_t>(begin[1] - begin[0]), true};
  }
  std::uint64_t capacity = 0;
  std::uint64_t length = 0;
  if (value.GetType() != NUV_OBJ_STRING) return {};
  std::memcpy(&capacity, held + kCapacity, sizeof capacity);
  std::memcpy(&length, held + kLength, sizeof length);
  if (capacity <= kInline) return {};
  return {begin, static_cast<std::size_t>(length) + 1, false};
}

/// Elements or a text that stand in guarded memory for a while.
class Moved {
 public:
  Moved(const Storage& storage, GuardedMemory& memory, unsigned char fill) : storage_(storage) {
    std::copy_n(storage.begin, Pointers(), original_);
    auto* guarded = static_cast<std::byte*>(memory.Take(storage.size, fill));
    std::memcpy(guarded, original_[0], storage.size);
    moved_[0] = guarded;
    moved_[1] = moved_[2] = guarded + storage.size;
    std::copy_n(moved_, Pointers(), storage.begin);
  }

  /// Puts them back where they were, changed or not; whether they stood where they were put.
  bool Return() {
    if (!std::equal(moved_, moved_ + Pointers(), storage_.begin)) return false;
    std::memcpy(const_cast<std::byte*>(original_[0]), moved_[0], storage_.size);
    std::copy_n(original_, Pointers(), storage_.begin);
    return true;
  }

 private:
  std::size_t Pointers() const { return storage_.is_array ? 3 : 1; }

  Storage storage_;
  const std::byte* original_[3] = {};
  const std::byte* moved_[3] = {};
};

/// Values that stand in guarded memory for a while, and the pointers to them.
class Placed {
 public:
  Placed(const char* name, std::vector<CNuvObject>& values, bool guards_elements,
         GuardedMemory& memory, unsigned char fill)
      : name_(name), values_(values) {
    if (guards_elements) {
      for (const CNuvObject& value : values) {
        const Storage storage = StorageOf(value);
        if (storage.size > 0) moved_.emplace_back(storage, memory, fill);
      }
    }
    const std::size_t bytes = values.size() * sizeof(CNuvObject);
    placed_ = static_cast<CNuvObject*>(memory.Take(bytes, fill));
    // A value is where it is: it may be moved byte by byte.
    if (bytes > 0)
      std::memcpy(static_cast<void*>(placed_), static_cast<const void*>(values.data()), bytes);
    for (std::size_t i = 0; i < values.size(); ++i) expected_.push_back(placed_ + i);
    const std::size_t size = expected_.size() * sizeof(CNuvObject*);
    pointers_ = static_cast<CNuvObject**>(memory.Take(size, fill));
    std::ranges::copy(expected_, pointers_);
  }
  Placed(const Placed&) = delete;
  Placed& operator=(const Placed&) = delete;
  ~Placed() { Return(); }

  CNuvObject** Pointers() const { return pointers_; }
  std::size_t Count() const { return expected_.size(); }

  /// Puts everything back; a complaint where pointers or arrays are not those that were handed out.
  std::string Return() {
    if (returned_) return "";
    returned_ = true;
    std::string complaint;
    if (!std::ranges::equal(expected_, std::span(pointers_, Count()))) {
      complaint = fmt::format("the array of pointers to {} was changed", name_);
    }
    const std::size_t bytes = values_.size() * sizeof(CNuvObject);
    if (bytes > 0)
      std::memcpy(static_cast<void*>(values_.data()), static_cast<const void*>(placed_), bytes);
    for (Moved& moved : moved_) {
      if (!moved.Return()) complaint = fmt::format("an array among {} was given storage", name_);
    }
    return complaint;
  }

 private:
  const char* name_;
  std::vector<CNuvObject>& values_;
  std::vector<Moved> moved_;
  CNuvObject* placed_;
  std::vector<CNuvObject*> expected_;
  CNuvObject** pointers_;
  bool returned_ = false;
};

/// The context that stands in guarded memory.
class Face final : public IXInstrContext {
 public:
  Face(CallContext& context, const Placed& constants, const Placed& inputs, const Placed& results,
       std::string& complaint)
      : context_(context),
        constants_(constants),
        inputs_(inputs),
        results_(results),
        complaint_(complaint) {}

  void* DeletingDestructor(std::uint32_t /*flags*/) override {
    complaint_ = "destroyed the context";
    return this;
  }
  void Reserved1() override { complaint_ = "called slot 1 of the context"; }
  CNuvObject** ConstantValues() override { return constants_.Pointers(); }
  CNuvObject** InputValues() override { return inputs_.Pointers(); }
  std::int32_t InputCount() override { return context_.InputCount(); }
  CNuvObject** ResultValues() override { return results_.Pointers(); }
  CNuvObject* ConstantValue(std::int32_t index) override {
    return At(constants_, index, "constant");
  }
  void Reserved7() override { complaint_ = "called slot 7 of the context"; }
  CNuvObject* ResultValue(std::int32_t index) override { return At(results_, index, "result"); }
  void Reserved9() override { complaint_ = "called slot 9 of the context"; }
  void MarkResult(std::int32_t index, std::int32_t value) override {
    context_.MarkResult(index, value);
  }
  void* Service(std::int32_t number) override { return context_.Service(number); }

 private:
  CNuvObject* At(const Placed& placed, std::int32_t index, const char* what) {
    if (index >= 0 && static_cast<std::size_t>(index) < placed.Count()) {
      return placed.Pointers()[index];
    }
    complaint_ = fmt::format("asked for {} {} of {}", what, index, placed.Count());
    return nullptr;
  }

  CallContext& context_;
  const Placed& constants_;
  const Placed& inputs_;
  const Placed& results_;
  std::string& complaint_;
};

}  // namespace

GuardedEnd ExecuteGuarded(CallContext& values, IXInstrPlugin& object, GuardedMemory& memory,
                          unsigned char fill) {
  struct Retirement {
    GuardedMemory& memory;
    ~Retirement() { memory.Retire(); }
  } const retirement{memory};
  GuardedEnd end;
  values.marks.clear();
  Placed constants("constants", values.constants, true, memory, fill);
  Placed inputs("inputs", values.inputs, true, memory, fill);
  Placed results("results", values.results, false, memory, fill);
  auto* face =
      new (memory.Take(sizeof(Face), fill)) Face(values, constants, inputs, results, end.complaint);
  end.status = static_cast<std::int32_t>(object.Execute(face));
  for (Placed* placed : {&constants, &inputs, &results}) {
    const std::string complaint = placed->Return();
    if (!complaint.empty()) end.complaint = complaint;
  }
  return end;
}

}  // namespace nuvhost::check
