#pragma once

#include <optional>
#include <string>

#include "host/engine_run.h"
#include "host/outcome.h"

namespace pw {

// Why a section of that name can't be made in the binder of the same name: it is there, or there
// are files of a binder that the module would empty, or not open. Nothing if it can.
std::optional<Failure> WhatIsInTheWayOfSection(EngineRun& run, const std::string& name);

// Makes it, and the binder if there is none. Gives what names it to a person: the binder's file of
// this machine, and the section.
Outcome<std::string> MakeSection(EngineRun& run, const std::string& name);

}  // namespace pw
