# Programs that look for texts on which the logic fails. They need clang:
#   cmake -S . -B build/fuzz -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DTESSEL_LOGIC_ONLY=ON -DTESSEL_FUZZ=ON
#   cmake --build build/fuzz --target tag_scanner_fuzz
#   build/fuzz/tag_scanner_fuzz -dict=tests/fuzz/tags.dict -max_total_time=60
# and in the same way sql_statements_fuzz with tests/fuzz/sql.dict.
option(TESSEL_FUZZ "Build the fuzz targets (needs clang)" OFF)

# tessel_fuzz(<name> <source>...): the sources it looks into are built into it, so that the fuzzer
# sees the way taken through them.
function(tessel_fuzz name)
  add_executable(${name} ${ARGN})
  tessel_warnings(${name})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE PkgConfig::utf8proc)
  foreach(step compile link)
    cmake_language(CALL target_${step}_options ${name} PRIVATE
                   -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=all)
  endforeach()
endfunction()

if(TESSEL_FUZZ AND NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  message(WARNING "TESSEL_FUZZ needs clang (CMAKE_CXX_COMPILER=clang++): no fuzz target is built")
elseif(TESSEL_FUZZ)
  file(GLOB_RECURSE fuzz_contract CONFIGURE_DEPENDS contract/*.cpp)
  tessel_fuzz(tag_scanner_fuzz tests/fuzz/TagScannerFuzz.cpp tests/support/TagScannerProperty.cpp
              logic/tags/TagScanner.cpp logic/program/Global.cpp logic/program/NoKeyring.cpp logic/program/Characters.cpp ${fuzz_contract})
  tessel_fuzz(sql_statements_fuzz tests/fuzz/SqlStatementsFuzz.cpp tests/support/SqlStatementsProperty.cpp
              ${fuzz_contract})
endif()
