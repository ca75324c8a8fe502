#pragma once

#include <memory>

#include <gtest/gtest.h>

// A contract that every implementation of an interface is held to. A suite's parameter makes one,
// with what a test must do to it beside the interface.
namespace pw {

template <class Implementation>
using Maker = std::unique_ptr<Implementation> (*)();

template <class Implementation, class Derived, auto... arguments>
std::unique_ptr<Implementation> Make() {
  return std::make_unique<Derived>(arguments...);
}

template <class Implementation>
class ContractTest : public testing::TestWithParam<Maker<Implementation>> {
 protected:
  std::unique_ptr<Implementation> implementation = this->GetParam()();
};

}  // namespace pw
