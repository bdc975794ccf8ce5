# One function per kind of target, so that every folder's CMakeLists.txt is a line or two.

add_library(orma_flags INTERFACE)
target_compile_options(orma_flags INTERFACE -Wall -Wextra -Wconversion -Wshadow -Wno-psabi)
if(ORMA_WARNINGS_AS_ERRORS)
  target_compile_options(orma_flags INTERFACE -Werror)
endif()
target_include_directories(orma_flags INTERFACE ${CMAKE_SOURCE_DIR}/src)

set(ORMA_SMALL_CODE "" CACHE STRING "Options for code of which size counts more than speed")

# orma_library(NAME [SMALL] [USES target...]): a static library of every .cpp file in the calling
# folder but a program's main.cpp, so that tests can stand beside it; SMALL where size counts more
# than speed. A folder of headers alone becomes an interface library.
function(orma_library name)
  cmake_parse_arguments(ARG "SMALL" "" "USES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  if(sources)
    add_library(${name} STATIC ${sources})
    target_link_libraries(${name} PUBLIC orma_flags ${ARG_USES})
    if(ARG_SMALL)
      target_compile_options(${name} PRIVATE ${ORMA_SMALL_CODE})
    endif()
  else()
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE orma_flags ${ARG_USES})
  endif()
endfunction()

# orma_program(NAME USES target...): the program of main.cpp in the calling folder.
function(orma_program name)
  cmake_parse_arguments(ARG "" "" "USES" ${ARGN})
  add_executable(${name} main.cpp)
  target_compile_definitions(${name} PRIVATE ORMA_VERSION="${PROJECT_VERSION}")
  target_link_libraries(${name} PRIVATE ${ARG_USES})
endfunction()

add_custom_target(orma_tests COMMENT "All test programs")

# orma_test(NAME [USES target...]): one test program of every .cpp file in the calling folder.
function(orma_test name)
  cmake_parse_arguments(ARG "" "" "USES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    target_compile_options(${name} PRIVATE -O0)  # halves the build; what is tested stays optimised
  endif()
  target_link_libraries(${name} PRIVATE ${ARG_USES} orma_test_support GTest::gmock GTest::gtest_main)
  add_dependencies(orma_tests ${name})
  gtest_discover_tests(${name} TEST_PREFIX "${ORMA_TEST_PREFIX}" DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120)
endfunction()
