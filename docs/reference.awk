# Makes of a header what Doxygen reads. The headers are written to be read as they stand, without commands:
#
# - A comment at the top of a file, or with an empty line behind it, is the file's.
# - What stands above several declarations in a row, up to an empty line, is said of each.
# - Rows "key  text", two blanks further in than the rest, become items of a list.
# - Characters that Doxygen would take for its own are escaped, but in code samples and between backticks.

function plain(text,    parts, count, i, result) {
  count = split(text, parts, "`")
  for (i = 1; i <= count; i++) {
    if (i % 2) {
      gsub(/[\\@<>#%&"]/, "\\\\&", parts[i])
    }
    result = result (i > 1 ? "`" : "") parts[i]
  }
  return result
}

# A row's key, if it has one, ends with two blanks.
function row(text,    key) {
  if (sub(/^ +/, "", text)) {
    return "   " plain(text)
  }
  if (match(text, /^.*[^ ]  +/) && match(text, /  +/)) {
    key = substr(text, 1, RSTART - 1)
    return " - <b>" plain(key) "</b>: " plain(substr(text, RSTART + RLENGTH))
  }
  return (ended || text ~ /^(otherwise|or the) / ? " - " : "   ") plain(text)
}

function comment_line(text,    result) {
  if (text ~ /^     / && (kind == "empty" || kind == "sample")) {
    kind = "sample"
    return text
  }
  if (text == "") {
    kind = "empty"
  } else if (text ~ /^ +(-|[0-9]\.) /) {
    kind = "item"
  } else if (text ~ /^   / && kind != "item") {
    result = row(substr(text, 4))
    kind = "row"
    ended = text ~ /[.:;)Z]$/
    return result
  } else if (text !~ /^   /) {
    result = kind == "row" ? "\n" lead : ""
    kind = "text"
  }
  ended = 1
  return result plain(text)
}

/^ *\/\/\// {
  match($0, /^ *\/\/\//)
  if (!in_comment) {
    lead = substr($0, 1, RLENGTH)
    of_file = FNR == 1
    doc = of_file ? lead " @file\n" lead "\n" : ""
    kind = "empty"
    ended = 1
  }
  doc = doc lead comment_line(substr($0, RLENGTH + 1)) "\n"
  in_comment = 1
  next
}

in_comment {
  printf "%s", (!of_file && /^$/ ? lead " @file\n" lead "\n" : "") doc
  in_comment = 0
  starts = 0
  if (of_file) {
    doc = ""
  }
}
/^ *$/ || /^ *}/ || /^ *(public|protected|private):/ { doc = "" }
starts && doc != "" && !/\/\/\/</ { printf "%s", doc }
{
  print
  if (/{$/) {
    doc = ""
  }
  starts = /[;}]$|^#define .*[^\\]$/
}
