# What the libraries of the project share. A library's CMakeLists.txt names its sources and the libraries it links.

# The written order of operations is what the libraries promise: no contraction into fused multiply-adds. The next two
# flags never change a value; they let square roots compile to the instruction alone.
if(MSVC)
  set(vorbel_rounding /fp:precise /utf-8)
else()
  set(vorbel_rounding -ffp-contract=off -fno-math-errno -fno-trapping-math)
endif()

# GCC (seen with 12, at -O3 -march=native) fuses all the same: its SLP vectoriser turns products with an addition in one
# lane and a subtraction in the next, such as a * b + 36 beside c * d - 18, into one vfmsubadd. So it compiles for a
# processor without such instructions. AVX-512 is among them, since it has fused ones that -mno-fma leaves; the class
# has no loop long enough to gain from it. Without the vectoriser the distance of dLagrange4_rFv_t() would take twice
# the time. Clang fuses nothing, and propagates faster without its own SLP vectoriser. script/check bits looks at both.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  include(CheckCXXCompilerFlag)
  check_cxx_compiler_flag(-mno-fma4 VORBEL_GCC_FOR_X86)
  if(VORBEL_GCC_FOR_X86)
    list(APPEND vorbel_rounding -mno-fma -mno-fma4 -mno-avx512f)
  endif()
elseif(CMAKE_CXX_COMPILER_ID MATCHES "Clang" AND NOT MSVC)
  list(APPEND vorbel_rounding -fno-slp-vectorize)
endif()

set_property(GLOBAL PROPERTY VORBEL_LIBRARIES "")

# vorbel_code(TARGET): code of a library, with what that means for how it is compiled
function(vorbel_code target)
  target_include_directories(${target} PUBLIC "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>")
  target_compile_features(${target} PRIVATE cxx_std_20)
  target_compile_options(${target} PRIVATE ${vorbel_rounding})
  set_target_properties(${target} PROPERTIES
    POSITION_INDEPENDENT_CODE ON
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
endfunction()

# vorbel_library(TARGET DESCRIPTION TEXT EXPORTS NAMES [THREADS] [NEEDS TARGET...] [STATIC_NEEDS PACKAGE...])
#
# Makes the library of the class, vorbel, or of a layer above it, vorbel_LAYER, to be one that installs and is found as
# the component LAYER; its headers stand in include/vorbel/LAYER. To be called where the library is added.
#   EXPORTS       what the dynamic library exports: C++ names as a linker's version script has them, such as CVorbel::*
#   THREADS       it starts threads
#   NEEDS         the libraries of the project that its headers include
#   STATIC_NEEDS  packages that find_package() finds and pkg-config calls the same, hidden in a dynamic library
function(vorbel_library target)
  cmake_parse_arguments(PARSE_ARGV 1 arg THREADS "DESCRIPTION;EXPORTS" "NEEDS;STATIC_NEEDS")
  set_property(GLOBAL APPEND PROPERTY VORBEL_LIBRARIES ${target})
  string(REGEX REPLACE "^vorbel_" "" name ${target})
  add_library(vorbel::${name} ALIAS ${target})

  vorbel_code(${target})
  foreach(needed IN LISTS arg_NEEDS)
    target_link_libraries(${target} PUBLIC ${needed})
  endforeach()
  if(arg_THREADS AND NOT MSVC)
    target_compile_options(${target} PRIVATE -pthread)
    target_link_libraries(${target} PRIVATE -pthread)
  endif()
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${name}
    VERSION "${PROJECT_VERSION}"
    SOVERSION "${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}" # below 1.0 a minor version may change the interface
    VORBEL_DESCRIPTION "${arg_DESCRIPTION}"
    VORBEL_THREADS "${arg_THREADS}"
    VORBEL_NEEDS "${arg_NEEDS}"
    VORBEL_HIDDEN_NEEDS "${arg_STATIC_NEEDS}"
    VORBEL_STATIC_NEEDS "")

  get_target_property(type ${target} TYPE)
  if(type STREQUAL "STATIC_LIBRARY")
    string(TOUPPER ${target}_STATIC static)
    target_compile_definitions(${target} PUBLIC ${static})
    set_target_properties(${target} PROPERTIES VORBEL_STATIC ${static} VORBEL_STATIC_NEEDS "${arg_STATIC_NEEDS}")
  elseif(WIN32)
    set_target_properties(${target} PROPERTIES PREFIX "")
    if(MINGW)
      target_link_options(${target} PRIVATE -static)  # of the compiler's run-time, so that the DLL needs nothing installed
    endif()
  elseif(UNIX AND NOT APPLE)
    # Hidden visibility leaves out inline functions of the standard library that a compiler did not inline.
    set(exports "${CMAKE_CURRENT_BINARY_DIR}/${target}.map")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/exports.map.in" "${exports}" @ONLY)
    target_link_options(${target} PRIVATE "LINKER:--version-script=${exports}")
    set_target_properties(${target} PROPERTIES LINK_DEPENDS "${exports}")
    if(arg_NEEDS)
      set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")  # a program's own search path ends at itself
    endif()
  endif()
endfunction()
