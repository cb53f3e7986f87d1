// The desktop contract on real windows.

#include <gtest/gtest.h>

#include "tests/desktop/QtContractHost.h"

namespace tessel::test {

namespace {

class QtContract : public testing::TestWithParam<ContractCase> {};

TEST_P(QtContract, Holds) {
  QtContractHost host;
  GetParam().body(host);
}

INSTANTIATE_TEST_SUITE_P(Qt, QtContract, testing::ValuesIn(AllContractCases()),
                         ContractCaseName<testing::TestParamInfo<ContractCase>>);

}  // namespace

}  // namespace tessel::test
