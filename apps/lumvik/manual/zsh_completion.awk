# Generates the completion for zsh, with one function per page.

BEGIN {
  print "#compdef lumvik"
  print "# zsh completion for lumvik, generated from lumvik --help."
  for (p = page_count; p >= 1; --p) write_page(pages[p])
  print "_lumvik \"$@\""
}

function write_page(page, i, commands, choices) {
  print function_of(page) "() {"
  print "  local context state state_descr line"
  print "  typeset -A opt_args"
  printf "  _arguments -C"
  for (i = 1; i <= entry_count[page]; ++i) {
    if (section[page, i] == "Subcommands") {
      commands = commands " \\\n    " quoted(names[page, i] ":" text[page, i])
      choices = choices "    " names[page, i] ") " function_of((page == "" ? "" : page " ") names[page, i]) " ;;\n"
    } else if (section[page, i] != "Positionals") {
      write_option(page, i)
    }
  }
  if (choices == "") {
    print " \\\n    '*:file:_files'\n}"
    return
  }
  print " \\\n    '1:command:->command' \\\n    '*::argument:->argument'"
  print "  local -a commands=(" commands ")"
  print "  case $state in"
  print "    command) _describe command commands ;;"
  print "    argument) case $line[1] in\n" choices "    esac ;;"
  print "  esac\n}"
}

function write_option(page, i, one, n, count) {
  count = split(names[page, i], one, ", ")
  for (n = 1; n <= count; ++n) {
    printf " \\\n    %s", quoted(one[n] (one[n] ~ /^--/ && value[page, i] != "" ? "=" : "") \
        "[" escaped(text[page, i]) "]" argument(value[page, i]))
  }
}

function argument(value) {
  if (value == "") return ""
  return ":" escaped(value) ":" (value ~ /:.*\.\./ ? "" : "_files")
}

function function_of(page) {
  gsub(/[ -]/, "_", page)
  return "_lumvik" (page == "" ? "" : "_" page)
}

# Escapes the characters that are special to _arguments.
function escaped(words) {
  gsub(/\\/, "\\\\", words)
  gsub(/:/, "\\:", words)
  gsub(/\[/, "\\[", words)
  gsub(/\]/, "\\]", words)
  return words
}

function quoted(words) {
  gsub(/'/, "'\\''", words)
  return "'" words "'"
}
