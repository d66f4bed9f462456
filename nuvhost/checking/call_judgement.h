// CallJudgement: one call of an instruction, and what was wrong with it.
#pragma once

#include <string>

#include "nuvhost/checking/hostile.h"
#include "nuvhost/library/catalogue.h"

namespace nuvhost::check {

/// Whether arbitrary values may reach an instruction.
bool IsCallable(const CatalogueEntry& instruction);

/// A working object as hosts make them; the prototype itself where there is none to be had.
class WorkingObject {
 public:
  explicit WorkingObject(IXInstrPlugin& prototype)
      : prototype_(prototype), created_(prototype.Create()) {}
  WorkingObject(const WorkingObject&) = delete;
  WorkingObject& operator=(const WorkingObject&) = delete;
  ~WorkingObject() {
    if (created_ != &prototype_) prototype_.Destroy(created_);
  }

  IXInstrPlugin& Get() const { return created_ == nullptr ? prototype_ : *created_; }

 private:
  IXInstrPlugin& prototype_;
  IXInstrPlugin* created_;
};

/// Makes a call; what was wrong with it, "" for nothing.
std::string CallComplaint(IXInstrPlugin& object, const DescriptorRecord& descriptor,
                          const Case& call, Services& services);

}  // namespace nuvhost::check
