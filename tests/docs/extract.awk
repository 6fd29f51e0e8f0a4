# Makes one program of the pieces of code in a page, each over a demonstration cell of its own, and the file of what
# they print together: the fenced blocks without a language.
BEGIN {
  print "#include <array>\n#include <iostream>\n\n#include \"orif/orif.h\"\n#include \"simulator/Demo.h\"\n"
  print "using Table = std::shared_ptr<orif::DataTable>;\n"
}
/^```cpp$/ {
  code = 1
  printf "void Piece%d([[maybe_unused]] orif::Core& core, [[maybe_unused]] const Table& table) {\n", ++pieces
  printf "#line %d \"%s\"\n", NR + 1, FILENAME
  next
}
/^```$/ {
  if (code) { print "}"; code = 0 } else output = !output
  next
}
code
output { print >expected }
END {
  print "int main() {"
  for (i = 1; i <= pieces; ++i) {
    print "  {\n    orif::Core core(orif::sim::DemoNetwork().Factory());\n    core.Connect(\"demo\");"
    printf "    Piece%d(core, core.DataTable());\n  }\n", i
  }
  print "}"
}
