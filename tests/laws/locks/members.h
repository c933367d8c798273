// The members of the classes by short names, for the tests of lock balance to say what they are
// about. Declarations are templates; a setter has " =" behind the declaration.
#ifndef ZRB_TESTS_LAWS_LOCKS_MEMBERS_H
#define ZRB_TESTS_LAWS_LOCKS_MEMBERS_H

namespace member {

// Life and size
inline constexpr const char* constructor = "Constructor";
inline constexpr const char* destructor = "destructor";
inline constexpr const char* clear = "Clear";
inline constexpr const char* max_size = "MaxSize";
inline constexpr const char* count = "Count";
inline constexpr const char* bin_count = "BinCount";
inline constexpr const char* empty = "Empty";

// Keys
inline constexpr const char* insert = "insert(key as {K})";
inline constexpr const char* set_lookup = "lookup(key as {K}) as boolean";
inline constexpr const char* has_key = "hasKey(key as {K}) as boolean";
inline constexpr const char* count_key = "CountKey(key as {K}) as integer";
inline constexpr const char* find = "find(key as {K}) as {Iterator}";
inline constexpr const char* lower_bound = "LowerBound(key as {K}) as {Iterator}";
inline constexpr const char* upper_bound = "UpperBound(key as {K}) as {Iterator}";
inline constexpr const char* remove_key = "Remove(key as {K}) as integer";

// Values
inline constexpr const char* value = "value(key as {K}) as {V}";
inline constexpr const char* set_value = "value(key as {K}) as {V} =";
inline constexpr const char* map_lookup = "lookup(key as {K}, defaultvalue as {V}) as {V}";

// Iterators, and what containers do with them
inline constexpr const char* first = "first as {Iterator}";
inline constexpr const char* last = "last as {Iterator}";
inline constexpr const char* remove_at = "Remove(pos as {Iterator})";
inline constexpr const char* remove_range = "Remove(first as {Iterator}, last as {Iterator})";
inline constexpr const char* move_next = "MoveNext";
inline constexpr const char* move_prev = "MovePrev";
inline constexpr const char* iterator_key = "Key as {K}";
inline constexpr const char* iterator_value = "Value as {V}";
inline constexpr const char* iterator_set_value = "Value as {V} =";
inline constexpr const char* is_equal = "isEqual(other as {Iterator}) as boolean";
inline constexpr const char* is_not_equal = "isNotEqual(other as {Iterator}) as boolean";

// Arrays
inline constexpr const char* from_array = "Constructor(Keys() as {K})";
inline constexpr const char* from_strings = "Constructor(Keys() as string)";
inline constexpr const char* keys = "Keys as {K}()";
inline constexpr const char* values = "Values as {V}()";
inline constexpr const char* key_at = "Key(index as integer) as {K}";
inline constexpr const char* value_at = "ValueAtIndex(index as integer) as {V}";
inline constexpr const char* add_keys = "AddKeys(targetArray() as {K})";
inline constexpr const char* add_values = "AddValues(targetArray() as {V})";

// Other maps and Dictionaries
inline constexpr const char* from_map = "Constructor(other as {Class})";
inline constexpr const char* clone = "Clone as {Class}";
inline constexpr const char* from_dictionary = "Constructor(dic as dictionary)";
inline constexpr const char* convert_from_dictionary = "Operator_Convert(dic as dictionary)";
inline constexpr const char* clone_dictionary = "CloneDictionary as Dictionary";
inline constexpr const char* convert_to_dictionary = "Operator_Convert as Dictionary";

}  // namespace member

#endif
