// A statement or a few for each operation.
#include "model/statements.h"

#include <utility>

#include "model/literals.h"

namespace model {

using support::ElementType;

std::string Statements::text() {
  if (performed_.operation <= Operation::remove_many) {
    by_key();
  } else if (performed_.operation <= Operation::remove_nil) {
    iterators();
  } else if (performed_.operation <= Operation::add_to_nil) {
    arrays();
  } else if (performed_.operation <= Operation::from_nil_array) {
    whole();
  } else if (performed_.operation <= Operation::copy_uninitialised) {
    copies();
  } else {
    dictionaries();
  }
  return std::move(text_);
}

void Statements::line(const std::string& text_template) {
  std::string text = "  " + text_template + "\n";
  replace_all(text, "{Class}", class_.name);
  replace_all(text, "{Iterator}", class_.iterator_name);
  replace_all(text, "{K}", type_name(class_.key));
  if (class_.value) replace_all(text, "{V}", type_name(*class_.value));
  replace_all(text, "{#}", std::to_string(performed_.number));
  replace_all(text, "{slot}", "at" + std::to_string(performed_.slot));
  replace_all(text, "{other}", "at" + std::to_string(performed_.other_slot));
  replace_all(text, "{index}", std::to_string(performed_.index));
  // Last, since contents may look like anything.
  if (!performed_.values.empty()) replace_all(text, "{value}", value_literal(performed_.values[0]));
  if (!performed_.keys.empty()) {
    replace_all(text, "{key}", key_literal(performed_.keys[0]));
  }
  text_ += text;
}

void Statements::array(const std::string& name, ElementType type, const std::vector<Given>& items) {
  line("Dim " + name + "() As " + type_name(type));
  for (const Given& item : items) line(name + ".Append " + literal(type, item));
}

void Statements::assignments(const std::string& to) {
  for (std::size_t i = 0; i < performed_.keys.size(); ++i) {
    line(to + "(" + key_literal(performed_.keys[i]) + ") = " + value_literal(performed_.values[i]));
  }
}

std::string Statements::key_literal(const Given& given) const {
  return literal(class_.key, given);
}

std::string Statements::value_literal(const Given& given) const {
  return literal(*class_.value, given);
}

void Statements::by_key() {
  switch (performed_.operation) {
    case Operation::put:
    case Operation::put_many:
      if (class_.is_map()) {
        assignments("c.value");
      } else {
        for (const Given& key : performed_.keys) line("c.insert " + key_literal(key));
      }
      break;
    case Operation::contains:
      line(class_.is_set() ? "got = Shown(c.lookup({key}))" : "got = Shown(c.hasKey({key}))");
      break;
    case Operation::count_key:
      line("got = Shown(c.CountKey({key}))");
      break;
    case Operation::read_value:
      line("got = Shown(c.value({key}))");
      break;
    case Operation::lookup:
      line("got = Shown(c.lookup({key}, {value}))");
      break;
    default:  // remove_key, remove_many
      for (const Given& key : performed_.keys) {
        line("got = got + Str(c.Remove(" + key_literal(key) + "))");
      }
      break;
  }
}

void Statements::point(const std::string& statement) {
  line(statement);
  line("got = Position(c, {slot})");
}

void Statements::iterators() {
  switch (performed_.operation) {
    case Operation::point_to_first:
      point("{slot} = c.first");
      break;
    case Operation::point_to_last:
      point("{slot} = c.last");
      break;
    case Operation::point_to_key:
      point("{slot} = c.find({key})");
      break;
    case Operation::point_to_lower_bound:
      point("{slot} = c.LowerBound({key})");
      break;
    case Operation::point_to_upper_bound:
      point("{slot} = c.UpperBound({key})");
      break;
    case Operation::move_next:
      point("{slot}.MoveNext");
      break;
    case Operation::move_previous:
      point("{slot}.MovePrev");
      break;
    case Operation::read_position:
      line("got = Shown({slot}.Key)");
      if (class_.is_map()) line("got = got + \" and \" + Shown({slot}.Value)");
      break;
    case Operation::assign_position:
      line("{slot}.Value = {value}");
      line("got = Shown({slot}.Value)");
      break;
    case Operation::compare_positions:
      line("got = Shown({slot}.isEqual({other})) + \" \" + Shown({slot}.isNotEqual({other}))");
      break;
    case Operation::compare_with_nil:
      line(performed_.variation % 2 == 0 ? "got = Shown({slot}.isEqual(nowhere))"
                                         : "got = Shown({slot}.isNotEqual(nowhere))");
      break;
    case Operation::use_unpositioned:
      line("Dim fresh{#} As New {Iterator}");
      line(performed_.variation % 2 == 0 ? "got = Shown(fresh{#}.Key)" : "fresh{#}.MoveNext");
      break;
    case Operation::use_end:
      line("Dim end{#} As {Iterator} = c.last");
      line("end{#}.MoveNext");
      if (performed_.index == 1) line("end{#}.Value = {value}");
      line(performed_.index == 1 ? "got = Shown(end{#}.Value)" : "got = Shown(end{#}.Key)");
      line("got = got + \" at \" + Position(c, end{#})");
      break;
    case Operation::remove_position:
      line("c.Remove {slot}");
      break;
    case Operation::remove_range:
      line("c.Remove {slot}, {other}");
      break;
    default: {  // remove_nil
      const char* const statements[] = {"c.Remove nowhere", "c.Remove fresh{#}",
                                        "c.Remove nowhere, c.last", "c.Remove c.last, fresh{#}"};
      line("Dim fresh{#} As New {Iterator}");
      line(statements[performed_.variation % 4]);
      break;
    }
  }
}

void Statements::arrays() {
  switch (performed_.operation) {
    case Operation::keys:
    case Operation::values: {
      const bool of_keys = performed_.operation == Operation::keys;
      const std::string former = of_keys ? "formerKeys" : "formerValues";
      line("Dim array{#}() As " + std::string(of_keys ? "{K} = c.Keys" : "{V} = c.Values"));
      if (performed_.index == 1) {
        line("If Not SameArray(" + former + ", array{#}) Then got = \"another array: \"");
      }
      line(former + " = array{#}");
      line("got = got + Shown(array{#})");
      break;
    }
    case Operation::key_at:
      line("got = Shown(c.Key({index}))");
      break;
    case Operation::value_at:
      line("got = Shown(c.ValueAtIndex({index}))");
      break;
    case Operation::alter_keys:
      line("formerKeys = c.Keys");
      line("formerKeys({index}) = {key}");
      line("got = Shown(c.Key({index}))");
      break;
    case Operation::hold_keys:
      line("formerKeys = c.Keys");
      line("heldKeys = formerKeys");
      break;
    case Operation::read_held_keys:
      line("got = Shown(heldKeys)");
      break;
    case Operation::add_keys:
      array("target{#}", class_.key, performed_.keys);
      line("c.AddKeys target{#}");
      line("got = Shown(target{#})");
      break;
    case Operation::add_values:
      array("target{#}", *class_.value, performed_.values);
      line("c.AddValues target{#}");
      line("got = Shown(target{#})");
      break;
    default: {  // add_to_nil
      const bool of_keys = performed_.variation % 2 == 0;
      line(of_keys ? "Dim target{#}() As {K}" : "Dim target{#}() As {V}");
      line("target{#} = Nil");
      line(of_keys ? "c.AddKeys target{#}" : "c.AddValues target{#}");
      break;
    }
  }
}

void Statements::whole() {
  switch (performed_.operation) {
    case Operation::max_size:
      line("got = Shown(c.MaxSize)");
      break;
    case Operation::clear:
      line("c.Clear");
      break;
    case Operation::recreate:
      line("c = New {Class}");
      break;
    case Operation::construct_again:
      line("c.Constructor");
      break;
    case Operation::use_uninitialised:
      line("' An instance without storage was asked.");
      break;
    case Operation::from_keys:
      array("keys{#}", class_.key, performed_.keys);
      line("c = New {Class}(keys{#})");
      line("got = Counts(c)");
      break;
    case Operation::from_texts:
      array("texts{#}", ElementType::string, performed_.keys);
      line("c = New {Class}(texts{#})");
      line("got = Counts(c)");
      break;
    default: {  // from_nil_array
      const bool of_texts = performed_.variation % 2 == 1 && class_.key == ElementType::variant;
      line(of_texts ? "Dim none{#}() As String" : "Dim none{#}() As {K}");
      line("none{#} = Nil");
      line("Dim made{#} As New {Class}(none{#})");
      break;
    }
  }
}

void Statements::copies() {
  switch (performed_.operation) {
    case Operation::clone:
    case Operation::copy:
      line(performed_.operation == Operation::clone ? "Dim copy{#} As {Class} = c.Clone"
                                                    : "Dim copy{#} As New {Class}(c)");
      line("got = Counts(copy{#})");
      if (performed_.index == 0) line("c = copy{#}");
      break;
    case Operation::copy_over:
      line("Dim other{#} As New {Class}");
      assignments("other{#}.value");
      line("c.Constructor other{#}");
      line("got = Counts(c)");
      break;
    case Operation::copy_itself:
      line("c.Constructor c");
      line("got = Counts(c)");
      break;
    case Operation::copy_nil:
      line("Dim other{#} As {Class}");
      line("c.Constructor other{#}");
      break;
    default:  // copy_uninitialised
      line("' It was an instance without storage, which raised; this one is empty too.");
      line("c.Constructor New {Class}");
      break;
  }
}

void Statements::dictionaries() {
  if (performed_.operation == Operation::to_dictionary) {
    line(performed_.variation % 2 == 0 ? "Dim made{#} As Dictionary = c.CloneDictionary"
                                       : "Dim made{#} As Dictionary = c");
    line("got = Shown(made{#}.Count) + \", \" + Counts(c)");
    return;
  }
  const bool is_nil = performed_.operation == Operation::from_nil_dictionary;
  line(is_nil ? "Dim given{#} As Dictionary" : "Dim given{#} As New Dictionary");
  assignments("given{#}.Value");
  if (performed_.variation % 3 != 0) line("c = New {Class}");
  line(performed_.variation % 2 == 0 ? "c.Constructor given{#}" : "c.Operator_Convert given{#}");
  line("got = Counts(c)");
}

}  // namespace model
