// The faults of the faulty plug-in that lie in what it does, not in what it says.
#pragma once

#include <string_view>

#include "host/context.h"

/// Where a fault shows.
enum class Place { kLoad, kInit, kCreate, kDouble, kJoin, kPick, kUnload };

/// Whether the environment variable NUV_FAULT names this fault.
bool Fault(std::string_view name);

void Crash();

/// Does what the fault in force does at this place, nothing for most.
void Misbehave(Place place, IXInstrContext* context = nullptr);
