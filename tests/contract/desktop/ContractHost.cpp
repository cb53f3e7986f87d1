#include "tests/contract/desktop/ContractHost.h"

#include <algorithm>
#include <iterator>

#include "tests/contract/desktop/DrawingContract.h"

namespace tessel::test {

std::vector<ContractCase> AllContractCases() {
  std::vector<ContractCase> all;
  for (const auto part :
       {&ButtonContract, &TextContract, &EditorContract, &ValueContract, &DrawingContract,
        &ListContract, &ListViewContract, &TreeContract, &GridContract, &GridEditingContract,
        &MenuContract, &KeyContract, &WindowContract, &DesktopContract})
    std::ranges::move(part(), std::back_inserter(all));
  return all;
}

}  // namespace tessel::test
