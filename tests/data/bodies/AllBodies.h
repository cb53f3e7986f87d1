#pragma once

#include "tests/data/support/DataTest.h"

namespace tessel::test {

/// The shared behaviours, by subject; their bodies stand in the sources of the same names.
class ConnectBodies : public DatabaseTest {};
class CommandBodies : public DatabaseTest {};
class CancelBodies : public DatabaseTest {};
class CursorBodies : public DatabaseTest {};
class ValueBodies : public DatabaseTest {};
class FieldBodies : public DatabaseTest {};
class SchemaBodies : public DatabaseTest {};

/// The name of a database as a part of the names of its tests.
inline std::string DatabaseName(const testing::TestParamInfo<DatabaseParam>& info) {
  return info.param.name;
}

}  // namespace tessel::test

/// Runs every shared behaviour against the databases of `params`, a testing::Values(...) of
/// DatabaseParam. To be used once, in namespace tessel::test.
#define TESSEL_RUN_BODIES(prefix, params)                                                          \
  INSTANTIATE_TEST_SUITE_P(prefix, ConnectBodies, params, DatabaseName);                           \
  INSTANTIATE_TEST_SUITE_P(prefix, CommandBodies, params, DatabaseName);                           \
  INSTANTIATE_TEST_SUITE_P(prefix, CancelBodies, params, DatabaseName);                            \
  INSTANTIATE_TEST_SUITE_P(prefix, CursorBodies, params, DatabaseName);                            \
  INSTANTIATE_TEST_SUITE_P(prefix, ValueBodies, params, DatabaseName);                             \
  INSTANTIATE_TEST_SUITE_P(prefix, FieldBodies, params, DatabaseName);                             \
  INSTANTIATE_TEST_SUITE_P(prefix, SchemaBodies, params, DatabaseName)
