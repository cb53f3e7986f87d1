# The implementations of the contract, and the program.
find_package(SQLite3 REQUIRED)
find_package(ODBC REQUIRED)
find_package(mimalloc REQUIRED)
pkg_check_modules(xlsxwriter REQUIRED IMPORTED_TARGET xlsxwriter)
pkg_check_modules(libpq REQUIRED IMPORTED_TARGET libpq)
pkg_check_modules(libmariadb REQUIRED IMPORTED_TARGET libmariadb)
find_package(Qt6 REQUIRED COMPONENTS Widgets DBus PrintSupport Svg Test)
find_package(Qt6Keychain REQUIRED)
find_package(QCustomPlotQt6 REQUIRED)
find_library(TESSEL_QSCINTILLA NAMES qscintilla2_qt6 REQUIRED)

# Files of sheets.
tessel_library(tessel_sheets system/sheets/*.cpp)
tessel_link(tessel_sheets tessel_system PkgConfig::xlsxwriter)
tessel_precompile_std(tessel_sheets)

# The databases that the program knows.
file(GLOB_RECURSE driver_sources CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} data/providers/*.cpp)
list(FILTER driver_sources INCLUDE REGEX "/(sqlite|odbc|postgresql|mariadb)/")
tessel_library_of(tessel_drivers data/cursor/DataAccessObjects.cpp ${driver_sources})
tessel_link(tessel_drivers tessel_data SQLite::SQLite3 ODBC::ODBC)
# The program loads libpq and libmariadb when they are first needed (LateLibrary).
tessel_scope(tessel_drivers drivers_scope)
target_include_directories(tessel_drivers ${drivers_scope} ${libpq_INCLUDE_DIRS} ${libmariadb_INCLUDE_DIRS})
tessel_link(tessel_drivers ${CMAKE_DL_LIBS})
tessel_precompile_std(tessel_drivers)

file(GLOB_RECURSE desktop_sources CONFIGURE_DEPENDS desktop/*.cpp desktop/*.h)
list(FILTER desktop_sources EXCLUDE REGEX "/desktop/plain/") # a library of its own
file(GLOB desktop_forms CONFIGURE_DEPENDS desktop/forms/*.ui)
file(GLOB desktop_resources CONFIGURE_DEPENDS desktop/*.qrc)
# Every form becomes <build>/ui_<form>.h, whether a source includes it or not.
qt_wrap_ui(desktop_form_headers ${desktop_forms})
set_source_files_properties(${desktop_form_headers} PROPERTIES SKIP_AUTOGEN ON)
tessel_library_of(tessel_desktop ${desktop_sources} ${desktop_form_headers})
set_target_properties(tessel_desktop PROPERTIES AUTOMOC ON)
tessel_link(tessel_desktop tessel_desktop_plain tessel_contract Qt6::Widgets Qt6::DBus Qt6::PrintSupport Qt6::Svg qt6keychain QCustomPlotQt6::QCustomPlotQt6 ${TESSEL_QSCINTILLA})
tessel_precompile_std(tessel_desktop <QtWidgets>)
# As objects on every link line: in an archive nothing would refer to them and they would be dropped.
if(desktop_resources)
  qt_add_resources(desktop_resource_sources ${desktop_resources})
  add_library(tessel_resources OBJECT ${desktop_resource_sources})
  tessel_link(tessel_desktop $<TARGET_OBJECTS:tessel_resources>)
endif()
tessel_scope(tessel_desktop desktop_scope)
target_include_directories(tessel_desktop ${desktop_scope} ${CMAKE_BINARY_DIR})

# tessel_fast_allocator(<program>): mimalloc in the C library's place, for the whole process; the
# sanitizers bring their own.
function(tessel_fast_allocator program)
  if(NOT TESSEL_SANITIZE)
    target_sources(${program} PRIVATE ${CMAKE_SOURCE_DIR}/main/allocator/FreedMemory.cpp)
    target_link_libraries(${program} PRIVATE mimalloc)
  endif()
endfunction()

tessel_executable(Tessel main/*.cpp EXCEPT "^main/allocator/") # tessel_fast_allocator adds that
if(TARGET Tessel)
  tessel_fast_allocator(Tessel)
  set_target_properties(Tessel PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
  target_link_libraries(Tessel PRIVATE tessel_logic tessel_desktop tessel_drivers tessel_sheets tessel_system)
  target_compile_definitions(Tessel PRIVATE TESSEL_VERSION="${PROJECT_VERSION}")
endif()

# The help book for help viewers of other makers, beside the program; its own viewer needs no file.
find_program(TESSEL_CHMCMD chmcmd)
find_package(Python3 COMPONENTS Interpreter)
if(TESSEL_CHMCMD AND Python3_FOUND)
  file(GLOB help_book CONFIGURE_DEPENDS help/*)
  set(help_file ${CMAKE_BINARY_DIR}/bin/Tessel.chm)
  add_custom_command(OUTPUT ${help_file}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/bin
    COMMAND ${Python3_EXECUTABLE} ${CMAKE_SOURCE_DIR}/tools/make_chm.py ${TESSEL_CHMCMD}
            ${CMAKE_SOURCE_DIR}/help ${CMAKE_BINARY_DIR}/help ${help_file}
    DEPENDS ${help_book} tools/make_chm.py
    COMMENT "Making Tessel.chm")
  add_custom_target(tessel_help ALL DEPENDS ${help_file})
endif()
