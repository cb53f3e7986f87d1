# Database servers on the loopback interface, for the tests and measurements that want real ones.
include_guard()
tessel_library(tessel_test_servers tests/data/servers/*.cpp)
tessel_link(tessel_test_servers tessel_contract)
