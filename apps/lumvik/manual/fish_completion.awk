# Generates the completion for fish.

BEGIN {
  print "# fish completion for lumvik, generated from lumvik --help."
  for (p = 1; p <= page_count; ++p) {
    for (i = 1; i <= entry_count[pages[p]]; ++i) write_entry(pages[p], i)
  }
}

function write_entry(page, i, line) {
  if (section[page, i] == "Positionals") return
  line = "complete -c lumvik -n " quoted(condition(page))
  if (section[page, i] == "Subcommands") {
    line = line " -f -a " names[page, i]
  } else {
    line = line flags(names[page, i])
    if (value[page, i] != "") line = line (value[page, i] ~ /:.*\.\./ ? " -x" : " -r")
  }
  print line " -d " quoted(text[page, i])
}

# " -s o -l output" of "-o, --output".
function flags(all, one, i, count, line) {
  count = split(all, one, ", ")
  for (i = 1; i <= count; ++i) {
    line = line (one[i] ~ /^--/ ? " -l " substr(one[i], 3) : " -s " substr(one[i], 2))
  }
  return line
}

# True on a command line with the words of the page but none of its subcommands.
function condition(page, i, count, word, line) {
  count = split(page, word, " ")
  for (i = 1; i <= count; ++i) line = line "__fish_seen_subcommand_from " word[i] "; and "
  for (i = 1; i <= entry_count[page]; ++i) {
    if (section[page, i] == "Subcommands") word[0] = word[0] " " names[page, i]
  }
  if (word[0] != "") return line "not __fish_seen_subcommand_from" word[0]
  sub(/; and $/, "", line)
  return line
}

function quoted(words) {
  gsub(/\\/, "\\\\", words)
  gsub(/'/, "\\'", words)
  return "'" words "'"
}
