# An application of the library LIBRARY, as strict and as old as the public headers allow
set(standard_vorbel 11)
set(standard_scene 20)
set(standard_products 20)
add_executable(consumer "${CMAKE_CURRENT_LIST_DIR}/${LIBRARY}.cpp")
set_target_properties(consumer PROPERTIES
  CXX_STANDARD ${standard_${LIBRARY}} CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF)
if(NOT MSVC)
  target_compile_options(consumer PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Werror)
endif()

enable_testing()
add_test(NAME consumer COMMAND consumer)
