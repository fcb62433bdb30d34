# Shows Doxygen the comments of a public header as the project means them:
#
#   - a comment in front of a declaration stands for all that follow up to the next blank line,
#     but for destructors and deleted operations;
#   - a comment behind a declaration, on its line, is about that one;
#   - indented lines "Label  text" are a list;
#   - a comment that a blank line follows is about no declaration.
#
# No line moves, so Doxygen's warnings name the lines of the header.

# Prints the comment in block[1] to block[lines].
function print_block(is_documentation,    i, line, text) {
  for (i = 1; i <= lines; ++i) {
    line = block[i]
    if (is_documentation) {
      sub(/\/\//, "///", line)
      if (match(line, /\/\/\/   [^ ]+( [^ ]+)*  +/)) {
        text = substr(line, RSTART + RLENGTH)
        line = substr(line, 1, RSTART + RLENGTH - 1)
        sub(/ +$/, "", line)
        sub(/\/\/\/   /, "/// - **", line)
        line = line "**: " text
      } else {
        sub(/\/\/\/    +/, "///   ", line)
      }
    }
    print line
  }
}

# The same comment on one line, for a further declaration.
function one_line(    i, text, line) {
  for (i = 1; i <= lines; ++i) {
    line = block[i]
    sub(/^ *\/\//, "", line)
    text = text line
  }
  return "/**" text " */ "
}

/^ *\/\// {
  if (!in_block) lines = 0
  in_block = 1
  block[++lines] = $0
  next
}

{
  is_first = in_block
  if (in_block) {
    print_block($0 != "")
    in_block = 0
    depth = 0
    is_complete = 1
  }
  if ($0 == "") lines = 0

  code = $0
  has_comment = sub(/ *\/\/.*/, "", code)
  declares = lines > 0 && depth == 0 && is_complete && code !~ /^ *}|~|= delete;$/
  is_complete = code ~ /[;}]$/
  depth += gsub(/{/, "{", code) - gsub(/}/, "}", code)

  if (has_comment && code !~ /^ *}/) sub(/\/\/ /, "///< ")
  print (declares && !is_first ? one_line() : "") $0
}
