# The conformance programs, on the host as it is and on hosts that lack something.

set(conformance_programs
  sets maps iterators ranges arrays dictionary copies errors strings variants)

# conformance_tests(SUFFIX [CONSOLE_OPTION ...]): every program once, with these options.
function(conformance_tests suffix)
  foreach(program ${conformance_programs})
    add_test(NAME conformance_${program}${suffix}
      COMMAND ${here}/check_tap.sh ${console} ${programs}/conformance/${program}.rbs ${ARGN})
    zrb_leaves_locks(conformance_${program}${suffix})
  endforeach()
endfunction()

conformance_tests("")
conformance_tests(_on_a_host_of_2011 --host-version 2011.4)
# Insertion has no replacement, so its procedure stays.
conformance_tests(_without_element_procedures
  --without RuntimeArrayDirectGetGetProc
  --without RuntimeArrayDirectGetSetProc)
conformance_tests(_without_string_data
  --without PluginGetStringData
  --without PluginDisposeStringData)
conformance_tests(_without_variant_functions
  --without "VarType(value As Variant) As Int32"
  --without VariantToString
  --without VariantToInt32
  --without VariantToInt64
  --without VariantToSingle
  --without VariantToDouble
  --without VariantToObject)
# Without hashes all Variants but strings share one bucket.
conformance_tests(_without_variant_hashes --without VariantHash)
