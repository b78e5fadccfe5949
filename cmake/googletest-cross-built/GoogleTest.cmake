# One test for a whole program, since a start of the emulator for each of its tests takes longer than they do.
function(gtest_discover_tests target)
  add_test(NAME ${target} COMMAND ${target})
endfunction()
