# Tests of the ordinary plugin that use iterators wrongly on purpose, to show that it does nothing then.
# The diagnostic plugin raises there: these tests, and no others, are left out of the suites, and each
# is run by itself to see that it is for this reason. tests/diagnose shows what happens instead.

# zrb_misuses(TEST NAME...): of a GoogleTest executable, the tests that read or step beyond the end.
function(zrb_misuses test)
  list(TRANSFORM ARGN REPLACE "(.+)" "*/\\1/*" OUTPUT_VARIABLE patterns)
  list(JOIN patterns ":" excluded)
  set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT "GTEST_FILTER=-${excluded}")
  foreach(name ${ARGN})
    add_test(NAME misuse_in_${name} COMMAND ${test} --gtest_brief=1 --gtest_filter=*/${name}/*)
    set_tests_properties(misuse_in_${name} PROPERTIES
      PASS_REGULAR_EXPRESSION "RuntimeException: [A-Za-z.]+: the iterator is at the end")
  endforeach()
endfunction()

zrb_misuses(laws_test
  IteratorFailures.the_end_has_no_key_and_nothing_behind_it
  MapIteratorFailures.the_end_has_no_value_to_read_or_replace)
zrb_misuses(lock_laws_test
  IteratorLocks.at_the_end_there_is_no_key_to_lock
  ValueLocks.at_the_end_there_is_no_value_to_lock)
