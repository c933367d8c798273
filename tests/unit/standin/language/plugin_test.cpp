// Programs that use the plugin's own classes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "script_runner.h"

namespace {

using testing::HasSubstr;

class PluginPrograms : public testing::Test {
 protected:
  PluginPrograms() { host_.load_plugin(ZRB_PLUGIN_FILE); }

  static standin::HostOptions options() {
    standin::HostOptions made;
    made.strict_ledger = true;
    return made;
  }
  std::string output_of(const std::string& text) {
    const standin::Ledger::Snapshot before = host_.ledger().snapshot();
    const Outcome outcome = run_script_on(host_, text);
    EXPECT_EQ(outcome.err, "") << text;
    EXPECT_TRUE(host_.ledger().violations().empty());
    held_ = standin::text(host_.ledger().held_since(before));
    return outcome.out;
  }
  std::string error_of(const std::string& text) { return run_script_on(host_, text).err; }

  standin::Host host_{options()};
  std::string held_;
};

TEST_F(PluginPrograms, assignable_methods_are_read_and_assigned) {
  EXPECT_EQ(output_of("Dim m As New IntegerToIntegerHashMapZRB\nm.value(3) = 4\nm.Value(5) = 6\n"
                      "m.value(3) = m.value(3) * 10\nPrint Str(m.value(3)) + Str(m.Count)\n"
                      "Dim it As IntegerToIntegerHashMapIteratorZRB = m.find(5)\nit.Value = 7\n"
                      "Print Str(it.Key) + Str(it.Value) + Str(m.value(5))\n"),
            "402\n577\n");
  EXPECT_EQ(held_, "");
}

TEST_F(PluginPrograms, iterators_walk_from_first_to_last) {
  EXPECT_EQ(
      output_of("Dim s As New IntegerOrderedSetZRB\ns.insert 3\ns.insert(1)\ns.insert 2\n"
                "Dim it As IntegerOrderedSetIteratorZRB = s.first\n"
                "While it.isNotEqual(s.last)\n  StdOut.Write Str(it.Key)\n  it.MoveNext\nWend\n"
                "Print Str(s.Empty) + Str(s.lookup(2)) + Str(s.Remove(2)) + Str(s.Count)\n"),
      "123FalseTrue12\n");
}

TEST_F(PluginPrograms, overloads_take_the_argument_of_their_type) {
  EXPECT_EQ(output_of("Dim m As New StringToStringHashMapZRB\nm.value(\"a\") = \"1\"\n"
                      "m.value(\"b\") = \"2\"\nm.Remove m.find(\"a\")\nPrint Str(m.Count)\n"
                      "Call m.Remove(\"b\")\nPrint Str(m.Count)\n"
                      "m.value(\"c\") = \"3\"\nm.Remove m.first, m.last\nPrint Str(m.Count)\n"),
            "1\n0\n0\n");
}

TEST_F(PluginPrograms, constructors_are_chosen_by_their_arguments) {
  EXPECT_EQ(output_of("Dim k() As String = Array(\"x\", \"y\", \"x\")\n"
                      "Dim s As New StringHashSetZRB(k)\nPrint Str(s.Count)\n"
                      "Dim v As New VariantHashSetZRB(Array(\"a\", \"b\"))\nPrint Str(v.Count)\n"
                      "Dim d As New Dictionary\nd.Value(\"q\") = 5\n"
                      "Dim m As New StringToVariantHashMapZRB(d)\n"
                      "Dim n As New StringToVariantHashMapZRB(m)\nPrint Str(n.value(\"q\"))\n"),
            "2\n2\n5\n");
}

TEST_F(PluginPrograms, a_dictionary_converts_to_a_map_without_a_constructor) {
  EXPECT_EQ(output_of("Dim d As New Dictionary\nd.Value(\"a\") = 1\nd.Value(\"b\") = 2\n"
                      "Dim m As StringToVariantHashMapZRB = d\nPrint Str(m.Count)\n"
                      "m = d\nPrint Str(Size(d)) + Str(StringToVariantHashMapZRB(d).Count)\n"
                      "Function Size(x As StringToVariantOrderedMapZRB) As Integer\n"
                      "  Return x.Count\nEnd Function\n"),
            "2\n22\n");
}

TEST_F(PluginPrograms, a_map_converts_to_a_dictionary) {
  EXPECT_EQ(
      output_of("Dim m As New IntegerToStringOrderedMapZRB\nDim d As Dictionary = m\n"
                "Print Str(d.Count) + Str(Count(m))\n"
                "Function Count(x As Dictionary) As Integer\n  Return x.Count\nEnd Function\n"),
      "00\n");
}

TEST_F(PluginPrograms, no_conversion_leads_over_a_variant) {
  EXPECT_THAT(error_of("Dim m As StringToVariantHashMapZRB = 5"),
              HasSubstr("Integer cannot be converted to StringToVariantHashMapZRB"));
  EXPECT_THAT(error_of("Dim m As StringToVariantHashMapZRB = New StringHashSetZRB"),
              HasSubstr("StringHashSetZRB cannot be converted to StringToVariantHashMapZRB"));
}

TEST_F(PluginPrograms, failures_are_exceptions) {
  EXPECT_EQ(output_of("Dim m As New StringToVariantHashMapZRB\nTry\n  Print m.value(\"x\")\n"
                      "Catch e As KeyNotFoundException\n  Print e.Message\nEnd Try\n"
                      "Dim it As New StringHashSetIteratorZRB\nTry\n  it.MoveNext\n"
                      "Catch e As NilObjectException\n  Print e.Message\nEnd Try\n"),
            "\nIterator is nil\n");
}

TEST_F(PluginPrograms, instances_die_with_their_last_reference) {
  const auto live = [&] { return host_.find_class("StringHashSetZRB")->live_instances(); };
  output_of(
      "Dim s As New StringHashSetZRB\ns.insert \"a\"\nDim t As StringHashSetZRB = s\n"
      "For i As Integer = 1 To 3\n  Dim u As New StringHashSetZRB\n  u.insert \"b\"\nNext\n");
  EXPECT_EQ(live(), 0U);
  EXPECT_EQ(held_, "");
}

TEST_F(PluginPrograms, results_that_are_arrays_are_arrays) {
  EXPECT_EQ(
      output_of("Dim m As New IntegerToStringOrderedMapZRB\nm.value(2) = \"b\"\n"
                "m.value(1) = \"a\"\nDim k() As Integer = m.Keys\nDim v() As String = m.Values\n"
                "Print Str(k(0)) + v(0) + Str(UBound(k))\n"
                "For Each n As Integer In m.Keys\n  StdOut.Write Str(n)\nNext\n"
                "Dim t() As Integer\nm.AddKeys t\nPrint Str(UBound(t)) + Str(m.Key(1))\n"),
      "1a1\n1212\n");
}

TEST_F(PluginPrograms, members_are_told_when_they_do_not_exist) {
  EXPECT_THAT(error_of("Dim s As New StringHashSetZRB\ns.Append \"a\""),
              HasSubstr("StringHashSetZRB has no member \"Append\""));
  EXPECT_THAT(error_of("Dim s As New StringHashSetZRB\ns.insert 5"),
              HasSubstr("Integer cannot be converted to String"));
  EXPECT_THAT(error_of("Dim s As New StringHashSetZRB\ns.Count = 5"),
              HasSubstr("can only be read"));
  EXPECT_THAT(error_of("Dim s As New StringHashSetZRB(5)"), HasSubstr("no form of New"));
}

TEST_F(PluginPrograms, an_assignment_that_fits_no_setter_is_told_as_one) {
  const std::string map = "Dim m As New IntegerToIntegerHashMapZRB\n";
  EXPECT_THAT(error_of(map + "m.value(1) = \"x\""),
              HasSubstr("the value assigned to IntegerToIntegerHashMapZRB.value: String cannot be "
                        "converted to Integer, in value(key as integer) = integer\n"));
  EXPECT_THAT(error_of(map + "m.value = 3"),
              HasSubstr("the assignment to IntegerToIntegerHashMapZRB.value takes 1 argument, "
                        "not 0: value(key as integer) = integer\n"));
  EXPECT_THAT(error_of(map + "m.value(\"x\") = 3"),
              HasSubstr("argument 1 of IntegerToIntegerHashMapZRB.value: "));
  EXPECT_THAT(error_of(map + "Print Str(m.value)"),
              HasSubstr("value(key as integer) as integer\n"));
}

}  // namespace
