# Generates the completion for bash.

BEGIN {
  print "# bash completion for lumvik, generated from lumvik --help."
  print "_lumvik() {"
  print "  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}"
  print "  local page= commands= options= numbers= texts= i"
  print "  for ((i = 1; i < COMP_CWORD; i++)); do"
  print "    case \"$page ${COMP_WORDS[i]}\" in"
  for (p = 2; p <= page_count; ++p) printf "      \" %s\") page=\" %s\" ;;\n", pages[p], pages[p]
  print "    esac"
  print "  done"
  print "  case $page in"
  for (p = 1; p <= page_count; ++p) write_page(pages[p])
  print "  esac"
  print "  COMPREPLY=()"
  print "  # No suggestions for numbers; file names wherever no word fits."
  print "  [[ \" $numbers \" != *\" $previous \"* ]] || { compopt +o bashdefault +o default; return 0; }"
  print "  [[ \" $texts \" != *\" $previous \"* ]] || return 0"
  print "  [[ $current != -* ]] || commands=$options"
  print "  mapfile -t COMPREPLY < <(compgen -W \"$commands\" -- \"$current\")"
  print "}"
  print "complete -o bashdefault -o default -F _lumvik lumvik"
}

function write_page(page, i, commands, options, numbers, texts) {
  for (i = 1; i <= entry_count[page]; ++i) {
    if (section[page, i] == "Subcommands") {
      commands = commands " " names[page, i]
    } else if (section[page, i] != "Positionals") {
      options = options " " names[page, i]
      if (value[page, i] ~ /:.*\.\./) numbers = numbers " " names[page, i]
      else if (value[page, i] != "") texts = texts " " names[page, i]
    }
  }
  printf "    \"%s\")\n", (page == "" ? "" : " ") page
  write_list("commands", commands)
  write_list("options", options)
  write_list("numbers", numbers)
  write_list("texts", texts)
  print "      ;;"
}

function write_list(name, words) {
  gsub(/,/, "", words)
  if (words != "") printf "      %s=\"%s\"\n", name, substr(words, 2)
}
