# Gives the headings of a page the anchors by which its links name them.
/^## / {
  anchor = tolower(substr($0, 4))
  gsub(/ /, "-", anchor)
  $0 = $0 " {#" anchor "}"
}
{ print }
