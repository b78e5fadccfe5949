# An application as strict and as old as the public headers allow.
add_executable(consumer "${CMAKE_CURRENT_LIST_DIR}/consumer.cpp")
set_target_properties(consumer PROPERTIES CXX_STANDARD 11 CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF)
if(NOT MSVC)
  target_compile_options(consumer PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Werror)
endif()

enable_testing()
add_test(NAME consumer COMMAND consumer)
