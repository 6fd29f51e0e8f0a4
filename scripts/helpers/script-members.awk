# Holds what scripts call against the type library. Reads the description of that, then the scripts, and tells of a
# member that an object of a script does not have, and of a member that no VBScript or JScript calls.
#
# A variable has the class that it is declared with, or that of what is assigned to it: a new object, or what a member of
# another variable answers.

FNR == 1 {
  ++files
  split("", classOf)
}

# The description: members end in ";", which also stands in texts and comments.
files == 1 {
  gsub(/"[^"]*"|\/\/.*/, "")
  text = text " " $0
  while (end = index(text, ";")) {
    Describe(substr(text, 1, end))
    text = substr(text, end + 1)
  }
  next
}

{
  line = tolower($0)
  isNew = line ~ /("|comobject )orif\.core/
  gsub(/"[^"]*"/, "\"\"", line)
  if (FILENAME ~ /\.(vbs|bas)$/) sub(/'.*/, "", line)
  if (FILENAME ~ /\.(js|cs)$/) sub(/\/\/.*/, "", line)
  if (FILENAME ~ /\.ps1$/) sub(/#.*/, "", line)
  sub(/^ *(set|var|dynamic) /, "", line)
  target = ""
  if (match(line, /^ *\$?[a-z0-9_]+ *=/)) {
    target = substr(line, RSTART, RLENGTH)
    gsub(/[ =$]/, "", target)
  }
  if (isNew) classOf[target] = "core"
  if (match(line, /[a-z]+ as orif\.[a-z]+/)) {
    split(substr(line, RSTART, RLENGTH), part, / as orif\./)
    classOf[part[1]] = part[2]
  }
  while (match(line, /[a-z0-9_]+(\.[a-z0-9_]+)+/)) {
    before = substr(line, 1, RSTART - 1)
    parts = split(substr(line, RSTART, RLENGTH), part, ".")
    line = substr(line, RSTART + RLENGTH)
    class = classOf[part[1]]
    for (i = 2; i <= parts && class in classes; ++i) class = Call(class "." part[i], i == parts)
    if (i > parts && target != "" && class in classes) classOf[target] = class
  }
}

function Describe(record, member) {
  if (match(record, /interface [A-Za-z]+ : IDispatch/)) {
    class = tolower(substr(record, RSTART + 10, RLENGTH - 22))
    classes[class] = 1
  }
  if (!match(record, /HRESULT [A-Za-z0-9]+\(/)) return
  member = class "." tolower(substr(record, RSTART + 8, RLENGTH - 9))
  if (record ~ /propput/) {
    uncalled[member " ="] = 1
    return
  }
  members[member] = uncalled[member] = 1
  if (match(record, /[A-Za-z]+\*\* *Result/)) {
    answer[member] = tolower(substr(record, RSTART))
    sub(/\*.*/, "", answer[member])
  }
}

# Notes a call and gives the class of what it answers.
function Call(member, isLast) {
  if (!(member in members)) {
    print FILENAME ":" FNR ": there is no " member
    failed = 1
  }
  if (isLast && before ~ /^ *\$?$/ && line ~ /^ *=/) member = member " ="
  if (FILENAME ~ /\.(vbs|js)$/) delete uncalled[member]
  return answer[member]
}

END {
  for (member in uncalled) {
    print "no script calls " member | "sort"
    failed = 1
  }
  close("sort")
  exit failed
}
