# Reads what `lumvik --help` and the help of each command say, before the program of another -f prints from it:
#
#   awk -v command=PATH -f help_pages.awk -f manual.awk
#
# A page goes by the words behind `lumvik`: "" for the first, then "develop" and so on, subcommands included.
#   pages[1..page_count]               these words, a command ahead of its subcommands
#   about[page], usage[page]           its description, and its usage behind "Usage: "
#   entry_count[page]                  and for each of 1..entry_count:
#   section[page, i], names[page, i]   the heading it stands under; its names, separated by ", "
#   value[page, i], required[page, i]  what an option takes, "" for nothing; whether it must be given
#   text[page, i]                      what it does

BEGIN { read_page("") }

function read_page(page, call, lines, count, line, heading, i, subcommands) {
  pages[++page_count] = page
  count = 0
  call = "\"" command "\" " page " --help"
  while ((call | getline line) > 0) lines[++count] = line
  if (close(call) != 0 || count == 0) {
    print call " failed" >"/dev/stderr"
    exit 1
  }
  for (i = 1; i <= count; ++i) {
    if (lines[i] ~ /^Usage: /) {
      usage[page] = substr(lines[i], length("Usage: ") + 1)
    } else if (lines[i] ~ /^[^ ].*:$/) {
      heading = substr(lines[i], 1, length(lines[i]) - 1)
    } else if (lines[i] ~ /^  [^ ]/) {
      # A text that has no room beside the names is on the next line.
      if (lines[i + 1] ~ /^                              [^ ]/) {
        add_entry(page, heading, substr(lines[i], 3), trimmed(lines[i + 1]))
        ++i
      } else {
        add_entry(page, heading, trimmed(substr(lines[i], 3, 28)), trimmed(substr(lines[i], 31)))
      }
    } else if (lines[i] != "" && !(page in usage)) {
      about[page] = about[page] (about[page] == "" ? "" : " ") lines[i]
    }
  }
  subcommands = entry_count[page]
  for (i = 1; i <= subcommands; ++i) {
    if (section[page, i] == "Subcommands") read_page(page (page == "" ? "" : " ") names[page, i])
  }
}

# `left` is "-o,--output OUT REQUIRED", "IN REQUIRED" or the name of a subcommand.
function add_entry(page, heading, left, right, i, space) {
  i = ++entry_count[page]
  section[page, i] = heading
  text[page, i] = right
  required[page, i] = sub(/ REQUIRED$/, "", left)
  gsub(/\{[^}]*\}/, "", left)
  space = index(left, " ")
  value[page, i] = space ? substr(left, space + 1) : ""
  names[page, i] = space ? substr(left, 1, space - 1) : left
  gsub(/,/, ", ", names[page, i])
}

function trimmed(words) {
  gsub(/^ +| +$/, "", words)
  return words
}
