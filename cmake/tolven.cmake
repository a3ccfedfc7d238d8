# Project-wide helpers: warnings as errors on our own code, one call per target.
function(tolven_target_defaults target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror)
  # GCC 12 at -O2 and above reports -Wrestrict inside libstdc++'s own std::string concatenation
  # (GCC bug 105651, fixed in 13): a false positive on every `a + b + c`, so it is off there only.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12
     AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
endfunction()

# A library made of every source below one folder of src/ (each layer is one library).
function(tolven_add_layer target dir)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${dir}/*.cpp")
  list(FILTER sources EXCLUDE REGEX ".*/cli/main\\.cpp$")
  if(NOT sources)
    set(sources ${PROJECT_SOURCE_DIR}/cmake/empty.cpp)
  endif()
  add_library(${target} STATIC ${sources})
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  tolven_target_defaults(${target})
endfunction()

# One GoogleTest executable per layer: every *_test.cpp below tests/<layer>, plus tests/<layer>/support.
function(tolven_add_test_suite target dir)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${dir}/*_test.cpp" "${dir}/support/*.cpp")
  if(NOT sources)
    return()
  endif()
  add_executable(${target} ${sources})
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${target} PRIVATE ${ARGN} GTest::gtest GTest::gtest_main GTest::gmock)
  target_compile_definitions(${target} PRIVATE TOLVEN_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  tolven_target_defaults(${target})
  gtest_discover_tests(${target} DISCOVERY_MODE PRE_TEST WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
endfunction()
