# Parses the help of `lumvik` and of each of its commands for the program given by another -f:
#
#   awk -v command=PATH -f help_pages.awk -f manual.awk
#
# A page is identified by the words after `lumvik`: "", "develop", "settings import" and so on.
#   pages[1..page_count]               all pages, commands before their subcommands
#   about[page], usage[page]           description; usage without "Usage: "
#   entry_count[page]                  number of entries; for each of them, i = 1..entry_count:
#   section[page, i], names[page, i]   its heading; its names, separated by ", "
#   value[page, i], required[page, i]  placeholder of its value, "" for none; whether it is required
#   text[page, i]                      description

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
      # Descriptions without room next to the names start on the next line.
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
