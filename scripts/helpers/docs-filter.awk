# Shows a header to Doxygen as its readers take it. The comment that opens it describes the class of the file's name;
# the first comment of a run of declarations holds for all of them, up to the next empty line; what is protected is the
# library's own. Line numbers stay as they are.
function flush_group() { if (grouped) printf "/** @} */ "; grouped = 0 }

BEGIN { name = ARGV[1]; sub(/.*\//, "", name); sub(/\.h$/, "", name) }
NR == FNR && /^\/\/ / && !opened { about = about " " substr($0, 4); print ""; next }
{ opened = 1 }
/^ *(protected|private):/ { flush_group(); sub(/protected/, "private"); print; next }
$0 ~ "^(class|struct|enum)( ORIF_[A-Z_]+)? " name "[ {]" {
  printf "/** %s */ ", about
  told = 1
}
/^ *\/\/\/ / { comment = 1; print; next }
comment {
  comment = 0
  if ($0 !~ /^ *(class|struct|enum|template <class T>$|namespace)/ && /^  /) { printf "/** @{ */ "; grouped = 1 }
}
/^ *$/ || /^};/ { flush_group() }
{ print }
END { if (!told && about != "") printf "/** @file\n%s */\n", about }
