# Takes the C++ samples out of a document or header, as sources for which the compiler names the lines they come from.
#
#   awk -v block='```cpp' -f extract.awk README.md            the one whole program of README
#   awk -v block='```text output' -f extract.awk README.md    what it prints
#   awk -f extract.awk FILE...                                the fragments, each as the body of a function
#
# A fragment is a block ```cpp fragment, or with -v native=1 also ```cpp fragment native, and in a header what a ///
# comment shows behind an empty line, five blanks in. In it "{ ... }" and a leading "..." stand for the caller's own code.
# Fails if the one block is not there or not alone, and for a block ```cpp outside README, which nothing would build.

function set_open(now) {
  if (now != open && !block) {
    print now ? "void sample" samples + 1 "() {" : "}"
  }
  samples += now && !open
  open = now
}

function show(text) {
  if (!block) {
    sub(/^ *\.\.\./, "", text)
    gsub(/\{ \.\.\. \}/, "{}", text)
  }
  if (block !~ /text/) {
    print "#line " FNR " \"" FILENAME "\""
  }
  print text
}

function fail(message) {
  print FILENAME ":" FNR ": " message >"/dev/stderr"
  failed = 1
}

BEGIN {
  wanted = block ? block : "```cpp fragment"
  if (!block) {
    print "#include \"context.h\"\nnamespace samples {"
  }
}

/^ *```/ {
  kind = substr($0, match($0, /`/))
  if (fenced) {
    set_open(0)
  } else if (kind == wanted || (native && kind == wanted " native")) {
    indent = RSTART
    set_open(1)
  } else if (kind == "```cpp" && FILENAME !~ /README\.md$/) {
    fail("a sample that is neither a fragment nor README's program")
  }
  fenced = !fenced
  next
}
fenced && open { show(substr($0, indent)) }

!fenced && !block {
  is_comment = match($0, /^ *\/\/\//)
  text = substr($0, RSTART + RLENGTH)
  if (is_comment && text ~ /^     /) {
    set_open(open || behind_empty)
    if (open) {
      show(substr(text, 6))
    }
  } else {
    set_open(0)
  }
  behind_empty = is_comment && text == ""
}

END {
  if (block && samples != 1) {
    fail("expected exactly one block " block ", found " samples + 0)
  }
  if (!block) {
    print "}"
  }
  exit failed
}
