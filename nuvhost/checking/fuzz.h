// Fuzz: random calls of every instruction, each of which a number stands for.
#pragma once

#include "nuvhost/checking/law.h"

namespace nuvhost::check {

/// The law of random calls, as the trial's plan says. It is none of AllLaws: there is no end to it.
extern const Law kFuzzLaw;

}  // namespace nuvhost::check
