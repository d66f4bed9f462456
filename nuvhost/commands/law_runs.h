// LawRuns: laws judged in processes of their own.
#pragma once

#include <string>
#include <vector>

#include "nuvhost/checking/law.h"

namespace nuvhost {

class LawRuns {
 public:
  /// Each law may take so many seconds.
  LawRuns(check::Charge charge, int seconds) : charge_(std::move(charge)), seconds_(seconds) {}

  /// Throws UserError where the library cannot be loaded at all.
  check::Verdict Judge(const check::Law& law) const;
  /// The law of random calls, for the time of the charge's plan. A call that ends its process is
  /// found again, and the others go on without its instruction.
  check::Verdict JudgeFuzz() const;

 private:
  check::Verdict Run(const check::Law& law, std::vector<std::string> more,
                     std::chrono::milliseconds time) const;
  check::Verdict RunFuzz(const check::FuzzPlan& plan) const;
  /// Makes the calls among which a process ended again, one by one, and says in the verdict which
  /// it was. The rest goes on behind it.
  void FindAgain(check::Verdict& verdict, check::FuzzPlan& rest) const;

  check::Charge charge_;
  int seconds_;
};

}  // namespace nuvhost
