// The functions' text.
#include "model/program_functions.h"

#include "model/literals.h"

namespace model {
namespace {

constexpr const char* functions = R"(
Sub Check(what As String, expected As String, got As String)
  If StrComp(expected, got, 0) = 0 Then
    Print "ok " + what + ": " + got
  Else
    Print "not ok " + what + ": expected " + expected + ", got " + got
  End If
End Sub

Function Counts(c As {Class}) As String
  Return Str(c.Count){bins}
End Function

Function Order(c As {Class}) As String
  Dim text As String
  Dim position As {Iterator} = c.first
  While position.isNotEqual(c.last)
    text = text + "[" + Shown(position.Key) + "]"
    position.MoveNext
  Wend
  Return text
End Function

Function Position(c As {Class}, position As {Iterator}) As String
  If position.isEqual(c.last) Then Return "end"
  Return Shown(position.Key)
End Function

Function Raised(e As RuntimeException) As String
  If e IsA NilObjectException Then Return "NilObjectException: " + e.Message
  If e IsA KeyNotFoundException Then Return "KeyNotFoundException: " + e.Message
  If e IsA OutOfBoundsException Then Return "OutOfBoundsException"
  Return "another exception: " + e.Message
End Function

Function Shown(b As Boolean) As String
  If b Then Return "True"
  Return "False"
End Function

Function Shown(n As Integer) As String
  Return Str(n)
End Function

Function Shown(s As String) As String
  If s = "" Then Return ""
  Return ConvertEncoding(s, Encodings.UTF8)
End Function

Function Shown(v As Variant) As String
  If VarType(v) = 0 Then Return "0:"
  Return Str(VarType(v)) + ":" + Shown(v.StringValue)
End Function

Function AsNil() As Variant
  Dim none As Variant
  Return none
End Function

Function AsInteger(n As Integer) As Variant
  Return n
End Function

Function AsInt64(n As Int64) As Variant
  Return n
End Function
)";

constexpr const char* functions_of_arrays = R"(
Function Shown(items() As {T}) As String
  Dim text As String
  For Each item As {T} In items
    text = text + "[" + Shown(item) + "]"
  Next
  Return text
End Function

' Two names of one array: what one of them gains, the other one has.
Function SameArray(a() As {T}, b() As {T}) As Boolean
  Dim none As {T}
  Dim bound As Integer = UBound(b)
  a.Append none
  Dim isSame As Boolean = UBound(b) > bound
  a.Remove UBound(a)
  Return isSame
End Function
)";

}  // namespace

std::string program_functions(const support::ContainerClass& container_class) {
  std::string text = functions;
  for (const char* type : {"Integer", "String", "Variant"}) {
    std::string of_type = functions_of_arrays;
    replace_all(of_type, "{T}", type);
    text += of_type;
  }
  replace_all(text, "{bins}", container_class.is_hashed() ? " + \" in \" + Str(c.BinCount)" : "");
  replace_all(text, "{Class}", container_class.name);
  replace_all(text, "{Iterator}", container_class.iterator_name);
  return text;
}

}  // namespace model
