# GoogleTest from the sources that the distribution installs, since it has no build for the target.
find_path(GTEST_SOURCE src/gtest-all.cc PATHS /usr/src/googletest/googletest NO_CMAKE_FIND_ROOT_PATH)
mark_as_advanced(GTEST_SOURCE)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(GTest REQUIRED_VARS GTEST_SOURCE)

if(GTest_FOUND AND NOT TARGET GTest::gtest_main)
  add_library(gtest_main STATIC EXCLUDE_FROM_ALL "${GTEST_SOURCE}/src/gtest-all.cc" "${GTEST_SOURCE}/src/gtest_main.cc")
  target_compile_features(gtest_main PUBLIC cxx_std_14)
  target_include_directories(gtest_main SYSTEM PUBLIC "${GTEST_SOURCE}/include" PRIVATE "${GTEST_SOURCE}")
  target_compile_options(gtest_main PRIVATE -w)
  add_library(GTest::gtest_main ALIAS gtest_main)
endif()
