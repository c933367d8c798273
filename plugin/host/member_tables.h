// Method and property tables as the host reads them, made from lists of rows.
#ifndef ZRB_PLUGIN_HOST_MEMBER_TABLES_H
#define ZRB_PLUGIN_HOST_MEMBER_TABLES_H

#include <cstdint>

#include "host/binary_interface.h"
#include "host/declarations.h"

inline constexpr void (*no_setter)() = nullptr;

/// One method: the declaration's template, the routine, and for an assignable one its setter.
template <FixedString Template, auto Routine, auto Setter = no_setter>
struct Method {};

/// One read-only property.
template <FixedString Name, FixedString Type, auto Getter>
struct Property {};

/// Methods or properties in the order of their table.
template <class... Row>
struct Rows {};

template <class... Lists>
struct JoinRows;
template <class... Row>
struct JoinRows<Rows<Row...>> {
  using type = Rows<Row...>;
};
template <class... First, class... Second, class... Rest>
struct JoinRows<Rows<First...>, Rows<Second...>, Rest...>
    : JoinRows<Rows<First..., Second...>, Rest...> {};

/// `List<Container>::type` where the condition holds, else no rows. The list is not looked at then,
/// so it may name routines that the container's kind does not have.
template <bool Condition, template <class> class List, class Container>
struct RowsIf {
  using type = Rows<>;
};
template <template <class> class List, class Container>
struct RowsIf<true, List, Container> : List<Container> {};

/// The records of a list of rows for one container class. Compilers lay them out as constants, so
/// nothing has to run before the host can read them; a test watches over that.
template <class Container, class List>
struct MethodTable;
template <class Container, FixedString... Template, auto... Routine, auto... Setter>
struct MethodTable<Container, Rows<Method<Template, Routine, Setter>...>> {
  static constexpr std::int32_t flags = 4;
  static constexpr std::int32_t count = sizeof...(Routine);
  static inline REALmethodDefinition records[] = {
      {reinterpret_cast<void*>(Routine), reinterpret_cast<void*>(Setter),
       declaration_text<Container, Template>, flags}...};
};

template <class List>
struct PropertyTable;
template <FixedString... Name, FixedString... Type, auto... Getter>
struct PropertyTable<Rows<Property<Name, Type, Getter>...>> {
  static constexpr std::int32_t flags = 6;
  static constexpr std::int32_t count = sizeof...(Getter);
  static inline REALproperty records[] = {
      {nullptr, text_constant<Name>.text, text_constant<Type>.text, flags,
       reinterpret_cast<void*>(Getter), nullptr, 0, nullptr, 0, nullptr}...};
};

#endif
